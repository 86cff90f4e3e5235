#include "text/stringend.h"

namespace toolkit {

void stringend(const base::Line& ch, int& il) {
  if (il == 0 || il > base::kLine) il = base::kLine;
  il = static_cast<int>(base::trimmed(ch.columns(1, il, "ch")).size());
}

}  // namespace toolkit
