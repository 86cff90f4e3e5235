// The text prompt.

#ifndef PROMPTS_ASKSTRING_H_
#define PROMPTS_ASKSTRING_H_

#include "base/text.h"

namespace toolkit {

// Asks for a text, showing the current one: "symbol for the element [Cu]". The
// line is edited with history; the default can be recalled and changed.
//
// An empty answer, or one that begins with four blanks, keeps the text. A typed
// text is shown again and must be confirmed. "he" alone shows help ("help" is
// an answer like any other), "*" or a small "q" in column 1 quits.
//
// querytype, chcom, ncol, nwr  as for askvalue; the question is not cut
// chstr  default in, answer out, at most 80 characters; "*" after a quit
// nrd    not read: the line comes from the line editor
//
// In replay mode the answer has the length of the default, not that of the
// recorded answer: scripts are written for the defaults they were recorded at.
// Fatal: end of input; an answer of more than 80 characters.
void askstring(base::Line& querytype, base::Line& chstr, base::Line& chcom,
               int ncol, int nrd, int nwr);

}  // namespace toolkit

#endif  // PROMPTS_ASKSTRING_H_
