#include "physics/typed_quantity.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <numbers>
#include <span>
#include <string>
#include <system_error>
#include <vector>

#include "physics/data.h"
#include "physics/errors.h"

namespace physics {
namespace {

// With both letters that stand for micro: the sign and the Greek letter.
constexpr std::array kLengths = {
    Unit{"nm", 1e-7}, Unit{"um", 1e-4}, Unit{"mm", 0.1},
    Unit{"cm", 1.0},  Unit{"m", 100.0}, Unit{"mil", 2.54e-3},
    Unit{"in", 2.54}, Unit{"µm", 1e-4}, Unit{"μm", 1e-4}};
// As advice names them; every mass per area is one.
constexpr std::array kAreaMasses = {
    std::string_view("ug/cm2"), std::string_view("mg/cm2"),
    std::string_view("g/cm2"), std::string_view("kg/m2")};
constexpr std::array kMasses = {Unit{"ug", 1e-6}, Unit{"mg", 1e-3},
                                Unit{"g", 1.0},   Unit{"kg", 1000.0},
                                Unit{"µg", 1e-6}, Unit{"μg", 1e-6}};
constexpr std::array kAreas = {
    Unit{"mm2", 0.01},  Unit{"cm2", 1.0},  Unit{"m2", 1e4},
    Unit{"mm²", 0.01},  Unit{"cm²", 1.0},  Unit{"m²", 1e4},
    Unit{"mm^2", 0.01}, Unit{"cm^2", 1.0}, Unit{"m^2", 1e4}};
constexpr std::array kEnergies = {Unit{"keV", 1.0}, Unit{"eV", 1e-3},
                                  Unit{"MeV", 1e3}};

// What no sample reaches, so that products stay finite.
constexpr double kMostCm = 1e9;
constexpr double kMostG_cm2 = 1e9;

const Unit* find(std::span<const Unit> units, std::string_view name) {
  const auto found =
      std::find_if(units.begin(), units.end(),
                   [name](const Unit& u) { return u.name == name; });
  return found == units.end() ? nullptr : &*found;
}

int column_of(std::string_view part, std::string_view word) {
  return static_cast<int>(part.data() - word.data()) + 1;
}

// `part` is the number and unit of a length, inside of `word`.
double positive(const std::optional<Number>& number, std::string_view part,
                std::string_view word, const char* what) {
  if (!number) {
    throw InputError("'" + std::string(part) + "' is not a number with a unit",
                     column_of(part, word));
  }
  if (!(number->value > 0)) {
    throw InputError(std::string(what) + " must be above 0",
                     column_of(part, word));
  }
  return number->value;
}

// The area behind "/": "d13mm" of a disc, "1.33cm2", or a unit alone.
double area(std::string_view part, std::string_view word) {
  if (const Unit* unit = find(kAreas, part); unit != nullptr) {
    return unit->factor;
  }
  if (part.starts_with('d')) {
    const auto number = leading_number(part.substr(1));
    const double value = positive(number, part.substr(1), word, "a diameter");
    const Unit* unit = find(kLengths, number->rest);
    if (unit == nullptr) {
      refuse_unit(number->rest,
                  static_cast<std::size_t>(column_of(number->rest, word)));
    }
    const double radius = value * unit->factor / 2;
    return std::numbers::pi * radius * radius;
  }
  const auto number = leading_number(part);
  if (!number && !part.empty()) {  // "5mg/cm3"
    const std::string_view unit = leading_number(word)->rest;
    refuse_unit(unit, static_cast<std::size_t>(column_of(unit, word)));
  }
  const double value = positive(number, part, word, "an area");
  const Unit* unit = find(kAreas, number->rest);
  if (unit == nullptr) {
    throw InputError("'" + std::string(number->rest) + "' is no unit of area",
                     column_of(number->rest, word), "mm2, cm2 or m2");
  }
  return value * unit->factor;
}

LengthOrAreaMass in_range(const LengthOrAreaMass& thickness,
                          std::string_view word) {
  const double size = thickness.length ? thickness.length->cm / kMostCm
                                       : thickness.area_mass.g_cm2 / kMostG_cm2;
  if (!(size <= 1)) {
    throw InputError(std::string(word) + " is thicker than any sample", 1);
  }
  if (!(size > 1e-30)) {
    throw InputError(std::string(word) + " is thinner than any sample", 1);
  }
  return thickness;
}

std::vector<std::string_view> all_units() {
  std::vector<std::string_view> names(kAreaMasses.begin(), kAreaMasses.end());
  names.reserve(kAreaMasses.size() + kEnergies.size() + kLengths.size());
  for (const auto& unit : kEnergies) names.push_back(unit.name);
  for (const auto& unit : kLengths) names.push_back(unit.name);
  return names;
}

char lower(char c) {
  return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool same_letters(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

// The unit that was meant: by its letters first, whatever their size.
std::string meant_unit(std::string_view name) {
  const auto known = all_units();
  for (const auto unit : known) {
    if (same_letters(unit, name)) return std::string(unit);
  }
  if (name.size() > 16) return {};
  const auto near = nearest(name, known, 1);
  if (near.empty()) return {};
  // "km" is not meant for nm: another prefix is another size.
  const bool other_prefix =
      near.front().size() == name.size() && near.front()[0] != name[0];
  return other_prefix ? std::string() : near.front();
}

}  // namespace

std::optional<Number> leading_number(std::string_view word) {
  const std::size_t digit = word.find_first_not_of("-.");
  if (digit > 2 || digit >= word.size() || word[digit] < '0' ||
      word[digit] > '9') {
    return std::nullopt;
  }
  Number number;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number.value);
  if (error == std::errc::invalid_argument) return std::nullopt;
  number.typed = word.substr(0, static_cast<std::size_t>(stop - word.data()));
  number.rest = word.substr(number.typed.size());
  // "25 um" in quotes.
  const std::size_t blanks = number.rest.find_first_not_of(' ');
  number.rest.remove_prefix(std::min(blanks, number.rest.size()));
  if (error == std::errc::result_out_of_range) {
    throw InputError("a number of this size cannot be computed with", 1);
  }
  return number;
}

const Unit* energy_unit(std::string_view name) { return find(kEnergies, name); }

bool looks_like_thickness(const Number& number) {
  return find(kLengths, number.rest) != nullptr ||
         find(kMasses, number.rest.substr(0, number.rest.find('/'))) != nullptr;
}

LengthOrAreaMass thickness(std::string_view word) {
  const auto number = leading_number(word);
  const double value = positive(number, word, word, "a thickness");
  const std::string_view rest = number->rest;
  if (const Unit* unit = find(kLengths, rest); unit != nullptr) {
    return in_range({Length{value * unit->factor}, {}}, word);
  }
  const std::size_t slash = rest.find('/');
  const Unit* mass = find(kMasses, rest.substr(0, slash));
  if (mass == nullptr) {
    refuse_unit(rest, static_cast<std::size_t>(column_of(rest, word)));
  }
  if (slash == std::string_view::npos) {
    throw InputError(std::string(word) + " is a mass, not a thickness", 1,
                     std::string(word) + "/d13mm on a disc of 13 mm, or " +
                         std::string(word) + "/1.33cm2");
  }
  const double on = area(rest.substr(slash + 1), word);
  return in_range({{}, {value * mass->factor / on}}, word);
}

Energy energy(std::string_view word) {
  const auto number = leading_number(word);
  const double value = positive(number, word, word, "an energy");
  if (number->rest.empty()) return {value};
  const Unit* unit = energy_unit(number->rest);
  if (unit == nullptr) {
    refuse_unit(number->rest,
                static_cast<std::size_t>(column_of(number->rest, word)));
  }
  return {value * unit->factor};
}

bool is_unit_in_other_letters(std::string_view name) {
  const auto known = all_units();
  return std::any_of(known.begin(), known.end(), [name](const auto unit) {
    return same_letters(unit, name);
  });
}

void refuse_unit(std::string_view name, std::size_t column) {
  constexpr char kKnown[] =
      "nm um mm cm m mil in; ug/cm2 mg/cm2 g/cm2 kg/m2; eV keV MeV";
  if (name.empty()) {
    throw InputError("a unit is missing", static_cast<int>(column), kKnown);
  }
  const std::string message = "unit '" + std::string(name) + "' is not known";
  const std::string meant = meant_unit(name);
  if (meant == name) {
    throw InputError("unit '" + std::string(name) + "' has no place here",
                     static_cast<int>(column), kKnown);
  }
  if (!meant.empty()) {
    throw InputError(message + "; did you mean " + meant + "?",
                     static_cast<int>(column));
  }
  throw InputError(message, static_cast<int>(column), kKnown);
}

}  // namespace physics
