#include "menu/choose.h"

#include "base/harmless.h"
#include "base/text.h"
#include "menu/query.h"

namespace menu {

std::optional<std::size_t> choose(std::string_view header,
                                  std::string_view wanted,
                                  std::span<const Entry> entries) {
  int lq = 0;
  for (const Entry& entry : entries) {
    scrd.queryar(++lq) = base::harmless(entry.text);
    if (entry.help_key) scrd.helpar(lq) = *entry.help_key;
    scrd.ext(lq) = entry.extension;
  }
  int lk = lq;
  base::Text<132> cheader = header;
  base::Text<80> chdf = wanted;
  chdf.at(80, "chdf") = '#';
  query(lq, lk, cheader, chdf);
  if (lq == 0) return std::nullopt;
  return static_cast<std::size_t>(lq - 1);
}

}  // namespace menu
