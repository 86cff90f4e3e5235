#include "base/unit.h"
#include "help/infopath.h"
#include "prompts/askstring.h"
#include "prompts/askvalue.h"
#include "prompts/yesno.h"
#include "tests/support.h"

namespace {

using base::Text;
using tests::has;

const std::string kUp = " \x1b[2A\n", kAsked = "Energy=[122.00]\n";
const std::string kNoHelp =
    " helpfile:helpfile.help\n not found in the current directory \n";

// The lines between a typed answer and the prompt that shows it.
std::string erased(std::size_t width) {
  const std::string blanks = std::string(width, ' ') + "\n";
  return kUp + kUp + blanks + blanks + " \x1b[3A\n";
}

enum Kind { kValue, kText, kYesNo };

struct Prompt {
  explicit Prompt(char mode = ' ') { query.at(132, "query") = mode; }

  std::string ask(Kind kind, const std::string& input, int ncol = 80) {
    return tests::output_of(input, [=, this] {
      switch (kind) {
        case kValue:
          return toolkit::askvalue(query, form, value, key, ncol, 5, 6);
        case kText:
          return toolkit::askstring(query, text, key, ncol, 5, 6);
        case kYesNo:
          return toolkit::yesno(query, yes, key, ncol, 5, 6);
      }
    });
  }

  base::Line query = "Energy", text = "Fe", key = "read/energy";
  Text<7> form = "f8.2";
  float value = 122;
  char yes = 'y';
  const tests::WorkingDirectory without_help_file{"/"};
};

TEST(Prompts, ValueIsKeptTypedQuitOrHelpedWith) {
  const std::string same = kAsked + kUp, typed = kAsked + erased(6);
  const struct {
    const char* input;
    float value;
    const char* query;
    std::string output;
  } cases[] = {
      // Not one number: asked again, nothing erased.
      {"5e3\nkeV\n\n", 122, "Energy", same + same + same},
      // Too wide: stars and the start of the text are shown, the value counts.
      {"123456.25\r\n\r\n", 123456.25F, "Energy",
       typed + "Energy=[***123456]\n" + kUp},
      {"  Q\n", 122, "*", same},
      {"*\n", 122, "*", same},
      {"HELP\n\n", 122, "Energy", same + kNoHelp + same},
      // Behind the question the tail of the page's key stays.
      {"back\n\n", 122, "Energycript/alteration",
       same + kNoHelp + " a script file has not been defined\n" + same},
  };
  for (const auto& c : cases) {
    Prompt prompt;
    EXPECT_EQ(prompt.ask(kValue, c.input), c.output) << c.input;
    EXPECT_EQ(prompt.value, c.value) << c.input;
    EXPECT_EQ(prompt.query, c.query) << c.input;
  }
  Prompt narrow;  // All of what is shown counts, of an answer the columns.
  narrow.value = 0.0081F;
  EXPECT_EQ(narrow.ask(kValue, "7.12\n\n", 3), "Ene=[0.01]\n" + kUp + kUp +
                                                   "   \n   \n \x1b[3A\n" +
                                                   "Ene=[7.10]\n" + kUp);
  EXPECT_EQ(narrow.value, 7.1F);
}

TEST(Prompts, TextAndYesOrNoAreKeptOrTypedAndConfirmed) {
  const std::string longest(80, 'x');
  const struct {
    Kind kind;
    std::string input, answer;
  } cases[] = {
      {kText, "Cu\n\n", "Cu"},
      {kText, "    Cu\n", "Fe"},  // four blanks count as empty
      {kText, "Quartz\n\n", "Quartz"},
      {kText, "quartz\n", "*"},
      {kText, "*\n", "*"},
      {kText, "help\n\n", "help"},
      {kText, "HE\n\n", "Fe"},
      {kText, "back\n\n", "Fe"},
      {kText, longest + "\n\n", longest},
      // The default is in the history (Ctrl-P). Tab completes nothing, Escape
      // and RET turn no vi keys on, a pasted mark swallows nothing.
      {kText, "\x10O\n\n", "FeO"},
      {kText, "a\tb\n\n", "ab"},
      {kText, "C\x1b\nu\n\n", "Cu"},
      {kText, "\x1b[200~Cu\n\n", "Cu"},
      {kYesNo, "no\n\n", "n"},
      {kYesNo, "x\n\n", "y"},
      {kYesNo, "n\n Yes\n\n", "y"},
      {kYesNo, "Quit\n", "*"},
      {kYesNo, "help\n\n", "y"},
  };
  for (const auto& c : cases) {
    Prompt prompt;
    prompt.ask(c.kind, c.input);
    const base::Line yes = std::string(1, prompt.yes);
    EXPECT_EQ(c.kind == kText ? prompt.text : yes, c.answer) << c.input;
  }
  EXPECT_TRUE(
      has(Prompt().ask(kText, "Cu\n\n"), erased(80) + "Energy [Cu]\n>"));
}

// Half of it must not become an answer, and the rest the next.
TEST(Prompts, TextWithoutEndEndsTheRun) {
  EXPECT_CAUSE(Prompt().ask(kText, std::string(2 << 20, 'x') + "\n\n"),
               "end of input");
}

// Ctrl-V types what would steer the terminal, a script holds anything.
TEST(Prompts, ShowNothingThatSteersTheTerminal) {
  Prompt typed;
  EXPECT_TRUE(has(typed.ask(kText, "\x16\x1b(\n\n"), "Energy [?(]\n>"));
  EXPECT_EQ(typed.text, "\x1b(");
  const tests::WorkingDirectory directory;
  tests::write("script", "\x1b[2J=[14.40]\n\x1b[2J [y]\n");
  base::unit(10).open("script");
  EXPECT_EQ(Prompt('r').ask(kValue, ""), "?[2J=[14.40]\n");
  EXPECT_EQ(Prompt('r').ask(kYesNo, ""), "?[2J [y]\n");
  base::unit(10).close();
}

TEST(Prompts, ScriptIsRecordedAndReplayed) {
  base::Unit& script = base::unit(10);
  const tests::WorkingDirectory directory;
  script.create("script");
  EXPECT_EQ(Prompt('w').ask(kValue, "14.4\n\n"),
            "(b) " + kAsked + erased(6) + "(b) Energy=[14.40]\n" + kUp);
  // With the help of the question comes that of the script.
  EXPECT_TRUE(has(Prompt('w').ask(kText, "he\nCu\n\n"),
                  kNoHelp + kNoHelp + "(b) Energy [Fe]\n"));
  EXPECT_EQ(Prompt('w').ask(kYesNo, "n\n\n"),
            "Energy [y]\n" + erased(6) + "Energy [n]\n" + kUp);
  Prompt('w').ask(kValue, "back\n");  // leaves the question
  script.write("Energy 14.4");
  script.close();

  script.open("script");
  Prompt value('r'), text('r'), yes('r');
  EXPECT_EQ(value.ask(kValue, ""), "Energy=[14.40]\n");
  EXPECT_EQ(text.ask(kText, ""), "");
  EXPECT_EQ(yes.ask(kYesNo, ""), "Energy [n]\n");
  EXPECT_EQ(value.value, 14.4F);
  EXPECT_EQ(text.text, "Cu");
  EXPECT_EQ(yes.yes, 'n');
  EXPECT_CAUSE(Prompt('r').ask(kValue, ""),
               "Script line 'Energy 14.4' has no value in brackets");
  const std::string end = "end of sript file: switch to interactive mode\n";
  EXPECT_EQ(Prompt('r').ask(kValue, "\n"), " " + end + kAsked + kUp);
  EXPECT_TRUE(Prompt('r').ask(kYesNo, "\n").starts_with("1" + end));
  script.close();
}

TEST(Infopath, ShorterValuesLeaveTheTailOfTheOneBefore) {
  for (const char* shell : {"/bin/sh", "sh", ""}) {
    setenv("SHELL", shell, 1);
    help::infopath();
  }
  EXPECT_EQ(help::path.shell.columns(1, 7, "shell"),
            std::string_view("\0hin/sh", 7));
}

}  // namespace
