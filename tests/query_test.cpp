#include "help/query.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "base/unit.h"
#include "terminal/window.h"
#include "tests/support.h"

namespace {

using base::Text;
using help::scrd;

const std::string kNormal = "\x1b[0m";
const std::string kRed = "\x1b[31m";
const std::string kUp = " \x1b[2A\n";
const std::string kUpThree = " \x1b[3A\n";
const std::string kFinish = " \x1b[0m\x1b[1A\n";
constexpr const char* kUpKey = "\x1b[A";
constexpr const char* kDownKey = "\x1b[B";

std::string dashes(int count) {
  return std::string(static_cast<std::size_t>(count), '-');
}
std::string blanks(int count) {
  return std::string(static_cast<std::size_t>(count), ' ');
}

// One call of the menu; the arguments are also what comes back.
struct Menu {
  int lq;
  int lk = -1;
  Text<132> header = "select";
  Text<80> def = "Iron";

  explicit Menu(const std::vector<std::string>& entries)
      : lq(static_cast<int>(entries.size())) {
    for (int i = 1; i <= lq; ++i) {
      scrd.queryar(i) = entries[static_cast<std::size_t>(i - 1)];
      scrd.ext(i) = "";
    }
  }
  Menu& in_block() {
    def.at(80, "def") = '#';
    return *this;
  }
  std::string query(const std::string& input, int columns = 30) {
    terminal::term.npl = terminal::term.ncol(1) = columns;
    return tests::output_of(input,
                            [this] { help::query(lq, lk, header, def); });
  }
};

const std::vector<std::string> kMetals = {"Iron (Fe)", "Lead", "Iridium"};

// A field as wide as the menu makes it in block layout with kMetals.
std::string row(const std::string& shown) {
  return shown + blanks(19 - static_cast<int>(shown.size())) + "\n";
}
std::string rows(int highlighted) {
  std::string written;
  for (int i = 1; i <= 3; ++i) {
    const std::string& text = kMetals[static_cast<std::size_t>(i - 1)];
    written +=
        row(i == highlighted ? kRed + "[" + text + "]" : kNormal + " " + text);
  }
  return written + kNormal + "\x1b[1A\n" + kNormal + dashes(27) + "\n";
}
const std::string kHeader =
    kNormal + dashes(5) + "select (help:he)" + dashes(6) + "\n";
const std::string kCleared = kUp + blanks(27) + "\n" + kUp;
const std::string kRedrawn = kUp + kUp + kUp + kUp + blanks(27) + "\n" +
                             blanks(27) + "\n" + blanks(27) + "\n" + kUp + kUp +
                             kUp;

TEST(Query, IsDrawnAndRedrawnInPlaceByteForByte) {
  Menu menu(kMetals);
  EXPECT_EQ(menu.in_block().query(std::string(kDownKey) + "ri\n\n"),
            kHeader + rows(1) +
                // A cursor key.
                " \n" + kCleared + kRedrawn + rows(2) +
                // "ri" is found in the third entry only.
                kCleared + kRedrawn + rows(3) +
                // RET.
                " \n" + kCleared + kFinish);
  EXPECT_EQ(menu.lq, 3);
  EXPECT_EQ(menu.lk, 0);
  EXPECT_EQ(menu.def.columns(1, 79, "def"), blanks(79));
  EXPECT_EQ(menu.def.at(80, "def"), '0' + 5) << "lines written";
}

TEST(Query, ChoosesByKeysAndSubstrings) {
  const struct {
    std::string keys;
    const char* def;
    int chosen;
  } cases[] = {
      {"\n", "Iron", 1},
      {"@", "Lead", 2},
      {"Ir\n\n", "Iron", 3},  // steps to the next match
      {"Ir\nIr\n\n", "Iron", 1},
      {"fe\nLe\n\n", "Iron", 2},  // case as typed: nothing, then on from there
      {"zz\n\n", "Iron", 0},      // nothing highlighted
      {std::string(kUpKey) + "\n", "Iron", 3},
      {std::string(kUpKey) + kUpKey + "\x1b[C\n", "Iron", 3},
      {"\x1b[D\n", "zz", 0},  // nothing to step back from
      {std::string(kDownKey) + "\n", "zz", 1},
      {"q\n", "Iron", 0},
      {"*\n", "Iron", 0},
      {"\t[B\n", "Iron", 2},  // any control key swallows two more
  };
  for (const auto& c : cases) {
    Menu menu(kMetals);
    menu.def = c.def;
    menu.query(c.keys);
    EXPECT_EQ(menu.lq, c.chosen) << c.keys << " from " << c.def;
  }
  Menu quartz({"Iron", "quartz"});
  quartz.query("q\n\n");
  EXPECT_EQ(quartz.lq, 2) << "an entry begins with q";
  Menu only({"Iron (Fe)"});
  EXPECT_EQ(only.in_block().query(""),
            kHeader + kRed + "[Iron (Fe)]" + blanks(4) + "\n" + kNormal +
                "\x1b[1A\n" + kNormal + dashes(27) + "\n" + kNormal +
                dashes(27) + "\n \n" + kCleared + kFinish);
  EXPECT_EQ(only.lq, 1);
  Menu go(kMetals);
  go.header.at(131, "header") = 'g';
  go.query("");
  EXPECT_EQ(go.lq, 1);
}

TEST(Query, OnlyShowsWithoutADefault) {
  Menu menu(kMetals);
  menu.def = "";
  EXPECT_EQ(menu.in_block().query(""), kHeader + rows(0));
  EXPECT_EQ(menu.lq, 3);
  EXPECT_EQ(menu.lk, 3);
}

TEST(Query, HeaderFitsTheLine) {
  const struct {
    const char* header;
    int columns;
    std::string line;
  } cases[] = {
      {"", 30, dashes(27)},
      {"more information", 30, dashes(5) + "more information" + dashes(6)},
      {"density of the modifications", 30,
       "density of the modifications (help:he)"},
      {"density of the modifications", 12, "density of t (help:he)"},
      {"x", 200, dashes(59) + "x (help:he)" + dashes(60)},
  };
  for (const auto& c : cases) {
    Menu menu(kMetals);
    menu.header = c.header;
    menu.def = "";
    const std::string written = menu.query("", c.columns);
    EXPECT_EQ(written.substr(0, written.find('\n')), kNormal + c.line);
  }
}

TEST(Query, FlowsOverTheWidthWithWideEntriesOnTwoLines) {
  const std::string wide = "a wide entry of 27 letters.";
  Menu menu({"one", wide, "two", "three"});
  menu.def = "";
  scrd.ext(1) = "ext";
  // Widths step in tens; an entry too wide starts a row, the next goes on in
  // it. Row 2 holds two entries, so it is one line.
  EXPECT_EQ(menu.query("", 40).substr(41),
            "\n" + kNormal + " one ext" + blanks(1) + "\n" + kNormal + " " +
                wide + blanks(8) + kNormal + " two" + blanks(2) + "\n" +
                kNormal + " three" + blanks(10) + "\n" + kNormal + "\x1b[1A\n" +
                kNormal + dashes(37) + "\n");
  Menu alone({"one", wide});
  alone.def = "27";
  const std::string written = alone.query("\n", 30);
  EXPECT_NE(written.find(kRed + "[a wide entry of 27\n  letters.]" + blanks(6) +
                         "\n"),
            std::string::npos)
      << written;
  EXPECT_EQ(alone.def.at(80, "def"), '0' + 5);
}

TEST(Query, TheSixtyFourthEntryIsChosenUnseen) {
  std::vector<std::string> entries;
  for (int i = 1; i <= 64; ++i) entries.push_back("entry" + std::to_string(i));
  Menu menu(entries);
  menu.def = "entry64";
  const std::string written = menu.in_block().query("\n", 80);
  EXPECT_EQ(menu.lq, 64);
  EXPECT_EQ(written.find("entry64"), std::string::npos);
  EXPECT_NE(written.find("entry60"), std::string::npos);
  Menu wide(std::vector<std::string>(64, std::string(40, 'w')));
  wide.def = "w";
  EXPECT_EQ(
      tests::cause_of([&] { wide.query("\n", 30); }),
      "Index '65' of dimension 1 of array 'lpart' above upper bound of 64");
}

TEST(Query, AnotherProcessTakesTheChoiceFromTheScript) {
  const tests::TemporaryDirectory directory;
  Menu writer(kMetals);
  writer.header.at(132, "header") = 'w';
  base::unit(10).create(directory.path("script"));
  writer.in_block().query(std::string(kDownKey) + "\n");
  base::unit(10).close();
  EXPECT_EQ(tests::content_of(directory.path("script")).substr(kHeader.size()),
            row(kNormal + " Iron (Fe)") + row(kRed + "[Lead]") +
                row(kNormal + " Iridium") + "2" + dashes(26) + "\n");
  Menu reader(kMetals);
  reader.header.at(132, "header") = 'r';
  base::unit(10).open(directory.path("script"));
  reader.in_block().query("");
  base::unit(10).close();
  EXPECT_EQ(reader.lq, 2);
  EXPECT_EQ(reader.header.at(132, "header"), ' ');
}

TEST(Query, EndOfInputEndsTheRun) {
  for (const char* keys : {"", "x", "he\n", "\x1b["}) {
    Menu menu(kMetals);
    EXPECT_EQ(tests::cause_of([&] { menu.query(keys); }), "end of input")
        << keys;
  }
}

}  // namespace
