#include "terminal/readaline.h"

#include <cstdio>
// Readline's headers need <cstdio> before them.
#include <readline/history.h>
#include <readline/readline.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <string>

#include "base/fatal.h"
#include "base/unit.h"

namespace terminal {
namespace {

int ignore_key(int /*count*/, int /*key*/) { return 0; }

// Bytes typed, of which the first `whole` are known to be a character or part
// of one.
struct Typed {
  std::string bytes;
  std::size_t whole = 0;
};

// Reads a byte for Readline. One that belongs to no character of the locale
// becomes "?": some of Readline's movements never end on such bytes.
int next_byte(std::FILE* in) {
  // Empty when a line ends: the byte that ends a line is whole by itself.
  static Typed typed;
  while (typed.whole == 0) {
    std::mbstate_t state{};
    const std::size_t length =
        std::mbrlen(typed.bytes.data(), typed.bytes.size(), &state);
    constexpr auto kUnfinished = static_cast<std::size_t>(-2);
    constexpr auto kNone = static_cast<std::size_t>(-1);
    if (typed.bytes.empty() || length == kUnfinished) {
      const int byte = rl_getc(in);
      if (byte == EOF) return EOF;
      typed.bytes += static_cast<char>(byte);
    } else {
      if (length == kNone) typed.bytes.front() = '?';
      typed.whole = length == kNone || length == 0 ? 1 : length;
    }
  }
  const auto byte = static_cast<unsigned char>(typed.bytes.front());
  typed.bytes.erase(0, 1);
  --typed.whole;
  return byte;
}

// Readline writes nothing to the terminal but the line itself, and a formula
// is not completed with names of files. Escape and RET, which is easily typed,
// must not change the keys' meaning to those of another editor.
int configure() {
  rl_initialize();
  rl_variable_bind("enable-bracketed-paste", "off");
  rl_variable_bind("enable-meta-key", "off");
  rl_variable_bind("disable-completion", "on");
  rl_attempted_completion_over = 1;
  rl_bind_key('\t', ignore_key);
  rl_unbind_function_in_map(rl_vi_editing_mode, emacs_meta_keymap);
  rl_getc_function = next_byte;
  return 0;
}

}  // namespace

int readaline(base::Array<int, 132>& k, const char* prompt) {
  [[maybe_unused]] static const int configured = configure();
  const std::unique_ptr<char, decltype(&std::free)> line(readline(prompt),
                                                         &std::free);
  static_cast<void>(std::fflush(stdout));
  if (line == nullptr) base::unit(base::kTerminalInput).end_of_file();
  const int length = static_cast<int>(std::min<std::size_t>(
      std::strlen(line.get()), base::Array<int, 132>::kUpper));
  for (int i = 1; i <= length; ++i) {
    // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): as declared
    k(i) = static_cast<signed char>(line.get()[i - 1]);
  }
  return length;
}

void addhist(const char* s) { add_history(s); }

void clearhist() { clear_history(); }

}  // namespace terminal
