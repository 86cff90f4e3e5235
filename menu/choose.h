// A menu for a list of entries.

#ifndef MENU_CHOOSE_H_
#define MENU_CHOOSE_H_

#include <optional>
#include <span>
#include <string_view>

namespace menu {

struct Entry {
  std::string_view text;  // cut at 132 characters, made harmless
  // Of the page that "he" shows. An entry without one has the key that the
  // menu before left in its row of the query tables.
  std::optional<std::string_view> help_key{};
  std::string_view extension{};
};

// Lets the user choose among 1..64 entries, laid out in columns of equal width,
// with the first highlighted that contains `wanted`, of at most 79 characters.
// The index of the chosen one, from 0; nothing when the menu was left without a
// choice. A blank `wanted` only shows the menu and counts as a choice of the
// last entry. The entries as shown stay in the query tables.
// Fatal: end of input.
std::optional<std::size_t> choose(std::string_view header,
                                  std::string_view wanted,
                                  std::span<const Entry> entries);

}  // namespace menu

#endif  // MENU_CHOOSE_H_
