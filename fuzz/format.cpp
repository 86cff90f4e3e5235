// Number formatting: a value shown with an f or e format reads back as the
// value that it showed.

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "base/edit.h"
#include "fuzz/workspace.h"
#include "toolkit/text/trlch.h"
#include "toolkit/text/trlnu.h"

namespace {

// Whether `x` shown as "fW.D" or "eW.D" may read as `back`.
bool close(float x, float back, char letter, int decimals) {
  const double value = static_cast<double>(x);
  const double last_place =
      letter == 'f' ? std::pow(10.0, -decimals)
                    : std::fabs(value) * std::pow(10.0, 1 - decimals);
  return std::fabs(value - static_cast<double>(back)) <=
         last_place + 2e-5 * std::fabs(value);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  if (size < 7) return 0;
  float x = 0.0F;
  std::memcpy(&x, data, sizeof x);
  static_cast<void>(base::f(x, data[4] % 40, data[5] % 20));
  fuzz::run("", [&] {
    base::Text<7> format = fuzz::text_of(data + 4, size - 4);
    base::Text<24> chr;
    base::Text<24> chl;
    int width = 0;
    int im = 0;
    toolkit::trlnu(format, x, chr, width, chl, im);
  });
  const char letter = data[4] % 2 == 0 ? 'f' : 'e';
  const int decimals = 1 + data[5] % 5;
  if (!std::isfinite(x) || std::fabs(x) > 1e10F) return 0;
  if (std::fabs(x) < 1e-30F) return 0;
  fuzz::run("", [&] {
    base::Text<7> format =
        std::string(1, letter) + "24." + std::to_string(decimals);
    base::Text<24> chr;
    base::Text<24> chl;
    int width = 0;
    int im = 0;
    toolkit::trlnu(format, x, chr, width, chl, im);
    for (const char c : chl.trimmed()) {
      if (std::strchr("0123456789.-e", c) == nullptr) std::abort();
    }
    int iout = 0;
    base::Array<float, 32> out{"out"};
    toolkit::trlch(24, chl, iout, out);
    if (iout != 1 || !close(x, out(1), letter, decimals)) std::abort();
  });
  return 0;
}
