#include "help/help.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "attenuation/catalogue.h"
#include "base/unit.h"
#include "help/helproutine.h"
#include "help/query.h"
#include "tests/screen.h"
#include "tests/support.h"

namespace {

using tests::output_of;

constexpr const char* kBack = " \x1b[2A\n";  // over an answer line

std::string closing(const std::string& file) {
  return "\x1b[31m \x1b[1A\n   from help-file:" + file + " \x1b[0m\n";
}

struct Entry {
  std::vector<std::string> text, related;
  std::string link;
};

std::map<std::string, Entry> entries_of(const std::string& file) {
  std::map<std::string, Entry> entries;
  Entry* entry = nullptr;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    EXPECT_LE(line.size(), 76U) << line;
    if (line.starts_with("/#")) {
      entry->related.push_back(line.substr(2));
    } else if (line.starts_with("/>")) {
      entry->link = line.substr(2);
    } else if (line.starts_with("/")) {
      EXPECT_FALSE(entries.contains(line.substr(1))) << "twice: " << line;
      entry = &entries[line.substr(1)];
    } else if (entry != nullptr) {
      EXPECT_TRUE(entry->related.empty()) << "text behind related: " << line;
      entry->text.push_back(line);
    }
  }
  return entries;
}

TEST(HelpFile, EveryKeyRelatedEntryAndLinkLeadsSomewhere) {
  const std::string data = DATA_DIR "/";
  const auto entries = entries_of(data + "attenuation.help");
  std::set<std::string> keys = {
      "read/density",          "read/energy", "read/mgcm2",
      "read/thickness",        "read/repeat", "read/modification",
      "zoxu/script/alteration"};
  for (const auto& sample : attenuation::kCatalogue) {
    keys.insert(std::string(sample.help_key));
  }
  for (const std::string& key : keys) {
    EXPECT_TRUE(entries.contains(key)) << key;
  }
  for (const auto& [key, entry] : entries) {
    EXPECT_TRUE(entry.link.empty() != entry.text.empty()) << key;
    EXPECT_LE(entry.text.size(), 22U) << key << " does not fit a screen";
    if (!entry.link.empty()) {
      EXPECT_TRUE(entries.contains(entry.link)) << key;
    }
    for (const std::string& related : entry.related) {
      std::string file;
      if (related.starts_with("more")) {
        const std::string name = related.substr(5);
        file = data + "dvifiles/" + name + "/" + name + ".dvi";
      } else if (related.starts_with("details")) {
        file = data + related.substr(8);
      }
      EXPECT_TRUE(file.empty() ? entries.contains(related)
                               : std::filesystem::exists(file))
          << key << " -> " << related;
    }
    // A page answer, and "return" in the menu: what was shown is left again.
    const std::string written = output_of("\n\n\n", [&key = key] {
      help::helproutine("/" + key, DATA_DIR "/attenuation.help");
    });
    EXPECT_EQ(written.find("no entry found"), std::string::npos) << key;
    EXPECT_TRUE(
        written.ends_with(closing((data + "attenuation.help").substr(0, 64))))
        << key << written;
  }
}

// A help file of its own, on a screen of 24 rows.
class Browser : public testing::Test {
 protected:
  std::string browse(const std::string& content, const std::string& keys,
                     const char* key = "/a") {
    directory_.write("h", content);
    return output_of(keys, [key] { help::helproutine(key, "h"); });
  }

  const tests::TemporaryDirectory directory_;
  const tests::WorkingDirectory here_{directory_.path("")};
};

TEST_F(Browser, ShowsTextWithMarkupAndNothingElseThatSteersTheTerminal) {
  EXPECT_EQ(browse("x\n  /a  \n\\bf Bold\n\\ul Under\n\\bc Blue\n\\it no\n"
                   "tail  \x1b[2J\t.\x9b\n/\nnot shown\n",
                   "\n"),
            "\x20\x1b[1m Bold\x1b[0m\n \x1b[4m Under\x1b[0m\n"
            "\x1b[34m Blue\x1b[0m\n\\it no\ntail  ?[2J .?\n" +
                std::string(kBack) + closing("h"));
  EXPECT_EQ(browse("/b\ntext\n", ""),
            "no entry found for /a in helpfile:\nh\n" + closing("h"));
  EXPECT_EQ(output_of("", [] { help::helproutine("/a", "missing"); }),
            closing("missing"));
}

TEST_F(Browser, AsksOnceAPage) {
  const auto lines = [](int count) {
    std::string text;
    for (int i = 1; i <= count; ++i) text += "line" + std::to_string(i) + "\n";
    return text;
  };
  EXPECT_EQ(browse("/a\n" + lines(24) + "/\n", "\n"),
            lines(24) + kBack + closing("h"));
  const std::string full = lines(24);
  const std::string more = lines(30).substr(full.size());
  EXPECT_EQ(browse("/a\n" + lines(30), "\n\n"),
            full + kBack + more + kBack + closing("h"));
  // Leaving in the middle leaves the entry; its related entries do not follow.
  EXPECT_EQ(browse("/a\n" + lines(30) + "/#b\n", "q\n"),
            full + kBack + closing("h"));
  EXPECT_NE(browse("/a\n" + lines(3) + "/#b\n", "*\n\n").find("[return]"),
            std::string::npos);
}

TEST_F(Browser, FollowsLinksButNotInACircle) {
  EXPECT_EQ(browse("/a\n/>b\n/c\ntext\n/\n/b\n/>c\n", "\n"),
            "text\n" + std::string(kBack) + closing("h"));
  EXPECT_EQ(browse("/a\n/>b\n/b\n/>a\n", ""),
            " the links of the entry /a lead in a circle\n" + closing("h"));
  EXPECT_EQ(browse("/a\n/>b\n", ""),
            "no entry found for /b in helpfile:\nh\n" + closing("h"));
}

TEST_F(Browser, WalksDownFourLevelsAndBack) {
  std::string deep;
  for (char c = 'a'; c < 'f'; ++c) {
    deep += std::string("/") + c + "\ntext " + c + "\n/#" +
            static_cast<char>(c + 1) + "\n/#leaf\n";
  }
  deep += "/leaf\nthe leaf\n/f\ntext f\n";
  const auto text_order = [](const std::string& written) {
    std::string seen;
    for (auto at = written.find("text "); at != written.npos;
         at = written.find("text ", at + 1)) {
      seen += written[at + 5];
    }
    return seen;
  };
  // An entry without related entries shows the menu again; going back shows
  // the menu above, not its text.
  std::string written = browse(deep, "\nb\n\n\nleaf\n\n\n\n\n");
  EXPECT_EQ(text_order(written), "ab");
  EXPECT_NE(written.find("the leaf"), std::string::npos);
  EXPECT_TRUE(written.ends_with(closing("h")));
  // The keys of a related entry: a step, and RET. A fifth level is refused.
  const std::string step = "\x1b[C\n";
  written = browse(
      deep, "\n" + step + "\n" + step + "\n" + step + "\n" + step + "\n");
  EXPECT_EQ(text_order(written), "abcde");
  EXPECT_TRUE(written.ends_with(
      " there was no way back to the preceeding level\n" + closing("h")))
      << written;
  // In these menus "he" is part of an entry's name.
  EXPECT_NE(
      browse("/a\nx\n/#hello\n/hello\ny\n", "\nhe\n\n\n\n").find("[hello]"),
      std::string::npos);
}

TEST_F(Browser, ListsHeadersForAKeyWithAStar) {
  EXPECT_EQ(browse("/ab\nx\n/#ac\n/>ad\n /ab/c\n/b\n", "\n", "/a*"),
            "/ab\n/ab/c\n" + std::string(kBack) + closing("h"));
}

TEST_F(Browser, OpensDetailsAndDocuments) {
  directory_.write("d.txt", "detail\n");
  help::cmpa.zoxuhepath =
      directory_.path("").substr(0, directory_.path("").size() - 1);
  const std::string step = "\x1b[C\n";
  EXPECT_NE(browse("/a\nx\n/#details d.txt\n", "\n" + step)
                .find("detail" + std::string(74, ' ') + "\n"),
            std::string::npos);
  EXPECT_NE(browse("/a\nx\n/#details none\n", "\n" + step)
                .find(" file " + directory_.path("none") +
                      " for details not found\n\n"),
            std::string::npos);
  const std::string path = std::getenv("PATH");
  setenv("PATH", directory_.path("").c_str(), 1);
  directory_.write("xdvi", "#!/bin/sh\necho \"$@\" > shown\n");
  std::filesystem::permissions(directory_.path("xdvi"),
                               std::filesystem::perms::owner_all);
  setenv("ZOXUHEPATH", "/h", 1);
  EXPECT_NE(browse("/a\nx\n/#more doc-1.b_2\n", "\n" + step)
                .find(" xdvi $ZOXUHEPATH/dvifiles/doc-1.b_2/doc-1.b_2.dvi &\n"),
            std::string::npos);
  for (int i = 0; i < 500 && tests::content_of("shown").empty(); ++i) {
    usleep(10000);
  }
  EXPECT_EQ(tests::content_of("shown"),
            "/h/dvifiles/doc-1.b_2/doc-1.b_2.dvi\n");
  for (const std::string name : {"x;touch${IFS}bad", "$(touch", "../x", ""}) {
    EXPECT_NE(browse("/a\nx\n/#more " + name + "\n", "\n" + step)
                  .find(" the document name " + name.substr(0, name.find(' '))),
              std::string::npos);
  }
  EXPECT_NE(browse("/a\nx\n/#more " + std::string(70, 'x') + "\n", "\n" + step)
                .find(" the command for the document is too long\n"),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists("bad"));
  setenv("PATH", path.c_str(), 1);
}

TEST_F(Browser, KeepsTheTablesOfTheMenuThatAskedForHelp) {
  for (int i = 1; i <= 64; ++i) help::scrd.queryar(i) = std::to_string(i);
  browse("/a\nx\n/#b\n/b\ny\n", "\n\x1b[C\n\n\n");
  for (int i = 1; i <= 64; ++i) {
    EXPECT_EQ(help::scrd.queryar(i), std::to_string(i));
  }
  std::string many = "/a\nx\n";
  for (int i = 0; i < 33; ++i) many += "/#b" + std::to_string(i) + "\n";
  EXPECT_EQ(tests::cause_of([&] { browse(many, "\n"); }),
            "Index '33' of dimension 1 of array 'que' above upper bound of 32");
}

TEST_F(Browser, LargeFilesTakeNoTime) {
  std::string large;
  for (int i = 0; i < 10000; ++i) {
    large += "/entry" + std::to_string(i) + "\n" + std::string(1000, 't') +
             "\n/#entry" + std::to_string(i + 1) + "\n";
  }
  EXPECT_NE(browse(large, "\n\n", "/entry9999").find("entry10000"),
            std::string::npos);
}

// From the prompts of a session, on two sizes of screen.
TEST(HelpInDialogue, BringsTheUserBackToTheQuestion) {
  for (const tests::Size size : {tests::Size{24, 80}, tests::Size{12, 40}}) {
    tests::Options options;
    options.directory = DATA_DIR;  // without ZOXUHEPATH: helpfile.help
    tests::Screen screen({PROGRAM}, size, options);
    const std::vector<std::pair<const char*, const char*>> steps = {
        {"[1 Nickel foil]", "10 c\r"},
        {"[10 compound]", "he\r"},
        {"", "q\r"},
        {"[return]", "\r"},
        {"[1 Nickel foil]", "10 c\r"},
        {"[10 compound]", "\r"},
        {">", "HE\r"},
        {"", "q\r"},
        {"[return]", "\r"},
        {">", "\r"},
        {"density of the compound", "help\r"},
        {"", "q\r"},
        {"[return]", "\r"},
        {"density of the compound g/cm3=[0.00]", "\r"},
        {"Photon energy in keV=[14.40]", "\r"}};
    for (const auto& [prompt, keys] : steps) {
      // Left in the middle of its text, a page shows no related entries.
      if (size.rows == 12 && prompt == std::string("[return]")) continue;
      // The menu is higher than 12 rows.
      const bool unseen = size.rows == 12 && *prompt == '[';
      ASSERT_TRUE(screen.answer(unseen ? "" : prompt, keys)) << screen.dump();
    }
    EXPECT_TRUE(screen.shows("thickness mg/cm2=[100.00]")) << screen.dump();
  }
}

}  // namespace
