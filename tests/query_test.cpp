#include "menu/query.h"

#include "base/unit.h"
#include "terminal/window.h"
#include "tests/support.h"

namespace {

using menu::scrd;
using tests::has;

const std::string kNormal = "\x1b[0m", kRed = "\x1b[31m";
const std::string kDownKey = "\x1b[B";

std::string dashes(std::size_t count) { return std::string(count, '-'); }
std::string blanks(std::size_t count) { return std::string(count, ' '); }

const std::vector<std::string> kMetals = {"Iron (Fe)", "Lead", "Iridium"};

struct Menu {
  // flags  of the header's columns 131 and 132
  explicit Menu(const std::vector<std::string>& entries = kMetals,
                const char* wanted = "Iron", const char* flags = "")
      : lq(static_cast<int>(entries.size())), def(wanted) {
    header.put(131, 132, flags, "header");
    int i = 0;
    for (const std::string& entry : entries) scrd.queryar(++i) = entry;
  }
  // kind  '#' for columns of equal width
  std::string query(const std::string& keys, int width = 30, char kind = ' ') {
    terminal::term.npl = terminal::term.ncol(1) = width;
    def.at(80, "def") = kind;
    return tests::output_of(keys, [this] { menu::query(lq, lk, header, def); });
  }

  int lq, lk = -1;
  base::Text<132> header = "select";
  base::Text<80> def;
};

// kMetals in a column, with an entry highlighted.
std::string rows(std::size_t highlighted) {
  std::string written;
  for (std::size_t i = 1; i <= 3; ++i) {
    std::string row = i == highlighted ? kRed + "[" + kMetals[i - 1] + "]"
                                       : kNormal + " " + kMetals[i - 1];
    written += row + blanks(19 - row.size()) + "\n";
  }
  return written;
}
const std::string kHeader =
    kNormal + dashes(5) + "select (help:he)" + dashes(6) + "\n";
const std::string kFooter = kNormal + "\x1b[1A\n" + kNormal + dashes(27) + "\n";
const std::string kUp = " \x1b[2A\n", kBlank = blanks(27) + "\n";
const std::string kCleared = kUp + kBlank + kUp;
const std::string kRedrawn =
    kUp + kUp + kUp + kUp + kBlank + kBlank + kBlank + kUp + kUp + kUp;

TEST(Query, IsDrawnAndRedrawnInPlaceByteForByte) {
  Menu menu;
  // A cursor key; "ri", found in the third entry only; RET.
  EXPECT_EQ(menu.query(kDownKey + "ri\n\n", 30, '#'),
            kHeader + rows(1) + kFooter + " \n" + kCleared + kRedrawn +
                rows(2) + kFooter + kCleared + kRedrawn + rows(3) + kFooter +
                " \n" + kCleared + " \x1b[0m\x1b[1A\n");
  EXPECT_EQ(menu.lq, 3);
  EXPECT_EQ(menu.def, blanks(79) + "5") << "lines written";
  EXPECT_EQ(Menu(kMetals, "").query("", 30, '#'), kHeader + rows(0) + kFooter);
}

TEST(Query, ChoosesByKeysAndSubstrings) {
  // A substring steps to the next match, case as typed. With nothing
  // highlighted there is no step back. Any control key swallows two more.
  for (const auto& f : tests::table(
           "@,Lead,2|Ir/Ir//,Iron,1|fe/Le//,Iron,2|zz//,Iron,0|*/,Iron,0|"
           "\x1b[A/,Iron,3|\x1b[A\x1b[A\x1b[C/,Iron,3|\x1b[B/,zz,1|"
           "\x1b[D/,zz,0|\t[B/,Iron,2")) {
    Menu menu(kMetals, f[1].c_str());
    menu.query(tests::typed(f[0]));
    EXPECT_EQ(menu.lq, std::stoi(f[2])) << f[0] << " from " << f[1];
  }
  Menu quartz({"Iron", "quartz"});
  quartz.query("q\n\n");
  EXPECT_EQ(quartz.lq, 2) << "an entry begins with q";
}

TEST(Query, FlowsOverTheWidthWithWideEntriesOnTwoLines) {
  const std::string wide = "a wide entry of 27 letters.";
  Menu menu({"one", wide, "two", "three"}, "");
  scrd.ext(1) = "ext";
  // Widths step in tens; an entry as wide as the line starts a row, the next
  // goes on in it. Row 2 holds two entries, so it is one line.
  EXPECT_TRUE(has(menu.query("", 43), "\n" + kNormal + " one ext \n" + kNormal +
                                          " " + wide + blanks(8) + kNormal +
                                          " two  \n" + kNormal + " three" +
                                          blanks(10) + "\n" + kNormal));
  scrd.ext(1) = "";
  // The sum of 16, 16 and 15 columns fills a line.
  EXPECT_TRUE(has(Menu({"one", "two", "six", "ten"}, "").query("", 35),
                  "\n" + kNormal + " one  " + kNormal + " two  \n" + kNormal +
                      " six  " + kNormal + " ten  \n\n" + kNormal));
  Menu alone({"one", wide}, "27");
  EXPECT_TRUE(has(alone.query("\n"), kRed + "[a wide entry of 27\n  letters.]" +
                                         blanks(6) + "\n"));
  alone.header = "density of the modifications";
  EXPECT_TRUE(has(alone.query("\n", 12), kNormal + "density of t (help:he)\n"));
  EXPECT_EQ(scrd.queryar(2), wide.substr(0, 12));
}

TEST(Query, TheSixtyFourthEntryIsChosenUnseen) {
  std::vector<std::string> entries;
  for (int i = 1; i <= 64; ++i) entries.push_back("entry" + std::to_string(i));
  Menu menu(entries);
  const std::string written = menu.query("entry2\nentry64\n\n", 23, '#');
  EXPECT_EQ(menu.lq, 64);
  EXPECT_FALSE(has(written, "entry64"));
  EXPECT_TRUE(has(written, "entry63"));
  // Redrawing passes over the 63 rows that are shown, not over its own.
  EXPECT_EQ(menu.def.at(80, "def"), '0' + 65) << "lines written";
}

TEST(Query, AnotherProcessTakesTheChoiceFromTheScript) {
  const tests::WorkingDirectory directory;
  base::unit(10).create("script");
  Menu(kMetals, "Iron", " w").query(kDownKey + "\n", 30, '#');
  base::unit(10).close();
  EXPECT_EQ(tests::content_of("script"),
            kHeader + rows(2) + "2" + dashes(26) + "\n");
  base::unit(10).open("script");
  Menu reader(kMetals, "Iron", " r");
  reader.query("", 30, '#');
  base::unit(10).close();
  EXPECT_EQ(reader.lq, 2);
}

}  // namespace
