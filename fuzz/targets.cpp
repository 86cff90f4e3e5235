// What the program reads from outside, each a fuzz target of its own. A fatal
// end is as good as any; nothing else may end the process.

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "attenuation/coefficientfile.h"
#include "attenuation/contentformula.h"
#include "attenuation/dialogue.h"
#include "attenuation/elementdensity.h"
#include "base/edit.h"
#include "fuzz/workspace.h"
#include "help/helproutine.h"
#include "toolkit/text/itoc8.h"
#include "toolkit/text/nextchar.h"
#include "toolkit/text/trlch.h"
#include "toolkit/text/trlnu.h"

namespace fuzz {
namespace {

using base::Text;

// The input before and after its first byte of code 0: a file and keys.
std::pair<std::string_view, std::string_view> file_and_keys(
    std::string_view input) {
  const auto end = std::min(input.find('\0'), input.size());
  return {input.substr(0, end), input.substr(std::min(end + 1, input.size()))};
}

unsigned byte(std::string_view input, std::size_t i) {
  return static_cast<unsigned char>(input[i]);
}

// Any line of text, any number of columns.
[[maybe_unused]] void number(std::string_view input) {
  if (input.empty()) return;
  const Text<132> line = input.substr(1);
  const int columns = static_cast<int>(byte(input, 0));
  int iout = -1, ip = 0, ia = 0;
  base::Array<float, 32> out{"out"};
  toolkit::trlch(columns, line, iout, out);
  require(0 <= iout && iout <= 32);
  for (int i = iout + 1; i <= 32; ++i) require(out(i) == 0.0F);
  Text<132> word;
  toolkit::nextchar(line, columns, ip, word, ia);
  run("", [&] {
    Text<8> field = line;
    toolkit::c8toi(field, ip);
  });
}

std::string formatted(float x, Text<7> code) {
  Text<24> chr, chl;
  int width = 0, im = 0;
  toolkit::trlnu(code, x, chr, width, chl, im);
  return std::string(chl.trimmed());
}

// Whether `x` shown as "fW.D" or "eW.D" may read as `back`.
bool close(float x, float back, bool fixed, int decimals) {
  const double value = static_cast<double>(x);
  const double last_place =
      fixed ? std::pow(10.0, -decimals)
            : std::fabs(value) * std::pow(10.0, 1 - decimals);
  return std::fabs(value - static_cast<double>(back)) <=
         last_place + 2e-5 * std::fabs(value);
}

// Any format; and a value shown with an f or e format reads back as it was.
[[maybe_unused]] void format(std::string_view input) {
  if (input.size() < 7) return;
  float x = 0.0F;
  std::memcpy(&x, input.data(), sizeof x);
  const int a = static_cast<int>(byte(input, 4));
  const int b = static_cast<int>(byte(input, 5));
  static_cast<void>(base::f(x, a % 40, b % 20));
  run("", [&] { formatted(x, input.substr(4)); });
  if (!(1e-30F <= std::fabs(x) && std::fabs(x) <= 1e10F)) return;
  run("", [&] {
    const bool fixed = a % 2 == 0;
    const int decimals = 1 + b % 5;
    const std::string shown =
        formatted(x, (fixed ? "f24." : "e24.") + std::to_string(decimals));
    require(shown.find_first_not_of("0123456789.-e") == shown.npos);
    int iout = 0;
    base::Array<float, 32> out{"out"};
    toolkit::trlch(24, shown, iout, out);
    require(iout == 1 && close(x, out(1), fixed, decimals));
  });
}

// Whatever is typed ends as a composition within its bounds.
[[maybe_unused]] void formula(std::string_view input) {
  static attenuation::ElementList elements;
  run("", [&] {
    if (elements.es(1).blank()) read_element_list(elements);
    int j = 0;
    attenuation::Composition indx{"indx"}, mult{"mult"};
    attenuation::contentformula(input, elements.es, j, indx, mult);
    require(1 <= j && j <= 12);
    // Plain formulas have plain counts, but for the doubled second digit.
    const bool plain = attenuation::counts_are_numbers(input);
    for (int i = 1; i <= j; ++i) {
      require(1 <= indx(i) && indx(i) <= 82);
      require(!plain || (0 <= mult(i) && mult(i) <= 999));
    }
  });
}

// Two bytes of energy, then the coefficient file.
[[maybe_unused]] void block(std::string_view input) {
  if (input.size() < 2) return;
  provide("attenuation.coefficients", input.substr(2));
  run("", [&] {
    const unsigned quarters = byte(input, 0) * 256 + byte(input, 1);
    Text<16> element;
    float atc = 0.0F;
    attenuation::find_element("Iron", element);
    attenuation::attenuation_of("Iron", static_cast<float>(quarters) / 4, atc);
  });
}

// The density file, and the keys for its menu.
[[maybe_unused]] void density(std::string_view input) {
  const auto [file, keys] = file_and_keys(input);
  provide("dichte.dat", file);
  run(keys, [] { attenuation::elementdensity(26); });
}

// The element list, used for whole sessions.
[[maybe_unused]] void elements(std::string_view input) {
  provide("elements.dat", input);
  run("5 ES\n\nFe\n\n\n\n\n\nn\n\n", attenuation::dialogue);
  run("6 m\n\n\n\n\nn\n\n", attenuation::dialogue);
}

// The help file, and the keys to walk on.
[[maybe_unused]] void help(std::string_view input) {
  const auto [file, keys] = file_and_keys(input);
  provide("attenuation.help", file);
  for (const char* key : {"/a", "/a*"}) {
    run(keys, [key] { ::help::helproutine(key, "attenuation.help"); });
  }
}

// Whole streams of keys, on the real data.
[[maybe_unused]] void dialogue(std::string_view input) {
  run(input, attenuation::dialogue);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  fuzz::TARGET({reinterpret_cast<const char*>(data), size});
  return 0;
}
