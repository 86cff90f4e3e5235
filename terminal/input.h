// Standard input, where single keys, the line editor and the dialogue's records
// come from.

#ifndef TERMINAL_INPUT_H_
#define TERMINAL_INPUT_H_

#include "base/unit.h"

namespace terminal {

// Unit 5, with a RET that the terminal did not translate made a line end: while
// the line editor reads, the terminal hands RET on as it is, so that what is
// typed ahead then arrives so.
base::Unit& input();

}  // namespace terminal

#endif  // TERMINAL_INPUT_H_
