// The query tables.

#ifndef MENU_SCRD_H_
#define MENU_SCRD_H_

#include "base/array.h"
#include "base/text.h"

namespace menu {

inline constexpr int kMostEntries = 64;

// Whoever asks fills the first three for its entries 1..n; the rest is the
// menu's work area.
struct Scrd {
  template <typename T>
  using Table = base::Array<T, kMostEntries>;

  Table<base::Text<132>> queryar{"queryar"};  // text as shown
  Table<base::Text<132>> helpar{"helpar"};    // help key
  Table<base::Text<16>> ext{"ext"};           // extension, blank for none

  Table<base::Text<132>> type{"type"};  // display text
  Table<int> ld{"ld"};                  // length of the extension
  Table<int> lw{"lw"};                  // length of the text
  Table<int> laenge{"laenge"};          // field width, escapes included
  // Entries in row 1..; lpart(0) = 0.
  base::Array<int, kMostEntries + 1, 0> lpart{"lpart"};
};

extern Scrd scrd;

}  // namespace menu

#endif  // MENU_SCRD_H_
