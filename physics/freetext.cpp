#include "physics/freetext.h"

#include "base/array.h"
#include "text/itoc8.h"
#include "text/trlch.h"

namespace physics {

std::optional<float> first_number(const base::Text<132>& text, int columns) {
  int iout = 0;
  base::Array<float, 32> out{"out"};
  toolkit::trlch(columns, text, iout, out);
  if (iout == 0) return std::nullopt;
  return out(1);
}

int whole_number(std::string_view field) {
  base::Text<8> ch8 = field;
  int n = 0;
  toolkit::c8toi(ch8, n);
  return n;
}

}  // namespace physics
