// The help file browser.
//
// A help file is a text file of records of up to 132 characters:
//
//   /KEY            begins the entry for KEY; its text follows
//   />KEY           first record of an entry: go on with the entry for KEY
//   /#KEY           behind the text: a related entry, offered in a menu
//   /#more NAME     a related document, shown with the external viewer:
//                   dvifiles/NAME/NAME.dvi in the help directory. NAME, from
//                   column 8 on, has letters, digits, ".", "_", "-" only
//   /#details NAME  a related text file in the help directory; NAME from
//                   column 11 on
//   any other /     ends the text
//   \bf \ul \bc     the record from column 4 on in bold, underlined, blue
//   anything else   text
//
// docs/file-formats.md shows one at work.

#ifndef HELP_HELPROUTINE_H_
#define HELP_HELPROUTINE_H_

#include "base/text.h"

namespace help {

// Shows the entry for `chcom` (a key with its leading "/") of the file
// `helpfile` page by page, then its related entries as a menu, up to four
// levels deep. A key that ends in "*" lists the headers that begin with it.
// The caller's query tables are as before on return. A file that cannot be
// opened shows nothing but the closing line.
// Fatal: end of input; more than 32 related entries.
void helproutine(const base::Text<132>& chcom, const base::Text<132>& helpfile);

}  // namespace help

#endif  // HELP_HELPROUTINE_H_
