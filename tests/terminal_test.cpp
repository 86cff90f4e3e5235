#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <iostream>
#include <string_view>
#include <tuple>

#include "base/unit.h"
#include "terminal/key.h"
#include "terminal/window.h"
#include "tests/screen.h"
#include "tests/support.h"

namespace {

using terminal::term;

// Runs `action` with a terminal on standard input, whose other side it is told.
void on_terminal(const winsize& size, const std::function<void(int)>& action) {
  std::cout << tests::output_of("", [&] {
    int master = -1, slave = -1;
    ASSERT_EQ(openpty(&master, &slave, nullptr, nullptr, &size), 0);
    dup2(slave, STDIN_FILENO);
    action(master);
    close(slave);
    close(master);
  });
}

TEST(Window, IsMeasuredOrAssumed) {
  const std::tuple<winsize, int, int, int> cases[] = {
      {{50, 200, 0, 0}, 50, 200, 130},
      {{12, 40, 0, 0}, 12, 40, 40},
      {{30, 0, 0, 0}, 24, 80, 80}};
  for (const auto& [size, rows, columns, line] : cases) {
    on_terminal(size, [](int) { terminal::window(1); });
    EXPECT_EQ(term.nrows(1), rows) << size.ws_col;
    EXPECT_EQ(term.ncol(1), columns);
    EXPECT_EQ(term.npl, line);
  }
  on_terminal({33, 111, 0, 0}, [](int) {
    term.winfile = ttyname(STDIN_FILENO);
    terminal::window(2);
  });
  EXPECT_EQ(term.ncol(2), 111) << "further ones are named by their device";
  term.npl = 111;
  term.winfile = "/dev/none";
  terminal::window(2);
  EXPECT_EQ(term.ncol(2), 80);
  EXPECT_EQ(term.npl, 80) << "the fallback counts for window 1 as well";
}

TEST(Key, FoldsEscapeSequencesAndGivesTheTerminalBack) {
  on_terminal({}, [](int master) {
    // In single-key mode, in which no line end is needed and, as a terminal
    // may be set up, none is translated.
    const auto type_ahead = [master](std::string_view keys) {
      terminal::set_keypress();
      termios during{};
      tcgetattr(STDIN_FILENO, &during);
      EXPECT_EQ(during.c_cc[VINTR], '#');
      EXPECT_EQ(during.c_lflag & (ICANON | ECHO | ISIG), 0U | ECHO | ISIG);
      during.c_iflag &= ~static_cast<tcflag_t>(ICRNL);
      tcsetattr(STDIN_FILENO, TCSANOW, &during);
      const auto count = static_cast<int>(keys.size());
      ASSERT_EQ(write(master, keys.data(), keys.size()), count);
      for (int arrived = 0; arrived < count;) {
        ASSERT_EQ(ioctl(STDIN_FILENO, FIONREAD, &arrived), 0);
      }
      terminal::reset_keypress();
    };
    const auto before = tests::settings_of(STDIN_FILENO);
    const std::pair<std::string_view, int> cases[] = {
        {"\n", 64},       {"\r", 64},      {"@", 64},     {"a", 97},
        {"\x1b[A", -65},  {"\x1b[Z", -90}, {"\tab", -98}, {"\x7fzb", -98},
        {"\x03xy", -121}, {"\xC0", 0xC0},  {"\xFF", 0xFF}};
    for (const auto& [typed, code] : cases) {
      type_ahead(typed);
      EXPECT_EQ(terminal::key(), code) << typed;
      EXPECT_EQ(tests::settings_of(STDIN_FILENO), before);
    }
    type_ahead("xline\r");
    EXPECT_EQ(terminal::key(), 'x');
    base::Text<8> line;
    base::unit(5).read(line);
    EXPECT_EQ(line, "line");
  });
}

}  // namespace
