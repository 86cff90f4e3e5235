#include "help/viewdvi.h"

#include <cstdlib>
#include <string>

#include "base/unit.h"

namespace help {

void viewdvi(const char* command) {
  constexpr std::size_t kLongestCommand = 143;
  const std::string line = std::string("xdvi ") + command;
  base::Unit& terminal = base::unit(base::kTerminalOutput);
  if (line.size() > kLongestCommand) {
    terminal.write(" the command for the document is too long");
    return;
  }
  terminal.write(" " + line);
  // The shell expands $ZOXUHEPATH, blanks in it included, and puts the viewer
  // into the background.
  const std::string in_shell = "IFS=; set -f; " + line;
  if (std::system(in_shell.c_str()) == -1) {  // NOLINT(cert-env33-c)
    terminal.write(" the document viewer could not be started");
  }
}

}  // namespace help
