#include "terminal/window.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <string>

namespace terminal {

Term term;

void window(int i) {
  if (i == 1) {
    pr_winsize(STDIN_FILENO, 0);
    // Wider lines are hard to read, and the menus' fields end at 132.
    constexpr int kWidestLine = 130;
    term.npl = std::min(term.ncol(1), kWidestLine);
    return;
  }
  std::string device;
  for (int column = 1; column <= 16; ++column) {
    char& c = term.winfile.at(column, "winfile");
    if (c == ' ') c = '\0';
    device += c;
  }
  const int fd = ::open(device.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
  pr_winsize(fd, i - 1);
  if (fd >= 0) ::close(fd);
}

int pr_winsize(int fd, int it) {
  const int slot = it + 1;
  winsize size{};
  const bool answered = isatty(fd) != 0 && ioctl(fd, TIOCGWINSZ, &size) >= 0;
  if (answered) {
    term.ncol(slot) = size.ws_col;
    term.nrows(slot) = size.ws_row;
    term.ixpixel(slot) = size.ws_xpixel;
    term.iypixel(slot) = size.ws_ypixel;
    if (size.ws_col != 0) return 1;
  }
  term.ncol(slot) = 80;
  term.npl = 80;
  term.nrows(slot) = 24;
  return answered ? 1 : 0;
}

}  // namespace terminal
