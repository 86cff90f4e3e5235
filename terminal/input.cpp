#include "terminal/input.h"

#include <termios.h>
#include <unistd.h>

namespace terminal {
namespace {

int translated(int byte) {
  termios settings{};
  const bool terminal_translates = byte == '\r' &&
                                   tcgetattr(STDIN_FILENO, &settings) == 0 &&
                                   (settings.c_iflag & ICRNL) != 0;
  return terminal_translates ? '\n' : byte;
}

}  // namespace

base::Unit& input() {
  base::Unit& unit = base::unit(base::kTerminalInput);
  unit.bytes().translate(translated);
  return unit;
}

}  // namespace terminal
