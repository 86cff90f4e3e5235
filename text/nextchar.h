// Stepping through the words of a text.

#ifndef TEXT_NEXTCHAR_H_
#define TEXT_NEXTCHAR_H_

#include "base/text.h"

namespace toolkit {

// Finds the word after the one at column `il` of `chl`; words are separated by
// blanks and commas. An `il` of 0 finds the first word; at most 130 counts.
//
// ip   receives the word's first column, or two past the last non-blank
//      character if there is no further word
// cha  receives the line from that column on
// ia   receives the length of the word
void nextchar(const base::Line& chl, int il, int& ip, base::Line& cha, int& ia);

}  // namespace toolkit

#endif  // TEXT_NEXTCHAR_H_
