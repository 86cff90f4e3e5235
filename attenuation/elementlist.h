// The element list: symbols, names and molar weights.

#ifndef ATTENUATION_ELEMENTLIST_H_
#define ATTENUATION_ELEMENTLIST_H_

#include "base/array.h"
#include "base/text.h"

namespace attenuation {

inline constexpr int kElements = 82;

using Symbols = base::Array<base::Text<2>, kElements>;
using ElementNames = base::Array<base::Text<12>, kElements>;
using MolarWeights = base::Array<float, kElements>;

// Indexed by record of "elements.dat", 1..82, which the preset samples take to
// be the atomic number.
struct ElementList {
  Symbols es{"es"};             // case-sensitive, "N" with a blank
  ElementNames ename{"ename"};  // as they head the coefficient file's blocks
  MolarWeights emolweight{"emolweight"};  // g/mol
};

// Reads "elements.dat" in the current directory: 82 records with the symbol in
// columns 9-10, the name in 17-28 and the weight as the first number in
// columns 30-49. Later records are not read.
// Fatal: the file is missing or shorter.
void read_element_list(ElementList& elements);

// The index of the element with exactly that symbol.
// Fatal: no element has it; the range error of `es` ends the search.
int element_with_symbol(const Symbols& es, const base::Text<2>& symbol);

}  // namespace attenuation

#endif  // ATTENUATION_ELEMENTLIST_H_
