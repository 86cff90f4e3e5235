#include <pty.h>
#include <unistd.h>

#include <tuple>

#include "terminal/key.h"
#include "terminal/window.h"
#include "tests/support.h"

namespace {

using terminal::term;

TEST(Window, IsMeasuredOrAssumed) {
  // Rows and columns count as these, and prompts use so many columns.
  const std::tuple<winsize, int, int, int> cases[] = {
      {{50, 200, 0, 0}, 50, 200, 130},
      {{12, 40, 0, 0}, 12, 40, 40},
      {{30, 0, 0, 0}, 24, 80, 80}};
  for (const auto& [size, rows, columns, line] : cases) {
    int master = -1, slave = -1;
    ASSERT_EQ(openpty(&master, &slave, nullptr, nullptr, &size), 0);
    term.winfile = ttyname(slave);  // names further windows
    tests::output_of("", [slave] {
      dup2(slave, STDIN_FILENO);
      for (const int i : {1, 2}) terminal::window(i);
    });
    for (const int fd : {master, slave}) close(fd);
    for (const int i : {1, 2}) {
      EXPECT_EQ(term.nrows(i), rows) << i;
      EXPECT_EQ(term.ncol(i), columns) << i;
    }
    EXPECT_EQ(term.npl, line);
  }
  term.npl = 111;
  term.winfile = "/dev/none";
  terminal::window(2);
  EXPECT_EQ(term.ncol(2), 80);
  EXPECT_EQ(term.npl, 80) << "the fallback counts for window 1 as well";
}

TEST(Key, FoldsEscapeSequences) {
  const std::pair<std::string_view, int> cases[] = {
      {"\n", 64},      {"@", 64},      {"a", 97},       {"\x1b[A", -65},
      {"\x1b[Z", -90}, {"\tab", -98},  {"\x7fzb", -98}, {"\x03xy", -121},
      {"\xC0", 0xC0},  {"\xFF", 0xFF}, {"", -1},        {"\x1b[", -1}};
  for (const auto& [typed, code] : cases) {
    tests::output_of(typed, [typed, code] {
      EXPECT_EQ(terminal::key(), code) << typed;
      EXPECT_EQ(terminal::key(), -1) << "no more than that is read";
    });
  }
}

}  // namespace
