#include "help/help.h"

#include <cstdlib>
#include <set>

#include "data/tools/helpcheck.h"
#include "help/helpfile.h"
#include "help/helproutine.h"
#include "help/key.h"
#include "menu/query.h"
#include "tests/screen.h"

namespace {

using tests::content_of;
using tests::has;
using tests::output_of;

const std::string kBack = " \x1b[2A\n";  // over an answer line
const std::string kDown = "\n\x1b[C\n";  // past a page, its menu's next, RET
const std::string kClosing = "\x1b[31m \x1b[1A\n   from help-file:h" +
                             std::string(64, ' ') + "\x1b[0m\n";

TEST(HelpFile, EveryKeyRelatedEntryAndLinkLeadsSomewhere) {
  EXPECT_TRUE(data::check_help(DATA_DIR).empty());
  const std::string file = DATA_DIR "/attenuation.help";
  const std::string end =
      "from help-file:" + (file + std::string(64, ' ')).substr(0, 64) +
      " \x1b[0m\n";
  std::set<std::string> keys(help::kKeys.begin(), help::kKeys.end());
  for (const auto& line : tests::split(content_of(file), '\n'))
    if (help::is_header(line)) keys.insert(line.substr(1));
  for (const std::string& key : keys) {
    // A page answer, and "return" in the menu: what was shown is left again.
    const auto shown =
        output_of("\n\n\n", [&] { help::helproutine("/" + key, file); });
    EXPECT_TRUE(shown.ends_with(end) && !has(shown, "no entry found")) << key;
  }
}

// Where 22 lines have room for it.
TEST(HelpFile, PagesEndWithWhatTheKeysDo) {
  const std::string file = content_of(DATA_DIR "/attenuation.help");
  int lines = 0;
  std::string key, last;
  for (const std::string& line : tests::split(file, '\n')) {
    if (!line.starts_with("/")) {
      ++lines;
      last = line;
      continue;
    }
    if (!key.empty() && 0 < lines && lines < 22) {
      const bool related = line.starts_with("/#");
      EXPECT_EQ(last, related ? " RET: the related pages; there q goes back."
                              : " RET: back.")
          << key;
    }
    lines = 0;
    key = help::is_header(line) ? line : "";
  }
}

TEST(HelpFile, CompoundsAreThoseOfTheCatalogue) {
  const tests::WorkingDirectory made;
  const std::string run = MAKECOMPOUNDS " " DATA_DIR "/sources compounds.txt";
  ASSERT_EQ(std::system(run.c_str()), 0);
  const std::string compounds = content_of("compounds.txt");
  EXPECT_EQ(content_of(DATA_DIR "/compounds.txt"), compounds);
  // The page shows some of them: formula and density in its columns 28 on.
  std::string page = content_of(DATA_DIR "/attenuation.help");
  page.erase(0, page.find("/compounds\n"));
  page.resize(page.find("\n More than"));
  int rows = 0;
  for (const std::string& line : tests::split(page, '\n')) {
    if (line.find('_') == line.npos) continue;
    const std::string formula = line.substr(28, line.find(' ', 28) - 28);
    const std::string density = line.substr(line.rfind(' '));
    const auto found = compounds.find(" " + formula + " ");
    ASSERT_NE(found, compounds.npos) << formula;
    const auto end = compounds.find('\n', found);
    EXPECT_TRUE(compounds.substr(found, end - found).ends_with(density))
        << formula;
    ++rows;
  }
  EXPECT_EQ(rows, 14);
}

// A help file of its own, on a screen of 24 rows.
class Browser : public testing::Test {
 protected:
  std::string browse(const std::string& content, const std::string& keys,
                     const char* key = "/a") {
    tests::write("h", content);
    return output_of(keys, [key] { help::helproutine(key, "h"); });
  }
  // What follows when "a" has one related entry, and it is chosen.
  void expect_related(const std::string& entry, const std::string& shown) {
    EXPECT_TRUE(has(browse("/a\nx\n/#" + entry, kDown), shown));
  }

  const tests::WorkingDirectory here_;
};

TEST_F(Browser, ShowsTextsPagesLinksAndHeaders) {
  std::string page, more, chain = "/a\n";
  for (int i = 1; i <= 32; ++i) {
    const std::string number = std::to_string(i);
    (i <= 24 ? page : more) += "line" + number + "\n";
    chain += "/>" + number + "\n/" + number + "\n";
  }
  // Nothing else steers the terminal.
  EXPECT_EQ(browse("x\n  /a  \n\\bf Bold\n\\ul Under\n\\bc Blue\n\\it no\n"
                   "tail  \x1b[2J\t.\x9b\n/\nnot shown\n",
                   "\n"),
            "\x20\x1b[1m Bold\x1b[0m\n \x1b[4m Under\x1b[0m\n"
            "\x1b[34m Blue\x1b[0m\n\\it no\ntail  ?[2J .?\n" +
                kBack + kClosing);
  const struct {
    std::string content, keys, shown;
  } cases[] = {
      // Asked once a page; left in the middle, no related entries follow.
      {"/a\n" + page + "/\n", "\n", page + kBack},
      {"/a\n" + page + more, "\n\n", page + kBack + more + kBack},
      {"/a\n" + page + more + "/#b\n", "q\n", page + kBack},
      // 32 links are followed, 33 are not.
      {chain + "text\n", "\n", "text\n" + kBack},
      {"/a\n/>b\n/b\n/>a\n", "",
       " the links of the entry /a lead in a circle\n"},
      {"/a\n/>b\n", "", "no entry found for /b in helpfile:\nh\n"},
  };
  for (const auto& [content, keys, shown] : cases)
    EXPECT_EQ(browse(content, keys), shown + kClosing);
  EXPECT_TRUE(has(browse(chain + "/>end\n/end\ntext\n", ""), "in a circle"));
  // A key with a star lists headers.
  EXPECT_EQ(browse("/ab\nx\n/#ac\n/>ad\n /ab/c\n/b\n", "\n", "/a*"),
            "/ab\n/ab/c\n" + kBack + kClosing);
}

// The first entry behind "return" of every menu that was drawn anew.
std::string menus_in(const std::string& written) {
  const std::string normal = "\x1b[0m ";
  std::string first;
  for (std::size_t at = 0;
       (at = written.find("further related", at)) != written.npos;) {
    at = written.find("[return]", at);
    at = written.find(normal, at) + normal.size();
    first += written.at(at);
  }
  return first;
}

TEST_F(Browser, WalksDownFourLevelsAndBackAndKeepsTheMenuThatAsked) {
  const std::string deep =
      "/a\ntext a\n/#b\n/#leaf\n/b\nx\n/#c\n/#leaf\n/c\nx\n/#d\n/#leaf\n"
      "/d\nx\n/#e\n/#leaf\n/e\nx\n/#f\n/#leaf\n/f\nx\n/leaf\nthe leaf\n";
  menu::scrd.queryar(2) = "entry";
  // Back goes one level up, and shows the menu there, not its text. An entry
  // without related entries shows the menu again.
  const std::string written =
      browse(deep, kDown + kDown + "\n" + "\n" + "leaf\n\n\n" + "\n" + "\n");
  EXPECT_EQ(menus_in(written), "bcdccb");
  EXPECT_TRUE(has(written, "the leaf"));
  EXPECT_EQ(written.find("text a"), written.rfind("text a"));
  EXPECT_TRUE(written.ends_with(kClosing));
  EXPECT_EQ(menu::scrd.queryar(2), "entry");
  // A fifth level is refused.
  EXPECT_TRUE(has(browse(deep, kDown + kDown + kDown + kDown + "\n"),
                  " there was no way back to the preceeding level\n"));
  // In these menus "he" is part of an entry's name.
  EXPECT_TRUE(has(browse("/a\nx\n/#hey\n/hey\ny\n", "\nhe\n\n\n\n"), "[hey]"));
}

TEST_F(Browser, ManyEntriesTakeNoTimeAndTooManyRelatedOnesAreRefused) {
  std::string related = "/a\nx\n", large;
  for (int i = 0; i < 33; ++i) related += "/#b" + std::to_string(i) + "\n";
  EXPECT_CAUSE(
      browse(related, "\n"),
      "Index '33' of dimension 1 of array 'que' above upper bound of 32");
  for (int i = 0; i < 10000; ++i) {
    large += "/entry" + std::to_string(i) + "\n" + std::string(1000, 't') +
             "\n/#entry" + std::to_string(i + 1) + "\n";
  }
  EXPECT_TRUE(has(browse(large, "\n\n", "/entry9999"), "entry10000"));
}

TEST_F(Browser, OpensDetailsAndDocuments) {
  tests::write("d.txt", "detail\x1b[2J\n");
  tests::write("xdvi", "#!/bin/sh\necho \"$@\" >> shown\n");
  std::filesystem::permissions("xdvi", std::filesystem::perms::owner_all);
  help::cmpa.zoxuhepath = ".";
  expect_related("details d.txt", "detail?[2J" + std::string(70, ' ') + "\n");
  expect_related("details none", "[return]    \x1b[0m details     \n");
  expect_related("details none", " file ./none for details not found\n\n");
  setenv("PATH", (std::string(".:") + std::getenv("PATH")).c_str(), 1);
  setenv("ZOXUHEPATH", "/h", 1);
  for (const std::string name : {"x;touch${IFS}bad", "$(touch", "../x", ""})
    expect_related("more " + name, " the document name " + name + " has char");
  // The command has room for names of 55 characters.
  const std::string longest = "doc-1.b_2" + std::string(46, 'x');
  const std::string dvi = "/dvifiles/" + longest + "/" + longest + ".dvi";
  expect_related("more " + longest + "x",
                 " the command for the document is too long\n");
  expect_related("more " + longest, " xdvi $ZOXUHEPATH" + dvi + " &\n");
  for (int i = 0; i < 500 && content_of("shown").empty(); ++i) usleep(10000);
  EXPECT_EQ(content_of("shown"), "/h" + dvi + "\n");
  EXPECT_FALSE(std::filesystem::exists("bad"));
}

TEST(HelpInDialogue, BringsTheUserBackToTheQuestion) {
  tests::Screen screen;  // without ZOXUHEPATH: helpfile.help
  ASSERT_TRUE(screen.walk({{.types = "10 c\rhe\r"},
                           {"", "q"},
                           {"[1 Ni", "10 c"},
                           {"[N_2", "HE"},
                           {"[return]"},
                           {"[N_2"},
                           {"g/cm3"}}));
}

}  // namespace
