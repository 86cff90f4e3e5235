// Edit descriptors: numbers as fixed-width fields of a record.

#ifndef BASE_EDIT_H_
#define BASE_EDIT_H_

#include <optional>
#include <string>
#include <string_view>

namespace base {

// The edit descriptor "fW.D": `value` in `width` characters with `decimals`
// digits behind the point, right-justified. Rounded from the exact binary
// value, ties to even. The zero before the point goes only when the width
// forces it; a negative value that rounds to zero keeps its sign. What does not
// fit is a row of asterisks. Infinity is written out where eight columns are
// free for it, else "Inf".
std::string fixed_field(float value, int width, int decimals);

// The edit descriptor "eW.D" on input: the number that a field holds.
//
// Blanks are ignored wherever they stand; an all-blank field is 0. Without a
// point the last `decimals` digits of the mantissa are decimals. The exponent
// follows a letter E, D or Q in either case, or a sign alone. Nothing if the
// field is no such number, also where it lies beyond double precision or has
// more than 18 digits.
std::optional<double> read_e(std::string_view text, int decimals);

}  // namespace base

#endif  // BASE_EDIT_H_
