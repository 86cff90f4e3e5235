// Number reading: any line of text, any number of columns.

#include <cmath>
#include <cstdlib>

#include "fuzz/workspace.h"
#include "toolkit/text/itoc8.h"
#include "toolkit/text/nextchar.h"
#include "toolkit/text/trlch.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  if (size == 0) return 0;
  const base::Text<132> line = fuzz::text_of(data + 1, size - 1);
  int iout = -1;
  base::Array<float, 32> out{"out"};
  toolkit::trlch(data[0], line, iout, out);
  if (iout < 0 || iout > 32) std::abort();
  for (int i = iout + 1; i <= 32; ++i) {
    if (out(i) != 0.0F) std::abort();
  }
  int ip = 0;
  int ia = 0;
  base::Text<132> word;
  toolkit::nextchar(line, data[0], ip, word, ia);
  fuzz::run("", [&] {
    base::Text<8> field = line;
    int n = 0;
    toolkit::c8toi(field, n);
  });
  return 0;
}
