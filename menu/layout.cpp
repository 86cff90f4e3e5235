#include "menu/layout.h"

#include <algorithm>

namespace menu {

std::optional<Layout> block_layout(std::span<const Widths> entries, int line) {
  constexpr int kAround = 5;  // brackets and blanks
  constexpr int kEscape = 5;
  const int count = static_cast<int>(entries.size());
  if (count < 2) return std::nullopt;
  int width = 0;
  for (const Widths& entry : entries) {
    width = std::max(width, entry.text + entry.extension + kAround);
  }
  int columns = std::max(line, 0) / width;
  if (columns == 0) return std::nullopt;

  const int rows = (count + columns - 1) / columns;
  // A column less takes one entry from each row above the last, or from the
  // last to fill them up.
  const auto lacking = [&] { return columns * rows - count; };
  while (lacking() >= rows) --columns;

  Layout layout;
  layout.fields.assign(entries.size(), width + kEscape);
  layout.rows.assign(static_cast<std::size_t>(rows), columns);
  layout.rows.back() -= lacking();
  return layout;
}

Layout flowing_layout(std::span<const Widths> entries, int line) {
  Layout layout{std::vector<int>(entries.size()), {0}};
  std::vector<int>& rows = layout.rows;
  int used = 0;  // columns of the present row
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const int width =
        ((entries[i].text + 5) / 10 + 1) * 10 + entries[i].extension;
    layout.fields[i] = width;
    if (width >= line) {
      // What was counted for the row above goes on counting, so a short entry
      // may follow in the row of a long one. The field that is made wide is the
      // one with the number of the row, whichever entry stands there: menus
      // with a long entry have had these gaps from the start, and users know
      // their places.
      rows.push_back(1);
      layout.fields.resize(std::max(layout.fields.size(), rows.size()));
      layout.fields[rows.size() - 1] = width;
      continue;
    }
    used += width + 6;
    if (used > line) {
      used = width + 4;
      rows.push_back(1);
      continue;
    }
    ++rows.back();
    if (used == line) {
      used = 0;
      rows.push_back(0);
    }
  }
  return layout;
}

}  // namespace menu
