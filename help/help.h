// Help lookup: from a help key to its page in the help file.

#ifndef HELP_HELP_H_
#define HELP_HELP_H_

#include "base/array.h"
#include "base/text.h"

namespace help {

// The help file's name relative to the help directory, set by the program at
// its start.
struct Localpath {
  base::Text<80> localhepath;
};

extern Localpath localpath;

// The help block.
struct Cmpa {
  base::Text<64> zoxuhepath;  // help directory, for "details" files
  int nwrwin = 0;             // output unit of the help text
  base::Array<base::Text<16>, 8> chterm{"chterm"};  // for other programs
};

extern Cmpa cmpa;

// Shows the help for the key `chin` and lets the user walk on to related pages
// (see helproutine). The help file is "$ZOXUHEPATH" followed directly by
// `localhepath`, else "helpfile.help" in the current directory; a message says
// so when there is neither. The help directory, or "." without one, goes into
// `cmpa`. Fatal: end of input; more than 32 related entries.
void help(const base::Text<132>& chin);

}  // namespace help

#endif  // HELP_HELP_H_
