#include "help/viewdvi.h"

#include <unistd.h>

#include <cstdlib>
#include <sstream>
#include <string>

#include "base/unit.h"

namespace help {

namespace {

// Whether a program of that name is on the path.
bool is_installed(const std::string& name) {
  const char* const path = std::getenv("PATH");
  std::istringstream folders(path != nullptr ? path : "");
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (access((folder + "/" + name).c_str(), X_OK) == 0) return true;
  }
  return false;
}

}  // namespace

bool can_view() {
  const char* const display = std::getenv("DISPLAY");
  return display != nullptr && *display != '\0' && is_installed("xdvi");
}

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
