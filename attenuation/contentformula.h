// Chemical formulas.

#ifndef ATTENUATION_CONTENTFORMULA_H_
#define ATTENUATION_CONTENTFORMULA_H_

#include "base/array.h"
#include "base/text.h"
#include "physics/flatformula.h"

namespace attenuation {

// A number for each component of a compound.
using PerComponent = base::Array<int, physics::kMostComponents>;

// Reads a formula such as "N_2H_8Fe_1S_2O_8H_12O_6" (see
// physics::flat_formula).
//
// es    the symbols to know
// j     receives the number of components, 1..12
// indx  receives the index of each into `es`
// mult  receives the atoms of each
//
// Fatal: an unknown symbol; more than 12 components.
void contentformula(const base::Text<132>& formula, const physics::Symbols& es,
                    int& j, PerComponent& indx, PerComponent& mult);

// The same as a value.
physics::Components read_formula(const base::Text<132>& formula,
                                 const physics::Symbols& es);

}  // namespace attenuation

#endif  // ATTENUATION_CONTENTFORMULA_H_
