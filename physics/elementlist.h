// The element list: symbols, names and molar weights, and how a name finds its
// block among the coefficients.

#ifndef PHYSICS_ELEMENTLIST_H_
#define PHYSICS_ELEMENTLIST_H_

#include <optional>
#include <string_view>

#include "base/array.h"
#include "base/text.h"
#include "base/unit.h"

namespace physics {

// Elements in the list: hydrogen to lead.
inline constexpr int kListedElements = 82;

using Symbols = base::Array<base::Text<2>, kListedElements>;
using ElementNames = base::Array<base::Text<12>, kListedElements>;
using MolarWeights = base::Array<float, kListedElements>;

// Indexed by record, 1..82, which is the atomic number in the list that comes
// with the program.
struct ElementList {
  Symbols es{"es"};             // case-sensitive, "N" with a blank
  ElementNames ename{"ename"};  // as they head the blocks of coefficients
  MolarWeights emolweight{"emolweight"};  // g/mol
};

// A record of the list.
struct ListedElement {
  base::Text<2> symbol;         // columns 9-10
  base::Text<12> name;          // columns 17-28
  std::optional<float> weight;  // the first number in columns 30-49, g/mol
};
ListedElement element_in(const base::Text<80>& record);

// Reads the 82 records of a list; a missing weight counts as 0.
// Fatal: the file is shorter.
ElementList read_element_list(base::Unit& file);

// The index of the element with exactly that symbol.
// Fatal: no element has it; the range error of `es` ends the search.
int index_of_symbol(const Symbols& es, const base::Text<2>& symbol);

// Whether `record` heads the block of the element `name`: it has that name from
// column 2 on, whatever follows. A blank name heads none.
bool heads_block(std::string_view record, const base::Text<12>& name);

// Reads `file` to the record that heads the block of `name`, and the one behind
// it, which has the atomic number and is returned cut to `N` columns. The file
// is left before the titles of the block.
// Fatal: no such element; a name that does not fit N - 1 columns.
template <int N>
base::Text<N> find_block(base::Unit& file, const base::Text<12>& name) {
  base::Text<N> element;
  static_cast<void>(element.columns(2, name.length() + 1, "element"));
  do {
    file.read_to(2, name.trimmed(), element);
  } while (!heads_block(element.full(), name));
  file.read(element);
  return element;
}

// The atomic number in columns 4-11 of the record behind the one that heads a
// block, 0 if there is none.
// Fatal: more digits than 7.
int atomic_number_in(const base::Text<16>& record);

}  // namespace physics

#endif  // PHYSICS_ELEMENTLIST_H_
