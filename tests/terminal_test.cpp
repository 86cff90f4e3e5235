#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <string>
#include <string_view>
#include <vector>

#include "base/unit.h"
#include "terminal/key.h"
#include "terminal/window.h"
#include "tests/screen.h"
#include "tests/support.h"

namespace {

using terminal::term;

// A terminal on standard input for the time of a test.
class TerminalOnInput {
 public:
  TerminalOnInput(unsigned short rows, unsigned short columns)
      : before_(dup(STDIN_FILENO)) {
    const winsize size{rows, columns, 640, 480};
    int slave = -1;
    if (openpty(&master_, &slave, nullptr, nullptr, &size) != 0) {
      throw std::runtime_error("openpty");
    }
    dup2(slave, STDIN_FILENO);
    close(slave);
  }
  ~TerminalOnInput() {
    dup2(before_, STDIN_FILENO);
    close(before_);
    close(master_);
  }
  TerminalOnInput(const TerminalOnInput&) = delete;
  TerminalOnInput& operator=(const TerminalOnInput&) = delete;

  // In single-key mode. Waits until the keys have passed the terminal.
  void type(std::string_view keys) const {
    const auto count = static_cast<int>(keys.size());
    ASSERT_EQ(write(master_, keys.data(), keys.size()), count);
    for (int arrived = 0; arrived < count;) {
      ASSERT_EQ(ioctl(STDIN_FILENO, FIONREAD, &arrived), 0);
    }
  }
  termios settings() const {
    termios now{};
    tcgetattr(STDIN_FILENO, &now);
    return now;
  }
  std::string device() const { return ttyname(STDIN_FILENO); }

 private:
  int master_ = -1;
  int before_;
};

TEST(Window, IsMeasuredOrAssumed) {
  const struct {
    unsigned short rows, columns;
    int nrows, ncol, npl;
  } cases[] = {
      {24, 80, 24, 80, 80}, {50, 200, 50, 200, 130}, {12, 40, 12, 40, 40},
      {30, 0, 24, 80, 80},  {1, 1, 1, 1, 1},
  };
  for (const auto& c : cases) {
    const TerminalOnInput terminal(c.rows, c.columns);
    terminal::window(1);
    EXPECT_EQ(term.nrows(1), c.nrows) << c.columns;
    EXPECT_EQ(term.ncol(1), c.ncol);
    EXPECT_EQ(term.npl, c.npl);
    EXPECT_EQ(term.ixpixel(1), 640) << "as reported";
    EXPECT_EQ(terminal::pr_winsize(STDIN_FILENO, 7), 1);
    EXPECT_EQ(term.ncol(8), c.ncol);
  }
  tests::output_of("", [] {
    terminal::window(1);
    EXPECT_EQ(terminal::pr_winsize(STDIN_FILENO, 0), 0);
  });
  EXPECT_EQ(term.ncol(1), 80);
  EXPECT_EQ(term.npl, 80);
  EXPECT_NE(tests::cause_of([] { terminal::window(9); }), "");
}

TEST(Window, FurtherOnesAreNamedByTheirDevice) {
  const TerminalOnInput terminal(33, 111);
  terminal::window(1);
  term.winfile = terminal.device();
  terminal::window(2);
  EXPECT_EQ(term.ncol(2), 111);
  EXPECT_EQ(term.npl, 111);
  EXPECT_EQ(term.winfile.at(16, "winfile"), '\0') << "blanks become zero bytes";
  term.winfile = "/dev/none";
  terminal::window(2);
  EXPECT_EQ(term.ncol(2), 80);
  EXPECT_EQ(term.npl, 80) << "the fallback counts for window 1 as well";
}

TEST(Key, FoldsEscapeSequencesAndGivesTheTerminalBack) {
  const struct {
    std::string_view typed;
    int code;
  } cases[] = {
      {"\n", 64},
      {"\r", 64},
      {"@", 64},
      {"a", 97},
      {" ", 32},
      {"?", 63},
      {"\x1b[A", -65},
      {"\x1b[B", -66},
      {"\x1b[C", -67},
      {"\x1b[D", -68},
      {"\x1b[Z", -90},
      {"\tab", -98},
      {"\x7f"
       "ab",
       -98},
      {"\x03xy", -121},
      {"\xC0", 0xC0},
      {"\xFF", 0xFF},
  };
  const TerminalOnInput terminal(24, 80);
  const termios before = terminal.settings();
  for (const auto& c : cases) {
    // In single-key mode no line end is needed for keys typed ahead.
    terminal::set_keypress();
    const termios during = terminal.settings();
    EXPECT_EQ(during.c_cc[VINTR], '#');
    EXPECT_EQ(during.c_lflag, before.c_lflag & ~static_cast<tcflag_t>(ICANON));
    terminal.type(c.typed);
    terminal::reset_keypress();
    EXPECT_EQ(terminal::key(), c.code) << c.typed;
    EXPECT_TRUE(tests::same_settings(before, terminal.settings()));
  }
  // Keys typed ahead of a line, and the line end as a terminal in another mode
  // leaves it.
  terminal::set_keypress();
  termios raw = terminal.settings();
  raw.c_iflag &= ~static_cast<tcflag_t>(ICRNL);
  tcsetattr(STDIN_FILENO, TCSANOW, &raw);
  terminal.type("xline\r");
  terminal::reset_keypress();
  EXPECT_EQ(terminal::key(), 'x');
  base::Text<8> line;
  base::unit(5).read(line);
  EXPECT_EQ(line, "line");
}

}  // namespace
