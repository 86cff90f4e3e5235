// Number formatting by a short format code.

#ifndef TEXT_TRLNU_H_
#define TEXT_TRLNU_H_

#include "base/text.h"

namespace toolkit {

// Writes `rn` as text.
//
// formatch  "i5" integer, "f8.2" fixed, "e15.5" exponent, "a9.2" exponent as
//           label markup ("1.23*10@u4@n"); a "+" before the letter forces a
//           sign. Becomes "e15.5" when |rn| is above 1e10.
// chr       receives the text right-justified in columns 1 to `nn`
// nn        receives the width of the format
// chl       receives the text left-justified
// im        receives its length
//
// A text longer than `nn` becomes "***", the text, "***" in both fields, and
// `im` stays as it was: whoever shows chl(1:im) shows the stars and the start
// of the text. A width above 24 gives 24 stars and leaves `im` too. Infinity
// and not-a-number are `nn` stars.
//
// Meant, though it may surprise: digits are taken one by one in single
// precision, and only a digit of 6 to 9 behind the last one rounds up, a 5
// never. Just below a power of ten a leading zero appears (999.98 with "f8.2"
// is "0999.98"); it reads back as the same number.
//
// Fatal: a format letter other than i, f, e, a; a text of more than 16
// characters.
void trlnu(base::Text<7>& formatch, float rn, base::Text<24>& chr, int& nn,
           base::Text<24>& chl, int& im);

}  // namespace toolkit

#endif  // TEXT_TRLNU_H_
