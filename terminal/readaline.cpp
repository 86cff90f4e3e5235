#include "terminal/readaline.h"

#include <cstdio>
// Readline's headers need <cstdio> before them.
#include <readline/history.h>
#include <readline/readline.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "base/fatal.h"
#include "base/unit.h"

namespace terminal {
namespace {

int ignore_key(int /*count*/, int /*key*/) { return 0; }

// Readline writes nothing to the terminal but the line itself, and a formula
// is not completed with names of files.
int configure() {
  rl_initialize();
  rl_variable_bind("enable-bracketed-paste", "off");
  rl_variable_bind("enable-meta-key", "off");
  rl_variable_bind("disable-completion", "on");
  rl_attempted_completion_over = 1;
  rl_bind_key('\t', ignore_key);
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
