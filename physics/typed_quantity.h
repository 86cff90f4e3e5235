// Numbers with units: thicknesses and energies as words.

#ifndef PHYSICS_TYPED_QUANTITY_H_
#define PHYSICS_TYPED_QUANTITY_H_

#include <cstddef>
#include <optional>
#include <string_view>

#include "physics/quantities.h"

namespace physics {

// The number that a word begins with.
struct Number {
  double value = 0.0;
  std::string_view typed;
  std::string_view rest;  // behind it and a blank
};

// Nothing where `word` does not begin with a digit, or with a point or minus
// and a digit. Throws InputError: too large or too small for a number.
std::optional<Number> leading_number(std::string_view word);

struct Unit {
  std::string_view name;
  double factor;
};

const Unit* energy_unit(std::string_view name);  // to keV

// A thickness, by length or by mass per area.
struct LengthOrAreaMass {
  std::optional<Length> length;
  AreaMass area_mass;  // where no length is given
};

// Whether `word` is a number and what looks like a unit of thickness.
bool looks_like_thickness(const Number& number);

// Reads "25um", "50mg/cm2", "30mg/d13mm", "30mg/1.33cm2". Throws
// InputError with the column in `word`.
LengthOrAreaMass thickness(std::string_view word);

// Reads "14.41", "122keV", "1.3325MeV". Throws InputError with the
// column in `word`.
Energy energy(std::string_view word);

// Whether `name` is a unit but for capital and small letters: "kev".
bool is_unit_in_other_letters(std::string_view name);

// What is wrong with `name` in place of a unit, as an error in `column`.
[[noreturn]] void refuse_unit(std::string_view name, std::size_t column);

}  // namespace physics

#endif  // PHYSICS_TYPED_QUANTITY_H_
