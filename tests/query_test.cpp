#include "menu/query.h"

#include "base/unit.h"
#include "menu/choose.h"
#include "menu/layout.h"
#include "terminal/window.h"
#include "tests/support.h"

namespace {

using menu::Layout;
using menu::scrd;
using menu::Widths;
using tests::has;

const std::string kNormal = "\x1b[0m", kRed = "\x1b[31m";
const std::string kUpKey = "\x1b[A", kDownKey = "\x1b[B";
const std::string kRightKey = "\x1b[C", kLeftKey = "\x1b[D";

std::string dashes(std::size_t count) { return std::string(count, '-'); }
std::string blanks(std::size_t count) { return std::string(count, ' '); }

TEST(BlockLayout, IsBalanced) {
  const struct {
    std::size_t entries;
    int line;
    std::vector<int> rows;  // none: the entries flow
  } cases[] = {
      {1, 130, {}},        {2, 9, {}},          {2, 10, {1, 1}},
      {3, 130, {3}},       {5, 40, {3, 2}},     {6, 40, {3, 3}},
      {7, 50, {4, 3}},     {9, 59, {5, 4}},     {9, 70, {5, 4}},
      {10, 40, {4, 4, 2}}, {11, 40, {4, 4, 3}}, {13, 60, {5, 5, 3}},
  };
  for (const auto& [entries, line, rows] : cases) {
    // The widest of them makes every field 10 columns wide on the screen.
    std::vector<Widths> widths(entries, {1, 0});
    widths.back() = {2, 3};
    const auto layout = menu::block_layout(widths, line);
    ASSERT_EQ(layout.has_value(), !rows.empty()) << entries << " in " << line;
    if (!layout) continue;
    EXPECT_EQ(layout->rows, rows) << entries << " in " << line;
    EXPECT_EQ(layout->fields, std::vector<int>(entries, 15));
  }
}

TEST(FlowingLayout, StepsInTensAndWraps) {
  const struct {
    const char* what;
    std::vector<Widths> entries;
    int line;
    Layout layout;
  } cases[] = {
      {"steps",
       {{4, 0}, {5, 0}, {14, 0}, {15, 2}},
       130,
       {{10, 20, 20, 32}, {4}}},
      {"just filled", {{4, 0}, {4, 0}}, 32, {{10, 10}, {2, 0}}},
      {"then on", {{4, 0}, {4, 0}, {4, 0}}, 32, {{10, 10, 10}, {2, 1}}},
      {"too narrow", {{4, 0}, {4, 0}, {4, 0}}, 31, {{10, 10, 10}, {1, 2}}},
      {"and again", {{4, 0}, {4, 0}, {4, 0}}, 29, {{10, 10, 10}, {1, 1, 1}}},
      {"nearly wide", {{34, 0}}, 41, {{40}, {0, 1}}},
      {"wide", {{34, 0}}, 40, {{40, 40}, {0, 1}}},
      // A wide entry starts a row, and the next goes on in it.
      {"shares", {{4, 0}, {34, 0}, {4, 0}}, 40, {{10, 40, 10}, {1, 2}}},
      {"its row's field",
       {{4, 0}, {4, 0}, {34, 0}},
       40,
       {{10, 40, 40}, {2, 1}}},
  };
  for (const auto& [what, entries, line, layout] : cases) {
    const Layout got = menu::flowing_layout(entries, line);
    EXPECT_EQ(got.fields, layout.fields) << what;
    EXPECT_EQ(got.rows, layout.rows) << what;
  }
}

const std::vector<std::string> kMetals = {"Iron (Fe)", "Lead", "Iridium"};

struct Menu {
  // flags  of the header's columns 131 and 132
  explicit Menu(const std::vector<std::string>& entries = kMetals,
                const char* wanted = "Iron", const char* flags = "")
      : lq(static_cast<int>(entries.size())), def(wanted) {
    header.put(131, 132, flags, "header");
    int i = 0;
    for (const std::string& entry : entries) {
      scrd.queryar(++i) = entry;
      scrd.ext(i) = "";
    }
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
  const struct {
    std::string keys;
    const char* wanted;
    int chosen;
  } cases[] = {
      {"@", "Lead", 2},
      // A substring steps to the next match, case as typed, around the end.
      {"Ir\nIr\n\n", "Iron", 1},
      {"fe\nLe\n\n", "Iron", 2},
      {"zz\n\n", "Iron", 0},
      {"*\n", "Iron", 0},
      // Cursor keys go around both ends.
      {kUpKey + "\n", "Iron", 3},
      {kLeftKey + kLeftKey + "\n", "Iron", 2},
      {kUpKey + kRightKey + "\n", "Iron", 1},
      {kDownKey + kDownKey + kDownKey + "\n", "Iron", 1},
      // With nothing highlighted there is no step back.
      {kDownKey + "\n", "zz", 1},
      {kLeftKey + "\n", "zz", 0},
      // Any control key swallows two more.
      {"\t[B\n", "Iron", 2},
  };
  for (const auto& [keys, wanted, chosen] : cases) {
    Menu menu(kMetals, wanted);
    menu.query(keys);
    EXPECT_EQ(menu.lq, chosen) << keys << " from " << wanted;
  }
  Menu quartz({"Iron", "quartz"});
  quartz.query("q\n\n");
  EXPECT_EQ(quartz.lq, 2) << "an entry begins with q";
}

TEST(Query, ShowsHelpForTheHighlightedEntryAndComesAnew) {
  std::string shown;
  menu::show_help = [&shown](const base::Text<132>& key) {
    shown += std::string(key.trimmed()) + ";";
  };
  const struct {
    const char *header, *keys, *wanted, *pages;
    int chosen;
  } cases[] = {
      // What was wanted first is wanted again, from the highlight on.
      {"select", "Lead\nhe\n\n", "I", "page 2;", 3},
      {"select", "HELP\n\n", "Lead", "page 2;", 2},
      {"select", "he\n\n", "zz", "", 0},
      {"further related information", "he\n\n", "Iron", "", 0},
  };
  for (const auto& [header, keys, wanted, pages, chosen] : cases) {
    shown.clear();
    Menu menu(kMetals, wanted);
    menu.header = header;
    for (int i = 1; i <= menu.lq; ++i)
      scrd.helpar(i) = "page " + std::to_string(i);
    menu.query(keys, 80);
    EXPECT_EQ(shown, pages) << header << " " << keys;
    EXPECT_EQ(menu.lq, chosen) << header << " " << keys;
  }
  menu::show_help = nullptr;
}

TEST(Choose, GivesTheIndexOrNothingAndKeepsKeysOfOtherMenus) {
  terminal::term.npl = terminal::term.ncol(1) = 80;
  const menu::Entry entries[] = {
      {"Iron", "new", "Fe"}, {"Le\x1b[2Jad", {}, "Pb"}, {"Tin", {}, {}}};
  for (const int i : {1, 2, 3}) scrd.helpar(i) = "old";
  std::optional<std::size_t> chosen;
  const auto shown = [&](const std::string& keys) {
    return tests::output_of(
        keys, [&] { chosen = menu::choose("select", "Le", entries); });
  };
  EXPECT_TRUE(has(shown("\n"), kRed + "[Le?[2Jad Pb]"));
  EXPECT_EQ(chosen, std::optional<std::size_t>(1));
  EXPECT_EQ(scrd.helpar(1), "new");
  EXPECT_EQ(scrd.helpar(2), "old");
  EXPECT_TRUE(has(shown("q\n"), " Tin"));
  EXPECT_EQ(chosen, std::nullopt);
}

TEST(Query, FlowsOverTheWidthWithWideEntriesOnTwoLines) {
  const std::string wide = "a wide entry of 27 letters.";
  Menu menu({"one", wide, "two", "three"}, "");
  scrd.ext(1) = "ext";
  // Row 2 holds two entries, so it is one line.
  EXPECT_TRUE(has(menu.query("", 43), "\n" + kNormal + " one ext \n" + kNormal +
                                          " " + wide + blanks(8) + kNormal +
                                          " two  \n" + kNormal + " three" +
                                          blanks(10) + "\n" + kNormal));
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
  // Attributes of the menu come through, and nothing else.
  tests::write("script",
               "top\n" + kRed + "[x]\x1b[2J" + kNormal + "\x1b\n1----\n");
  base::unit(10).open("script");
  EXPECT_TRUE(has(Menu(kMetals, "Iron", " r").query(""),
                  kRed + "[x]?[2J" + kNormal + "? "));
  base::unit(10).close();
}

}  // namespace
