// Numbers in the free text of data records, as values.

#ifndef PHYSICS_FREETEXT_H_
#define PHYSICS_FREETEXT_H_

#include <optional>
#include <string_view>

#include "base/text.h"

namespace physics {

// The first number in columns 1 to `columns` of `text` (see trlch), if any.
std::optional<float> first_number(const base::Text<132>& text, int columns);

// The whole number in a field of 8 columns (see c8toi).
// Fatal: no blank behind it within the field.
int whole_number(std::string_view field);

}  // namespace physics

#endif  // PHYSICS_FREETEXT_H_
