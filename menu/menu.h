// The selection menu: drawn once, then redrawn in place.

#ifndef MENU_MENU_H_
#define MENU_MENU_H_

#include <functional>
#include <optional>

#include "base/text.h"
#include "menu/scrd.h"

namespace menu {

// Shows the page for a help key.
using ShowHelp = std::function<void(const base::Text<132>& key)>;

struct Question {
  int entries = 0;         // in the tables, 1..64
  base::Text<132> header;  // blank for none; one wider than a line is cut
  // A substring of the entry to highlight first; blank only shows the menu.
  base::Text<80> wanted;
  bool block = false;  // columns of equal width, where they fit
  bool go = false;     // takes the wanted entry without asking
  // "w" also writes the menu to unit 10, "r" takes the choice from there, "l"
  // uses the full width of the window.
  char window_mode = ' ';
};

struct Answer {
  // The chosen one, 0 when left without a choice; nothing when only shown.
  std::optional<int> entry;
  base::Text<80> typed;  // what a quit was typed as; blank after a choice
  // Lines written; nothing where there was nothing to choose.
  std::optional<int> lines;
};

// What is wider than the window goes.
void cut_at_window(base::Text<132>& text);

// Asks for one of the entries in `tables`. "he" shows the help of the
// highlighted one with `show_help`, where there is one, and the menu again; in
// a menu of related help pages, told by its header, "he" is text like any
// other. Cuts the entries at the width of the terminal. A 64th entry can be
// chosen but is not shown.
// Fatal: end of input; entries that need more than 64 rows.
Answer ask(const Question& question, Scrd& tables, const ShowHelp& show_help);

}  // namespace menu

#endif  // MENU_MENU_H_
