#include "help/help.h"

#include <unistd.h>

#include <string>
#include <string_view>

#include "base/unit.h"
#include "help/helproutine.h"
#include "help/infopath.h"

namespace help {
namespace {

bool exists(const base::Text<132>& file) {
  return access(std::string(file.trimmed()).c_str(), F_OK) == 0;
}

// The value of ZOXUHEPATH. One that fills its field has no end there and
// counts as none.
std::string_view help_directory() {
  const std::string_view field = path.hepath.full();
  const auto end = field.find('\0');
  return end == field.npos ? std::string_view{} : field.substr(0, end);
}

}  // namespace

Localpath localpath;
Cmpa cmpa;

void help(const base::Text<132>& chin) {
  infopath();
  const base::Text<132> chcom("/" + std::string(chin.full()));
  const std::string_view directory = help_directory();
  base::Text<132> helpfile(std::string(directory) +
                           std::string(localpath.localhepath.full()));
  cmpa.zoxuhepath = directory;
  if (!exists(helpfile)) {
    helpfile = "helpfile.help";
    if (directory.empty()) cmpa.zoxuhepath = ".";
    if (!exists(helpfile)) {
      base::Unit& terminal = base::unit(base::kTerminalOutput);
      terminal.write(" helpfile:helpfile.help");
      terminal.write(" not found in the current directory ");
      return;
    }
  }
  helproutine(chcom, helpfile);
}

}  // namespace help
