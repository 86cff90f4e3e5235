// What was asked, understood.

#ifndef ATTENUATE_QUESTION_H_
#define ATTENUATE_QUESTION_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "physics/data.h"
#include "physics/layers.h"
#include "physics/quantities.h"

namespace attenuate {

// How the thickness of a layer was given.
enum class Given {
  kNothing,
  kLength,
  kAreaMass,
  kWanted,  // it is the answer: T= or mux=
};

struct Thickness {
  Given given = Given::kNothing;
  std::string typed;       // "25um"
  physics::Length length;  // where given as one
  std::size_t at = 0;      // in the question's text
};

// A word for energies.
struct Beam {
  enum class Kind { kEnergy, kSteps, kLogSteps, kSource };
  Kind kind = Kind::kEnergy;
  physics::Energy from;   // the energy, or the first of a range
  physics::Energy to;     // the last of a range
  std::size_t count = 1;  // energies in it
  physics::Energy step;   // of kSteps
  const physics::Source* source = nullptr;
  std::size_t at = 0;  // in the question's text

  // Energy `i` of a range, from 0.
  physics::Energy energy(std::size_t i) const;
};

struct Question {
  std::string typed;
  std::vector<physics::Layer> layers;  // areal mass 0 where none was given
  std::vector<Thickness> thicknesses;  // as many as layers
  std::optional<std::size_t> unknown;  // the layer whose thickness is wanted
  physics::Wanted wanted;              // of the whole
  std::vector<Beam> beams;
  std::vector<std::string> notes;  // readings that could surprise

  // Column of byte `at` of what was typed: characters from 1.
  int column(std::size_t at) const;

  // Without thickness a single layer has coefficients only.
  bool has_thickness() const {
    return layers.size() > 1 || thicknesses[0].given != Given::kNothing;
  }
};

// The materials in one line: "kapton (C22H10N2O5) + air + Fe".
std::string materials_read(const Question& question);

}  // namespace attenuate

#endif  // ATTENUATE_QUESTION_H_
