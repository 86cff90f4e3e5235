// The flat notation of formulas, "N_2H_8Fe_1S_2O_8H_12O_6", and what it stands
// for: counted elements of an element list.

#ifndef PHYSICS_FLATFORMULA_H_
#define PHYSICS_FLATFORMULA_H_

#include <span>
#include <string>

#include "base/array.h"
#include "base/fatal.h"
#include "base/text.h"
#include "physics/elementlist.h"

namespace physics {

inline constexpr int kMostComponents = 12;

// An element of the list and its atoms per formula unit.
struct Component {
  int index = 0;
  int count = 0;
};

// Up to 12 components, in the order of the formula. An element that comes again
// is a component of its own.
class Components {
 public:
  // A range error of `indx` beyond 12.
  void add(Component component) { items_(size_ + 1) = component, ++size_; }

  int size() const { return size_; }
  const Component* begin() const { return size_ == 0 ? nullptr : &items_(1); }
  const Component* end() const { return begin() + size_; }

 private:
  base::Array<Component, kMostComponents> items_{"indx"};
  int size_ = 0;
};

// A formula that cannot be read.
class FlatFormulaError : public base::RangeError {
 public:
  FlatFormulaError(const base::RangeError& cause, std::string rest,
                   bool too_long);

  // The formula from the component on where reading stopped.
  const std::string& rest() const { return rest_; }
  // Whether that is a 13th component; else its symbol is unknown.
  bool too_long() const { return too_long_; }

 private:
  std::string rest_;
  bool too_long_;
};

// Reads a formula: components of a symbol, "_" and a count, without separators,
// brackets or implied counts. Blanks before it do not count.
//
// Counts have up to three digits behind a one-letter symbol. Behind a
// two-letter symbol a count has one digit; a second one is taken twice and
// swallows the character behind it ("Fe_12" is 122), so one writes Fe_9Fe_3.
// What stands in the place of the first digit counts as one, digit or not.
//
// Throws FlatFormulaError.
Components flat_formula(const base::Text<132>& text, const Symbols& es);

// A formula that reads as these components, with every count in full. Other
// than the one they come from where that was not read as it looks: "H_2O" is
// read as "H_2O_-16", "Fe_12" as "Fe_122".
std::string flat_formula(const Components& components, const Symbols& es);

// mu/rho in cm2/g of a compound from the `coefficients` of its components, in
// their order, by mass fraction (Bragg's additivity rule); not a number if no
// atom is counted. In single precision, summed up from the first component on.
float mass_attenuation(const Components& components,
                       const MolarWeights& weights,
                       std::span<const float> coefficients);

}  // namespace physics

#endif  // PHYSICS_FLATFORMULA_H_
