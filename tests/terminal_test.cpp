#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>

#include "terminal/key.h"
#include "terminal/window.h"
#include "tests/support.h"

namespace {

using terminal::term;

TEST(Window, IsMeasuredOrAssumed) {
  const struct {
    winsize size;
    int rows, columns, line;  // what counts, and what prompts use
  } cases[] = {
      {{50, 200, 0, 0}, 50, 200, 130},
      {{12, 40, 0, 0}, 12, 40, 40},
      {{30, 0, 0, 0}, 24, 80, 80},
  };
  for (const auto& c : cases) {
    int master = -1, slave = -1;
    ASSERT_EQ(openpty(&master, &slave, nullptr, nullptr, &c.size), 0);
    term.winfile = ttyname(slave);  // names further windows
    tests::output_of("", [slave] {
      dup2(slave, STDIN_FILENO);
      for (const int i : {1, 2}) terminal::window(i);
    });
    for (const int fd : {master, slave}) close(fd);
    for (const int i : {1, 2}) {
      EXPECT_EQ(term.nrows(i), c.rows) << i;
      EXPECT_EQ(term.ncol(i), c.columns) << i;
    }
    EXPECT_EQ(term.npl, c.line);
  }
  term.npl = 111;
  term.winfile = "/dev/none";
  terminal::window(2);
  EXPECT_EQ(term.ncol(2), 80);
  EXPECT_EQ(term.npl, 80) << "the fallback counts for window 1 as well";
}

TEST(Key, FoldsEscapeSequences) {
  const struct {
    std::string_view typed;
    int code;
  } cases[] = {
      {"\n", 64},      {"@", 64},      {"a", 97},       {"\x1b[A", -65},
      {"\x1b[Z", -90}, {"\tab", -98},  {"\x7fzb", -98}, {"\x03xy", -121},
      {"\xC0", 0xC0},  {"\xFF", 0xFF}, {"", -1},        {"\x1b[", -1},
  };
  for (const auto& [typed, code] : cases) {
    tests::output_of(typed, [code = code, typed = typed] {
      EXPECT_EQ(terminal::key(), code) << typed;
      EXPECT_EQ(terminal::key(), -1) << "no more than that is read";
    });
  }
}

// A SIGCONT while single-key mode is left must not take it up again. With one
// always under way, some of the rounds have it at the worst moment.
TEST(Key, SingleKeyModeEndsForGood) {
  int master = -1, slave = -1;
  ASSERT_EQ(openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
  const pid_t self = getpid(), child = fork();
  if (child == 0) {
    while (getppid() == self) kill(self, SIGCONT);
    _exit(0);
  }
  tests::output_of("", [slave] {
    dup2(slave, STDIN_FILENO);
    for (int round = 1; round <= 500; ++round) {
      terminal::set_keypress();
      terminal::reset_keypress();
      termios settings{};
      tcgetattr(slave, &settings);
      ASSERT_NE(settings.c_lflag & ICANON, 0U) << round;
    }
  });
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  for (const int fd : {master, slave}) close(fd);
}

}  // namespace
