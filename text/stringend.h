// The end of a text within a number of columns.

#ifndef TEXT_STRINGEND_H_
#define TEXT_STRINGEND_H_

#include "base/text.h"

namespace toolkit {

// Sets `il` to the column of the last non-blank character of `ch` at or before
// column `il`, 0 if there is none. An `il` of 0, or above 132, means 132.
void stringend(const base::Line& ch, int& il);

}  // namespace toolkit

#endif  // TEXT_STRINGEND_H_
