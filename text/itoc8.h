// Integers to and from fields of 8 characters.

#ifndef TEXT_ITOC8_H_
#define TEXT_ITOC8_H_

#include "base/text.h"

namespace toolkit {

// Writes `nn` into `ch`: "-" or a blank in column 1, the digits from column 2
// on. Zero gives a blank field. A range error above 7 digits.
void itoc8(base::Text<8>& ch, int nn);

// Reads an integer of up to 7 columns; it must be followed by a blank within
// the field, else a range error. A blank field is 0.
//
// Every character above "9" is first replaced by a blank, in the caller's field
// too. A plus may stand before the number, also before its minus. Any other
// character below "0" counts as the digit that its code stands for, so that
// "1.5" is 85: fields hold whole numbers or words, and only those are told
// apart.
void c8toi(base::Text<8>& ch, int& n);

}  // namespace toolkit

#endif  // TEXT_ITOC8_H_
