// Where the entries of a menu go.

#ifndef MENU_LAYOUT_H_
#define MENU_LAYOUT_H_

#include <optional>
#include <span>
#include <vector>

namespace menu {

// Of what an entry shows, without brackets and attributes.
struct Widths {
  int text = 0;
  int extension = 0;
};

struct Layout {
  // The width of each entry's field, the escape sequence in it included.
  std::vector<int> fields;
  // How many entries each row holds.
  std::vector<int> rows;

  bool operator==(const Layout&) const = default;
};

// Columns of equal width on a line of `line` columns, balanced so that the last
// row is not much shorter than the others. Nothing where that leaves no column:
// the widest entry does not fit, or there is only one.
std::optional<Layout> block_layout(std::span<const Widths> entries, int line);

// Fields whose widths step in tens, as many to a row as fit. There may be one
// field more than entries, which nothing is shown in.
Layout flowing_layout(std::span<const Widths> entries, int line);

}  // namespace menu

#endif  // MENU_LAYOUT_H_
