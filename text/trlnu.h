// Number formatting by a short format code.

#ifndef TEXT_TRLNU_H_
#define TEXT_TRLNU_H_

#include <optional>

#include "base/text.h"

namespace toolkit {

struct FormattedNumber {
  base::Text<7> format;  // the one that was used
  base::Text<24> right;  // the text, right-justified in columns 1 to `width`
  base::Text<24> left;   // the text, left-justified
  int width = 0;         // of the format
  std::optional<int> length;  // of the text; none if the width is above 24
};

// Writes `value` as text.
//
// format  "i5" integer, "f8.2" fixed, "e15.5" exponent, "a9.2" exponent as
//         label markup ("1.23*10@u4@n"); a "+" before the letter forces a sign.
//         Above 1e10 it is always "e15.5".
//
// A text wider than the format stands between stars in both fields,
// "***1234567.00***". Its length is still the text's own, so that whoever shows
// left(1:length) shows the stars and the start of the text. A width above 24
// gives 24 stars. Infinity and not-a-number are `width` stars.
//
// Digits are taken one by one in single precision, and only a digit of 6 to 9
// behind the last one rounds up, a 5 never: with so few digits it may as well
// stand for 4.9. Just below a power of ten a leading zero can appear (999.98
// with "f8.2" is "0999.98"); it reads back as the same number.
//
// Fatal: a format letter other than i, f, e, a; a text of more than 16
// characters.
FormattedNumber formatted(base::Text<7> format, float value);

// The same into the fields of the caller; a format without a length leaves `im`
// as it was.
//
// formatch, nn  format; its width
// chr, chl, im  the text on the right and on the left, its length
void trlnu(base::Text<7>& formatch, float rn, base::Text<24>& chr, int& nn,
           base::Text<24>& chl, int& im);

}  // namespace toolkit

#endif  // TEXT_TRLNU_H_
