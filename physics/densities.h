// Densities of the modifications of elements, from a file of records.

#ifndef PHYSICS_DENSITIES_H_
#define PHYSICS_DENSITIES_H_

#include <optional>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "base/unit.h"

namespace physics {

// Modifications that an element can have, as many as a menu can show.
inline constexpr int kMostModifications = 64;

// A record without its atomic number: the text for a menu, in which the
// density is the first number from column 31 (39 of the record) on.
using ModificationText = base::Text<72>;

// g/cm3; nothing if there is no number.
std::optional<float> density_in(const base::Text<132>& text);

// The atomic number in columns 1-8 of a record, 0 for words.
// Fatal: more digits than 7.
int density_code_in(const base::Text<80>& record);

// The modifications of the element with the atomic number `z`, above 0, in the
// order of the file: the records of the first group with that number.
// Fatal: the file has none, or ends with them (another record must follow);
// more than 64.
std::vector<ModificationText> read_modifications(base::Unit& file, int z);

}  // namespace physics

#endif  // PHYSICS_DENSITIES_H_
