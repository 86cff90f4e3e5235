// The records of help files.
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

#ifndef HELP_HELPFILE_H_
#define HELP_HELPFILE_H_

#include <string>

#include "base/text.h"

namespace help {

inline constexpr int kMostLinks = 32;    // followed without a text in between
inline constexpr int kMostRelated = 32;  // entries, of one entry

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

#endif  // HELP_HELPFILE_H_
