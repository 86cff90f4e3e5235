// The selection menu over the query tables.

#ifndef MENU_QUERY_H_
#define MENU_QUERY_H_

#include "base/text.h"
#include "menu/menu.h"
#include "menu/scrd.h"

namespace menu {

// What shows the help of the entries, set by the program at its start; without
// it a menu has no help.
extern ShowHelp show_help;

// Shows the entries of `scrd` as a menu under a header and lets the user pick
// one, by typing a substring of it or with the cursor keys, and RET. "he" shows
// the help of the highlighted entry, "q" or "*" leaves without a choice ("q"
// not when an entry begins with it).
//
// lq       in: number of entries, 1..64. Out: the chosen entry; 0 when left
//          without a choice; unchanged in display-only mode
// lk       out: 0 after a choice or a quit, `lq` in display-only mode
// cheader  header. "g" in column 131 takes the default without asking. Column
//          132 is the window mode (see Question), consumed by the call. A
//          header longer than a line is cut
// chdf     in: columns 1..79 the default, a substring of the entry to highlight
//          first; blank only shows the menu. "#" in column 80 lays the entries
//          out in columns of equal width. Out: blank after a choice, the typed
//          text after a quit; column 80 the character "0" + the number of lines
//          written
//
// Needs the terminal block. Fatal: end of input; entries that need more than 64
// rows.
void query(int& lq, int& lk, base::Text<132>& cheader, base::Text<80>& chdf);

}  // namespace menu

#endif  // MENU_QUERY_H_
