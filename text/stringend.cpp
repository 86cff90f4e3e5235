#include "text/stringend.h"

namespace toolkit {

void stringend(const base::Text<132>& ch, int& il) {
  if (il == 0 || il > 132) il = 132;
  il = static_cast<int>(base::trimmed(ch.columns(1, il, "ch")).size());
}

}  // namespace toolkit
