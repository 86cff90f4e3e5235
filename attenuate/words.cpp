#include "attenuate/words.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

#include "attenuate/energies.h"
#include "attenuate/quantity.h"
#include "attenuate/tables.h"
#include "physics/table.h"

namespace attenuate {

enum class Reader::Kind {
  kPlus,  // the next layer
  kMaterial,
  kJoint,  // "//" and adduct marks between the words of one material
  kThickness,
  kWanted,
  kEnergies,
};

namespace {

using physics::InputError;
using Kind = Reader::Kind;

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

std::string quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

[[noreturn]] void refuse(const Question& question, std::size_t at,
                         const std::string& message, std::string hint = {}) {
  throw InputError(message, question.column(at), std::move(hint));
}

// Runs `read`, whose errors count columns from byte `at` of the question.
template <typename Read>
auto at_word(const Question& question, std::size_t at, Read read) {
  try {
    return read();
  } catch (const InputError& error) {
    throw InputError(error.message(),
                     question.column(at) + std::max(error.column(), 1) - 1,
                     error.hint());
  }
}

bool is_one_of(std::string_view text,
               std::initializer_list<std::string_view> known) {
  return std::find(known.begin(), known.end(), text) != known.end();
}

bool is_joint(std::string_view word) {
  return is_one_of(word, {"//", "*", "·", "⋅", "•"});
}

// What the amount of a part of a mixture is counted in.
bool is_amount(std::string_view unit) {
  return is_one_of(unit, {"%", "wt%", "at%", "vol%", "g", "mg", "mL"});
}

bool is_amount_word(std::string_view word) {
  const auto number = leading_number(word);
  return number && is_amount(number->rest);
}

// "5-30", "5..30", "14;5".
void refuse_joined(std::string_view word, const Number& number) {
  const std::string_view rest = number.rest;
  const bool joined = rest.starts_with('-') || rest.starts_with(';') ||
                      rest.starts_with("\u2013") ||
                      (rest.starts_with('.') && number.typed.ends_with('.'));
  const std::size_t second = rest.find_first_of("0123456789");
  if (!joined || second == rest.npos) return;
  const std::string first = physics::short_number(number.value);
  const std::string last(rest.substr(second));
  throw InputError(quoted(word) + " is no energy", 1,
                   rest[0] == ';'
                       ? first + "," + last + ": a comma separates energies"
                       : first + ":" + last +
                             ":0.5 is a range in steps of 0.5 keV, " + first +
                             "," + last + " two energies");
}

// "25um,", "2,5mm" and "10,5% Fe // Ni" with the comma at `comma`.
void refuse_comma(std::string_view word, std::size_t comma) {
  const std::string_view first = word.substr(0, comma);
  const std::string_view second = word.substr(comma + 1);
  const auto one = leading_number(first);
  const auto other = leading_number(second);
  const auto column = static_cast<int>(comma) + 1;
  if (one && looks_like_thickness(*one)) {
    throw InputError(
        "',' separates energies, and " + std::string(first) + " is none",
        column, "a blank stands behind a thickness");
  }
  if (!one || !one->rest.empty() || !other) return;
  const std::string_view unit = other->rest.substr(0, other->rest.find(' '));
  if (!looks_like_thickness(*other) && !is_amount(unit)) return;
  throw InputError("',' separates energies", column,
                   "a decimal takes a point: " + std::string(one->typed) + "." +
                       std::string(other->typed) + std::string(unit));
}

// A word that begins with a number and is neither thickness nor energy.
Kind refuse_or_formula(std::string_view word, const Number& number) {
  refuse_isotope(word);
  refuse_joined(word, number);
  const std::string_view rest = number.rest;
  const auto column = static_cast<std::size_t>(rest.data() - word.data()) + 1;
  if (is_unit_in_other_letters(rest)) refuse_unit(rest, column);
  const bool symbol =
      'A' <= rest[0] && rest[0] <= 'Z' &&
      (physics::element_with_symbol(rest.substr(0, 2)) != nullptr ||
       physics::element_with_symbol(rest.substr(0, 1)) != nullptr);
  // The reader of formulas knows best what is wrong with a count in front.
  if (symbol || rest[0] == '(' || rest[0] == '[') return Kind::kMaterial;
  refuse_unit(rest, column);
}

Kind kind_behind_number(std::string_view word, const Number& number) {
  const std::string_view rest = number.rest;
  if (const std::size_t comma = word.find(','); comma != word.npos) {
    refuse_comma(word, comma);
  }
  if (rest.empty() || rest[0] == ',' || rest[0] == ':') return Kind::kEnergies;
  if (looks_like_thickness(number)) {
    return is_amount(rest) ? Kind::kMaterial : Kind::kThickness;
  }
  if (is_amount(rest) || contains(rest, " ") || contains(rest, "//") ||
      contains(rest, "%")) {
    return Kind::kMaterial;
  }
  const std::size_t end = rest.find_first_of(":,");
  if (end != std::string_view::npos || energy_unit(rest) != nullptr ||
      names_energies(word)) {
    return Kind::kEnergies;
  }
  return refuse_or_formula(word, number);
}

Kind kind_of(std::string_view word) {
  if (word == "+") return Kind::kPlus;
  if (is_joint(word)) return Kind::kJoint;
  if (word.starts_with("T=") || word.starts_with("mux=")) return Kind::kWanted;
  if (const auto number = leading_number(word)) {
    return kind_behind_number(word, *number);
  }
  return names_energies(word) ? Kind::kEnergies : Kind::kMaterial;
}

// "T=0.3", "T=30%" or "mux=2".
physics::Wanted wanted(std::string_view word) {
  const std::size_t begin = word.find('=') + 1;
  const bool exponent = word[0] == 'm';
  const auto number = leading_number(word.substr(begin));
  const bool percent = number && !exponent && number->rest == "%";
  const int column = static_cast<int>(begin) + 1;
  if (!number || (!number->rest.empty() && !percent)) {
    throw InputError(quoted(word.substr(begin)) + " is not a number", column,
                     exponent ? "mux=2" : "T=0.3 or T=30%");
  }
  if (exponent) {
    if (number->value > 0 && number->value <= 700) {
      return {number->value, physics::Wanted::As::kMuX};
    }
    throw InputError("mux must be above 0 and at most 700", column);
  }
  const double value = percent ? number->value / 100 : number->value;
  if (1e-300 <= value && value < 1) return {value};
  throw InputError("a transmission lies between 0 and 1", column,
                   "T=0.3 or T=30%");
}

// "25um" with a blank between number and unit.
std::string spaced(std::string_view word) {
  const auto number = leading_number(word);
  return std::string(number->typed) + " " + std::string(number->rest);
}

[[noreturn]] void refuse_without_density(const Question& question,
                                         const physics::Material& material,
                                         const Thickness& thickness) {
  refuse(question, thickness.at,
         spaced(thickness.typed) + " of " + material.typed +
             " needs a density: " + density_advice(material) +
             ", or use mg/cm2");
}

void set_thickness(Question& question, std::size_t layer, const Word& word) {
  Thickness& thickness = question.thicknesses[layer];
  thickness.typed = word.text;
  thickness.at = word.at;
  physics::Layer& physical = question.layers[layer];
  const auto given = at_word(question, word.at,
                             [&] { return attenuate::thickness(word.text); });
  if (!given.length) {
    thickness.given = Given::kAreaMass;
    physical.d = given.area_mass;
    return;
  }
  thickness.given = Given::kLength;
  thickness.length = *given.length;
  if (!physical.material.density) {
    refuse_without_density(question, physical.material, thickness);
  }
  physical.d = *physical.material.density * *given.length;
}

void set_wanted(Question& question, std::size_t layer, const Word& word) {
  if (question.unknown) {
    refuse(question, word.at, "only one layer can be asked for",
           "a thickness for the other");
  }
  question.wanted =
      at_word(question, word.at, [&] { return wanted(word.text); });
  question.unknown = layer;
  Thickness& thickness = question.thicknesses[layer];
  thickness.given = Given::kWanted;
  thickness.typed = word.text;
  thickness.at = word.at;
}

// --- energies against the tables -------------------------------------------

void check_energy(const Question& question, const Beam& beam,
                  physics::Energy energy, const physics::Data& data) {
  for (const auto& layer : question.layers) {
    for (const auto& part : layer.material.constituents) {
      const auto& table = data.table(part.z);
      if (energy < first_energy(table) || last_energy(table) < energy) {
        refuse(question, beam.at,
               outside_in_words(
                   {part.z, energy, first_energy(table), last_energy(table)},
                   data));
      }
    }
  }
}

void check_energies(const Question& question, const physics::Data& data) {
  for (const auto& beam : question.beams) {
    if (beam.kind == Beam::Kind::kSource) {
      check_energy(question, beam, beam.source->lines.front().energy, data);
      check_energy(question, beam, beam.source->lines.back().energy, data);
      continue;
    }
    check_energy(question, beam, beam.energy(0), data);
    check_energy(question, beam, beam.energy(beam.count - 1), data);
  }
}

// --- the words of a line ----------------------------------------------------

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

void split(std::string_view line, std::vector<Word>& words) {
  std::size_t at = 0;
  while (true) {
    while (at < line.size() && is_blank(line[at])) ++at;
    if (at == line.size()) return;
    const char quote = line[at];
    if (quote == '\'' || quote == '"') {
      const std::size_t end = line.find(quote, at + 1);
      if (end != std::string_view::npos &&
          (end + 1 == line.size() || is_blank(line[end + 1]))) {
        words.push_back({line.substr(at + 1, end - at - 1), at + 1});
        at = end + 1;
        continue;
      }
    }
    const std::size_t begin = at;
    while (at < line.size() && !is_blank(line[at])) ++at;
    words.push_back({line.substr(begin, at - begin), begin});
  }
}

void check_complete(const Question& question, bool open, Needs needs) {
  const std::size_t end = question.typed.size();
  if (question.layers.empty()) {
    refuse(question, 0, "no material given",
           "a formula (Fe2O3), a name (kapton) or a mixture "
           "(18% Cr // 8% Ni // Fe)");
  }
  if (open) refuse(question, end, "no material behind '+'");
  if (question.beams.empty() && needs == Needs::kAnswer) {
    refuse(question, end, "no energy given",
           "in keV (14.41), a range (5:30:0.5), a source (57Co) or an edge "
           "(Fe:K+50eV)");
  }
  if (question.layers.size() == 1 || needs == Needs::kLayers) return;
  for (std::size_t i = 0; i < question.layers.size(); ++i) {
    if (question.thicknesses[i].given != Given::kNothing) continue;
    refuse(question, end,
           "layer " + std::to_string(i + 1) + " (" +
               question.layers[i].material.typed + ") has no thickness");
  }
}

void check_length(Question& question) {
  if (question.typed.size() <= kLongestLine) return;
  question.typed.resize(80);
  throw InputError(
      "a question has at most " + std::to_string(kLongestLine) + " bytes", 1);
}

void clear(Question& question) {
  question.unknown.reset();
  question.beams.clear();
  question.notes.clear();
}

}  // namespace

Reader::Reader(const physics::Data& data) : data_(data) {}

void Reader::read(std::span<const std::string_view> words, Question& question,
                  Needs needs) {
  clear(question);
  question.typed.clear();
  words_.clear();
  for (const auto word : words) {
    if (!question.typed.empty()) question.typed += ' ';
    words_.push_back({{}, question.typed.size()});
    question.typed += word;
  }
  for (std::size_t i = 0; i < words.size(); ++i) {
    words_[i].text =
        std::string_view(question.typed).substr(words_[i].at, words[i].size());
  }
  check_length(question);
  understand(question, needs);
}

void Reader::read_line(std::string_view line, Question& question, Needs needs) {
  clear(question);
  question.typed = line;
  words_.clear();
  check_length(question);
  split(question.typed, words_);
  understand(question, needs);
}

Reader::Known& Reader::slot(std::string_view text) {
  return known_[std::hash<std::string_view>()(text) % known_.size()];
}

const physics::Material& Reader::material(std::string_view text) {
  Known& known = slot(text);
  if (known.text != text || text.empty()) {
    known.material = physics::material(text, data_);
    known.text = text;
  }
  return known.material;
}

// A material may be several words: the part behind an amount, and what stands
// around "//" or an adduct mark. The last of them, of which `first` is one.
std::size_t Reader::last_of_material(std::size_t first) const {
  std::size_t last = first;
  bool amount = is_amount_word(words_[last].text);
  while (last + 1 < words_.size()) {
    const bool joint = is_joint(words_[last + 1].text);
    if (!amount && !joint) break;
    ++last;
    if (joint && last + 1 < words_.size()) ++last;
    amount = is_amount_word(words_[last].text);
  }
  return last;
}

// A word that is no thickness and no energy, behind the layer's material.
void Reader::refuse_second(const Question& question, const Word& word) {
  try {
    material(word.text);
  } catch (const InputError&) {
    const auto source = nearest_source(word.text);
    refuse(question, word.at,
           quoted(word.text) + " is no thickness and no energy",
           source.empty() ? "25um, 50mg/cm2; 14.41, 122keV, 57Co"
                          : "did you mean " + source + "?");
  }
  refuse(question, word.at,
         quoted(word.text) + " is a second material in this layer",
         "put + between layers, // between parts of a mixture");
}

// "CuSO4 + 5H2O" and "CuSO4 + 5 H2O" without quotes, where `word` is the 5.
void Reader::refuse_adduct(const Question& question, const Word& word) const {
  const bool behind_plus = open_ && layers_ > 0;
  if (!behind_plus || !leading_number(word.text) ||
      question.thicknesses[layers_ - 1].given != Given::kNothing) {
    return;
  }
  refuse(question, word.at, "no layer begins with " + quoted(word.text),
         "quotes around a formula with blanks, or * in place of +");
}

// Takes the material that begins with word `first`; returns its last word.
std::size_t Reader::add_layer(Question& question, std::size_t first) {
  const Word& word = words_[first];
  if (!open_ && is_amount_word(word.text)) {
    at_word(question, word.at, [&] { return thickness(word.text); });
  }
  if (!open_) refuse_second(question, word);
  if (layers_ == kMostLayers) {
    refuse(question, word.at,
           "more than " + std::to_string(kMostLayers) + " layers");
  }
  if (layers_ == question.layers.size()) {
    question.layers.emplace_back();
    question.thicknesses.emplace_back();
  }
  const std::size_t last = last_of_material(first);
  const std::size_t end = words_[last].at + words_[last].text.size();
  const auto text =
      std::string_view(question.typed).substr(word.at, end - word.at);
  auto& layer = question.layers[layers_];
  try {
    layer.material =
        at_word(question, word.at,
                [&]() -> const physics::Material& { return material(text); });
  } catch (const InputError&) {
    refuse_adduct(question, word);
    throw;
  }
  layer.d = {};
  question.thicknesses[layers_].given = Given::kNothing;
  question.thicknesses[layers_].typed.clear();
  ++layers_;
  open_ = false;
  return last;
}

void Reader::next_layer(const Question& question, const Word& plus) {
  if (open_) refuse(question, plus.at, "no material in front of '+'");
  open_ = true;
}

void Reader::set_layer(Question& question, const Word& word, Kind kind) {
  if (open_) {
    refuse(question, word.at, "no material in front of " + quoted(word.text));
  }
  const std::size_t layer = layers_ - 1;
  if (question.thicknesses[layer].given != Given::kNothing) {
    refuse(question, word.at,
           quoted(word.text) + " is a second thickness of this layer",
           "put + and a material in front of it for another layer");
  }
  if (kind == Kind::kWanted) {
    set_wanted(question, layer, word);
  } else {
    set_thickness(question, layer, word);
  }
}

// Takes word `i` and what belongs to it; returns the last of these.
std::size_t Reader::take(Question& question, std::size_t i) {
  const Word& word = words_[i];
  // A material that was met before needs no second look.
  const bool met = !word.text.empty() && slot(word.text).text == word.text;
  const Kind kind =
      met ? Kind::kMaterial
          : at_word(question, word.at, [&] { return kind_of(word.text); });
  switch (kind) {
    case Kind::kPlus:
      next_layer(question, word);
      return i;
    case Kind::kJoint:
      refuse(question, word.at, "no material in front of " + quoted(word.text));
    case Kind::kMaterial:
      return add_layer(question, i);
    case Kind::kThickness:
    case Kind::kWanted:
      set_layer(question, word, kind);
      return i;
    case Kind::kEnergies:
      refuse_adduct(question, word);
      at_word(question, word.at, [&] {
        read_energies(word.text, word.at, question.beams, question.notes);
      });
      return i;
  }
  return i;
}

void Reader::understand(Question& question, Needs needs) {
  layers_ = 0;
  open_ = true;
  for (std::size_t i = 0; i < words_.size(); ++i) i = take(question, i);
  question.layers.resize(layers_);
  question.thicknesses.resize(layers_);
  check_complete(question, open_, needs);
  check_energies(question, data_);
  for (const auto& layer : question.layers) {
    question.notes.insert(question.notes.end(), layer.material.notes.begin(),
                          layer.material.notes.end());
  }
}

}  // namespace attenuate
