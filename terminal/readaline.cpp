#include "terminal/readaline.h"

#include <cstdio>
// Readline's headers need <cstdio> before them.
#include <readline/history.h>
#include <readline/readline.h>

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "base/fatal.h"
#include "base/reader.h"
#include "terminal/guard.h"
#include "terminal/input.h"

namespace terminal {
namespace {

int ignore_key(int /*count*/, int /*key*/) { return 0; }

int bytes_of_line = 0;  // read since the prompt

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
      if (byte == EOF || ++bytes_of_line > base::kEndlessLine) return EOF;
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
// must not change the keys' meaning to those of another editor, nor a pasted
// mark swallow what follows.
int configure() {
  // Readline would wait for a FIFO, and allocate for any number of columns.
  const char* const settings = std::getenv("INPUTRC");
  std::error_code error;
  if (settings != nullptr && *settings != '\0' &&
      !std::filesystem::is_regular_file(settings, error)) {
    setenv("INPUTRC", "/dev/null", 1);
  }
  unsetenv("COLUMNS");
  unsetenv("LINES");
  rl_initialize();
  // The width that measure() allows stays, however the window changes.
  rl_catch_sigwinch = 0;
  rl_variable_bind("enable-bracketed-paste", "off");
  rl_variable_bind("enable-meta-key", "off");
  rl_variable_bind("disable-completion", "on");
  rl_attempted_completion_over = 1;
  rl_bind_key('\t', ignore_key);
  for (Keymap keys :
       {emacs_standard_keymap, vi_insertion_keymap, vi_movement_keymap}) {
    for (const char* mark : {"\\e[200~", "\\e[201~"}) {
      rl_bind_keyseq_in_map(mark, ignore_key, keys);
    }
  }
  rl_unbind_function_in_map(rl_vi_editing_mode, emacs_meta_keymap);
  rl_getc_function = next_byte;
  return 0;
}

// On two or three columns some of Readline's commands divide by zero.
void measure() {
  constexpr int kFewestColumns = 10;
  constexpr int kMostColumns = 1000;
  int rows = 0;
  int columns = 0;
  rl_reset_screen_size();
  rl_get_screen_size(&rows, &columns);
  rl_set_screen_size(rows, std::clamp(columns, kFewestColumns, kMostColumns));
}

}  // namespace

std::string edited_line(const char* prompt) {
  [[maybe_unused]] static const int configured = configure();
  measure();
  bytes_of_line = 0;
  std::unique_ptr<char, decltype(&std::free)> line(nullptr, &std::free);
  {
    const Guard guard;  // on the signals that Readline does not catch
    line.reset(readline(prompt));
    static_cast<void>(std::fflush(stdout));
  }
  // Readline takes the end of input behind some characters for a RET.
  if (bytes_of_line > base::kEndlessLine) {
    throw base::EndOfFile(
        "end of input",
        "a line of 1 MiB is no answer: give the program lines of text");
  }
  if (line == nullptr) input().end_of_file();
  return line.get();
}

int readaline(base::Array<int, base::kLine>& k, const char* prompt) {
  const std::string line = edited_line(prompt);
  const int length = std::min(static_cast<int>(line.size()), base::kLine);
  for (int i = 1; i <= length; ++i) {
    // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): as declared
    k(i) = static_cast<signed char>(line[static_cast<std::size_t>(i - 1)]);
  }
  return length;
}

void addhist(const char* s) { add_history(s); }

void clearhist() { clear_history(); }

}  // namespace terminal
