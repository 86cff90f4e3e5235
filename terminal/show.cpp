#include "terminal/show.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <string>

#include "base/descriptor.h"
#include "base/harmless.h"
#include "base/unit.h"
#include "terminal/ansi.h"

namespace terminal {

void show(std::string_view line, int nwr) {
  base::unit(nwr).write(base::harmless(line));
}

int begin_report() {
  constexpr int kColumns = 80;  // where the report goes to no terminal
  if (isatty(STDOUT_FILENO) != 0) {
    // Standard output may be what failed: then the report goes without.
    static_cast<void>(
        base::write_all(STDOUT_FILENO, std::string(kNormal) + "\n"));
  }
  winsize size{};
  const bool known =
      ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : kColumns;
}

}  // namespace terminal
