// Chemical formulas.

#ifndef ATTENUATION_CONTENTFORMULA_H_
#define ATTENUATION_CONTENTFORMULA_H_

#include <string>

#include "attenuation/elementlist.h"
#include "base/array.h"
#include "base/text.h"

namespace attenuation {

inline constexpr int kComponents = 12;

using Composition = base::Array<int, kComponents>;

// Reads a formula such as "N_2H_8Fe_1S_2O_8H_12O_6": components of a symbol,
// "_" and a count, without separators, brackets or implied counts. Every
// occurrence of an element is a component of its own.
//
// es    the symbols to know
// j     receives the number of components, 1..12
// indx  receives the index of each into `es`
// mult  receives the atoms of each
//
// Counts have up to three digits behind a one-letter symbol. Behind a
// two-letter symbol a count has one digit; a second one is taken twice and
// swallows the character behind it ("Fe_12" is 122), which is a rule of the
// notation: write Fe_9Fe_3. What stands in the place of the first digit counts
// as one, digit or not.
//
// Fatal: an unknown symbol; more than 12 components.
void contentformula(const base::Text<132>& formula, const Symbols& es, int& j,
                    Composition& indx, Composition& mult);

// These components as a formula with every count in full. Unlike the formula
// that they come from, where that was not read as it looks: "H_2O" is read as
// "H_2O_-16", "Fe_12" as "Fe_122".
std::string written_out(const Symbols& es, int j, const Composition& indx,
                        const Composition& mult);

}  // namespace attenuation

#endif  // ATTENUATION_CONTENTFORMULA_H_
