// Number reading: all numbers of a line of free text.

#ifndef TEXT_TRLCH_H_
#define TEXT_TRLCH_H_

#include "base/array.h"
#include "base/text.h"

namespace toolkit {

// Reads the numbers in columns 1 to `n_ch` (at most 132) of `chin`. Digits
// make numbers; what is no part of a number separates them.
//
// iout  receives how many there are, 0..32; further ones are not read
// out   receives them in order, the remaining elements being 0
//
// Meant, though it may surprise:
// - An exponent needs a point in the mantissa: "1.e3" is 1000, "1e3" is 1 and
//   3. An "e" behind digits that follow anything else is passed over, so that
//   " 1e3" is 13.
// - A minus belongs to the number that follows, at any distance. A minus that
//   ends a number stays in force for all that follow: "5-3 7" is 5, -3, -7.
// - A number is built digit by digit in single precision: "7.874" is one step
//   above the nearest single-precision value.
void trlch(int n_ch, const base::Text<132>& chin, int& iout,
           base::Array<float, 32>& out);

}  // namespace toolkit

#endif  // TEXT_TRLCH_H_
