// What the program reads from outside, each a fuzz target of its own. A fatal
// end is as good as any; nothing else may end the process.

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "attenuation/coefficientfile.h"
#include "attenuation/contentformula.h"
#include "attenuation/dialogue.h"
#include "attenuation/elementdensity.h"
#include "attenuation/elementlist.h"
#include "base/edit.h"
#include "help/helproutine.h"
#include "terminal/window.h"
#include "tests/support.h"
#include "text/itoc8.h"
#include "text/trlch.h"
#include "text/trlnu.h"

// Readline drops what it holds when input ends in an incremental search.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libreadline";
}

namespace fuzz {
namespace {

using base::Text;

// A finding unless `so`.
void require(bool so) {
  if (!so) std::abort();
}

// Runs `action` with `keys` on standard input, to its end or a fatal one.
void run(std::string_view keys, const std::function<void()>& action) {
  try {
    tests::output_of(keys, [&action] {
      terminal::window(1);
      action();
    });
  } catch (const base::FatalEnd&) {
  }
}

// The input before and after its first byte of code 0: a file and keys.
std::pair<std::string_view, std::string_view> file_and_keys(
    std::string_view input) {
  const auto end = std::min(input.find('\0'), input.size());
  return {input.substr(0, end), input.substr(std::min(end + 1, input.size()))};
}

int byte(std::string_view input, std::size_t i) {
  return static_cast<unsigned char>(input[i]);
}

// Any line of text, any number of columns.
[[maybe_unused]] void number(std::string_view input) {
  if (input.empty()) return;
  const Text<132> line = input.substr(1);
  int iout = -1, n = 0;
  base::Array<float, 32> out{"out"};
  toolkit::trlch(byte(input, 0), line, iout, out);
  require(0 <= iout && iout <= 32);
  for (int i = iout + 1; i <= 32; ++i) require(out(i) == 0.0F);
  try {
    Text<8> field = line;
    toolkit::c8toi(field, n);
  } catch (const base::FatalEnd&) {
  }
}

// A value shown with an f or e format reads back as it was; and any format.
[[maybe_unused]] void format(std::string_view input) {
  if (input.size() < 7) return;
  float x = 0.0F;
  std::memcpy(&x, input.data(), sizeof x);
  const int a = byte(input, 4), b = byte(input, 5), decimals = 1 + b % 5;
  static_cast<void>(base::fixed_field(x, a % 40, b % 20));
  Text<24> chr, chl;
  int width = 0, im = 0, iout = 0;
  try {
    const double size = std::fabs(static_cast<double>(x));
    if (1e-30 <= size && size <= 1e10) {
      const bool fixed = a % 2 == 0;
      Text<7> code = (fixed ? "f24." : "e24.") + std::to_string(decimals);
      toolkit::trlnu(code, x, chr, width, chl, im);
      const std::string shown(chl.trimmed());
      require(shown.find_first_not_of("0123456789.-e") == shown.npos);
      base::Array<float, 32> out{"out"};
      toolkit::trlch(24, shown, iout, out);
      // Up to a step of the last place, and single precision.
      const double step = std::pow(10.0, fixed ? -decimals : 1 - decimals);
      require(iout == 1 && std::fabs(static_cast<double>(x - out(1))) <=
                               (fixed ? step : step * size) + 2e-5 * size);
    }
    Text<7> code = input.substr(4);
    toolkit::trlnu(code, x, chr, width, chl, im);
  } catch (const base::FatalEnd&) {
  }
}

// Whatever is typed ends as a composition within its bounds.
[[maybe_unused]] void formula(std::string_view input) {
  static const physics::ElementList elements = attenuation::read_element_list();
  run("", [&] {
    int j = 0;
    attenuation::PerComponent indx{"indx"}, mult{"mult"};
    attenuation::contentformula(input, elements.es, j, indx, mult);
    require(1 <= j && j <= physics::kMostComponents);
    for (int i = 1; i <= j; ++i)
      require(1 <= indx(i) && indx(i) <= physics::kListedElements);
  });
}

// Two bytes of energy, then the coefficient file.
[[maybe_unused]] void block(std::string_view input) {
  if (input.size() < 2) return;
  tests::write("attenuation.coefficients", input.substr(2));
  run("", [&] {
    const int quarters = byte(input, 0) * 256 + byte(input, 1);
    attenuation::find_element<16>("Iron");
    attenuation::attenuation_of("Iron", static_cast<float>(quarters) / 4);
  });
}

// The density file, and the keys for its menu.
[[maybe_unused]] void density(std::string_view input) {
  const auto [file, keys] = file_and_keys(input);
  tests::write("dichte.dat", file);
  run(keys, [] { attenuation::elementdensity(26); });
}

// The element list, used for whole sessions.
[[maybe_unused]] void elements(std::string_view input) {
  tests::write("elements.dat", input);
  run("5 ES\n\nFe\n\n\n\n\n\nn\n\n", attenuation::dialogue);
  run("6 m\n\n\n\n\nn\n\n", attenuation::dialogue);
}

// The help file, and the keys to walk on.
[[maybe_unused]] void help(std::string_view input) {
  const auto [file, keys] = file_and_keys(input);
  tests::write("attenuation.help", file);
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

// Runs in a directory of its own with the program's data files. What the words
// name is where the fuzzer was started, and findings go there.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  namespace fs = std::filesystem;
  static tests::Words words(*argv + 1, *argv + *argc);
  words.push_back("-artifact_prefix=" + fs::current_path().string() + "/");
  static std::vector<char*> pointers{*argv, *argv + 1};
  for (std::string& word : words) {
    if (fs::exists(word)) word = fs::absolute(word);
    pointers.push_back(word.data());
  }
  *argc = static_cast<int>(pointers.size());
  *argv = pointers.data();
  static const tests::WorkingDirectory here;
  fs::copy(DATA_DIR, ".");
  // No viewer is found, and no settings of whoever runs this.
  setenv("PATH", "/nonexistent", 1);
  setenv("INPUTRC", "/dev/null", 1);
  return setenv("ZOXUHEPATH", ".", 1);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  fuzz::TARGET({reinterpret_cast<const char*>(data), size});
  return 0;
}
