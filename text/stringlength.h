// Measuring, left-justifying and lower-casing a text, in place.

#ifndef TEXT_STRINGLENGTH_H_
#define TEXT_STRINGLENGTH_H_

#include "base/text.h"

namespace toolkit {

// Left-justifies `ch` and sets `il` to its length. A blank text, or one whose
// first character has the code 0, stays as it is and has the length 0. Column
// 132 moves along with the rest but is never counted: it carries a flag.
void stringlength(base::Line& ch, int& il);

// Left-justifies `ch` like stringlength and maps "A".."Z" to lower case over
// the length that it counts.
void lc_character(base::Line& ch);

}  // namespace toolkit

#endif  // TEXT_STRINGLENGTH_H_
