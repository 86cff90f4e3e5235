// The yes/no prompt.

#ifndef PROMPTS_YESNO_H_
#define PROMPTS_YESNO_H_

#include "base/text.h"

namespace toolkit {

// Asks a yes/no question, showing the current answer: "Continue [y]".
//
// An empty answer keeps it. An answer beginning with "y" or "n" is shown again
// and must be confirmed; "he" shows help, "*" or "q" quits; anything else is
// asked again.
//
// querytype, chcom, ncol, nrd, nwr  as for askvalue
// ch1  "y" or "n" in; "y", "n", or "*" after a quit out
//
// In replay mode any line without "[y]" is a no.
// Fatal: end of input.
void yesno(base::Line& querytype, char& ch1, base::Line& chcom, int ncol,
           int nrd, int nwr);

}  // namespace toolkit

#endif  // PROMPTS_YESNO_H_
