// Terminal geometry: how many columns and rows there are.

#ifndef TERMINAL_WINDOW_H_
#define TERMINAL_WINDOW_H_

#include "base/array.h"
#include "base/text.h"

namespace terminal {

// The terminal block. Slot 1 of the arrays is the controlling terminal on
// standard input; slots 2..8 are further terminals reached through `winfile`.
struct Term {
  int id1 = 0;  // identity of the terminal, for other programs of the family
  int npl = 0;  // usable characters per line of the main terminal
  base::Array<int, 8> ncol{"ncol"};        // columns
  base::Array<int, 8> nrows{"nrows"};      // rows
  base::Array<int, 8> ixpixel{"ixpixel"};  // width in pixels, often 0
  base::Array<int, 8> iypixel{"iypixel"};  // height in pixels, often 0
  base::Text<16> winfile;                  // device of a further window
  int led = 0;  // line-editor flag, for other programs of the family
};

extern Term term;

// Measures window `i`, 1..8, into slot i of the terminal block. Window 1 also
// sets `npl`, to at most 130; any other is the terminal that `winfile` names,
// whose blanks become zero bytes. What cannot be measured counts as 80 columns
// and 24 rows, with `npl` 80. A change of the window's size is seen by the next
// call only.
void window(int i);

// Measures the terminal on descriptor `fd` into slot `it` + 1. Returns 1 when
// the terminal answered, 0 otherwise.
int pr_winsize(int fd, int it);

}  // namespace terminal

#endif  // TERMINAL_WINDOW_H_
