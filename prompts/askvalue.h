// The value prompt.

#ifndef PROMPTS_ASKVALUE_H_
#define PROMPTS_ASKVALUE_H_

#include "base/text.h"

namespace toolkit {

// Asks for one number, showing the current one: "Photon energy in keV=[14.40]".
//
// An empty answer keeps the number as shown, rounded to the digits shown. A
// typed number is shown again and must be confirmed with an empty answer. "he"
// shows help, "*" or "q" quits; anything else is asked again.
//
// querytype  question, shown up to column `ncol`. Column 132: "r" takes the
//            answer from the script on unit 10, "w" also writes it there; blank
//            on return. After a quit the question is "*"
// form       format of the number (see trlnu); becomes "e15.5" above 1e10
// value      default in, answer out; unchanged by a quit
// chcom      help key; "back" over its first four characters when the user
//            asks for the previous question
// ncol       columns of the terminal
// nrd, nwr   units of the dialogue
//
// Fatal: end of input; a script line without "[...]".
void askvalue(base::Line& querytype, base::Text<7>& form, float& value,
              base::Line& chcom, int ncol, int nrd, int nwr);

}  // namespace toolkit

#endif  // PROMPTS_ASKVALUE_H_
