#include "terminal/show.h"

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

void begin_report() {
  if (isatty(STDOUT_FILENO) == 0) return;
  // Standard output may be what failed: then the report goes without.
  static_cast<void>(
      base::write_all(STDOUT_FILENO, std::string(kNormal) + "\n"));
}

}  // namespace terminal
