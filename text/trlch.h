// Number reading: all numbers of a line of free text.

#ifndef TEXT_TRLCH_H_
#define TEXT_TRLCH_H_

#include <string_view>
#include <vector>

#include "base/array.h"
#include "base/text.h"

namespace toolkit {

// Further numbers of a text are not read.
inline constexpr int kMostNumbers = 32;

// The numbers in `text`, in order. Digits make numbers; what is no part of a
// number separates them.
//
// Text around numbers is free ("59.5 keV, 0.5 mm"), hence:
// - An exponent needs a point in the mantissa: "1.e3" is 1000, "1e3" is 1 and
//   3. An "e" behind digits that follow anything else is passed over, so that
//   " 1e3" is 13.
// - A minus belongs to the number that follows, at any distance. A minus that
//   ends a number stays in force for all that follow: "5-3 7" is 5, -3, -7.
// A number is built digit by digit in single precision: "7.874" is one step
// above the nearest single-precision value.
std::vector<float> numbers_in(std::string_view text);

// The same for columns 1 to `n_ch` (at most 132) of `chin`.
//
// iout  receives how many there are, 0..32
// out   receives them, the remaining elements being 0
void trlch(int n_ch, const base::Line& chin, int& iout,
           base::Array<float, kMostNumbers>& out);

}  // namespace toolkit

#endif  // TEXT_TRLCH_H_
