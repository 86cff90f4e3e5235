// The selection menu and its query tables.

#ifndef MENU_QUERY_H_
#define MENU_QUERY_H_

#include "base/array.h"
#include "base/text.h"

namespace menu {

// The query tables. The caller of `query` fills the first three for its
// entries 1..n, n at most 64; the rest is the menu's work area.
struct Scrd {
  base::Array<base::Text<132>, 64> queryar{"queryar"};  // text as shown
  base::Array<base::Text<132>, 64> helpar{"helpar"};    // help key
  base::Array<base::Text<16>, 64> ext{"ext"};  // extension, blank for none

  base::Array<base::Text<132>, 64> type{"type"};  // display text
  base::Array<int, 64> ld{"ld"};                  // length of the extension
  base::Array<int, 64> lw{"lw"};                  // length of the text
  base::Array<int, 64> laenge{"laenge"};   // field width, escapes included
  base::Array<int, 65, 0> lpart{"lpart"};  // entries in row 1..; lpart(0) = 0
};

extern Scrd scrd;

// What shows the help for a key, set by the program at its start; without one
// a menu has no help.
using ShowHelp = void (*)(const base::Text<132>& key);
extern ShowHelp show_help;

// Shows the entries as a menu under a header and lets the user pick one, by
// typing a substring of it or with the cursor keys, and RET. "he" shows the
// help of the highlighted entry, "q" or "*" leaves without a choice ("q" not
// when an entry begins with it).
//
// lq       in: number of entries, 1..64. Out: the chosen entry; 0 when left
//          without a choice; unchanged in display-only mode
// lk       out: 0 after a choice or a quit, `lq` in display-only mode
// cheader  header. "g" in column 131 takes the default without asking. Column
//          132 is the window mode, consumed by the call: "w" also writes the
//          menu to unit 10, "r" takes the choice from there, "l" uses the full
//          width of the window. A header longer than a line is cut.
// chdf     in: columns 1..79 the default, a substring of the entry to highlight
//          first; blank only shows the menu. "#" in column 80 lays the entries
//          out in columns of equal width. Out: blank after a choice, the typed
//          text after a quit; column 80 the character "0" + the number of lines
//          written
//
// Needs the terminal block. Cuts the entries at the width of the terminal. A
// 64th entry can be chosen but is not shown.
// Fatal: end of input; entries that need more than 64 rows.
void query(int& lq, int& lk, base::Text<132>& cheader, base::Text<80>& chdf);

}  // namespace menu

#endif  // MENU_QUERY_H_
