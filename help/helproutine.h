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

#include <string>

#include "base/text.h"

namespace help {

inline constexpr int kMostLinks = 32;    // followed without a text in between
inline constexpr int kMostRelated = 32;  // entries, of one entry

// Shows the entry for `chcom` (a key with its leading "/") of the file
// `helpfile` page by page, then its related entries as a menu, up to four
// levels deep. A key that ends in "*" lists the headers that begin with it.
// The caller's query tables are as before on return. A file that cannot be
// opened shows nothing but the closing line.
// Fatal: end of input; more than 32 related entries.
void helproutine(const base::Text<132>& chcom, const base::Text<132>& helpfile);

// How the browser reads records, for whoever checks a help file.

// `record` from its first non-blank character on, as headers are compared.
base::Text<132> left_justified(base::Text<132> record);

// Whether the left-justified `record` is a header. A mere "/" is one, without
// a key.
bool is_header(const base::Text<132>& record);

struct Related {
  base::Text<80> entry;  // a key, "more" or "details"
  std::string name;      // of the document or the details file
};

// What a record that begins with "/#" offers.
Related related_entry(const base::Text<132>& record);

// Whether the document `name` may go into a command.
bool safe_for_shell(const std::string& name);

}  // namespace help

#endif  // HELP_HELPROUTINE_H_
