// From words to a question.
//
//   question  = layer { "+" layer } energies { energies }
//   layer     = material [ thickness | "T=" number ["%"] | "mux=" number ]
//   material  as physics/material.h has it, in one word; the parts of a
//             mixture, and units around an adduct mark, may be several
//   thickness = number unit | number mass-unit "/" ( "d" length | area )
//   energies  = item { "," item }
//   item      = energy | energy ":" energy ":" ( energy | digits "log" )
//             | source | symbol ":" shell [ ( "+" | "-" ) energy ]
//   energy    = number [ "keV" | "eV" | "MeV" ]
//
// What a word is shows in the word; only the order of layers counts.

#ifndef ATTENUATE_WORDS_H_
#define ATTENUATE_WORDS_H_

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "attenuate/question.h"
#include "physics/data.h"
#include "physics/errors.h"

namespace attenuate {

inline constexpr std::size_t kMostLayers = 1000;
inline constexpr std::size_t kMostEnergies = 1'000'000'000;
// Bytes of a question.
inline constexpr std::size_t kLongestLine = 1 << 20;

// A word and its place in the question's text.
struct Word {
  std::string_view text;
  std::size_t at = 0;
};

// What makes a question whole.
enum class Needs {
  kAnswer,       // energies, and a thickness for each of several layers
  kThicknesses,  // the latter
  kLayers,       // a layer
};

// Reads one question after the other; keeps the materials that it met last,
// since lists repeat them.
class Reader {
 public:
  enum class Kind;  // of a word

  explicit Reader(const physics::Data& data);

  // Reads words as a shell hands them over into `question`, of which nothing
  // is left. Its `typed` is set in any case. Throws physics::InputError with
  // the column in it.
  void read(std::span<const std::string_view> words, Question& question,
            Needs needs = Needs::kAnswer);

  // Reads a line of a list, in which '...' and "..." keep a word together.
  void read_line(std::string_view line, Question& question,
                 Needs needs = Needs::kAnswer);

  // The same for a material alone.
  const physics::Material& material(std::string_view text);

 private:
  struct Known {
    std::string text;
    physics::Material material;
  };

  Known& slot(std::string_view text);
  void understand(Question& question, Needs needs);
  std::size_t take(Question& question, std::size_t i);
  std::size_t last_of_material(std::size_t first) const;
  std::size_t add_layer(Question& question, std::size_t first);
  [[noreturn]] void refuse_second(const Question& question, const Word& word);
  void refuse_adduct(const Question& question, const Word& word) const;
  void next_layer(const Question& question, const Word& plus);
  void set_layer(Question& question, const Word& word, Kind kind);

  const physics::Data& data_;
  std::vector<Word> words_;
  // Of the present question:
  std::size_t layers_ = 0;
  bool open_ = true;  // a material may come now
  std::array<Known, 256> known_;
};

}  // namespace attenuate

#endif  // ATTENUATE_WORDS_H_
