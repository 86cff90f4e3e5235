#include <tuple>

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

struct Prompt {
  explicit Prompt(char mode = ' ') { query.at(132, "query") = mode; }

  // what  'v' for a value, 't' for a text, 'y' for yes or no
  std::string ask(char what, const std::string& input, int ncol = 80) {
    return tests::output_of(input, [=, this] {
      if (what == 'v') toolkit::askvalue(query, form, value, key, ncol, 5, 6);
      if (what == 't') toolkit::askstring(query, text, key, ncol, 5, 6);
      if (what == 'y') toolkit::yesno(query, yes, key, ncol, 5, 6);
    });
  }

  Text<132> query = "Energy", text = "Fe", key = "read/energy";
  Text<7> form = "f8.2";
  float value = 122;
  char yes = 'y';
  const tests::WorkingDirectory without_help_file{"/"};
};

TEST(Prompts, ValueIsKeptTypedQuitOrHelpedWith) {
  const std::string same = kAsked + kUp, typed = kAsked + erased(6);
  const std::tuple<const char*, float, const char*, std::string> cases[] = {
      // Not one number: asked again, nothing erased.
      {"5e3\nkeV\n\n", 122, "Energy", same + same + same},
      // Too wide: stars and the start of the text are shown, the value counts.
      {"123456.25\r\n\r\n", 123456.25F, "Energy",
       typed + "Energy=[***123]\n" + kUp},
      {"  Q\n", 122, "*", same},
      {"*\n", 122, "*", same},
      {"HELP\n\n", 122, "Energy", same + kNoHelp + same},
      // Behind the question the tail of the page's key stays.
      {"back\n\n", 122, "Energycript/alteration",
       same + kNoHelp + " a script file has not been defined\n" + same}};
  for (const auto& [input, value, query, output] : cases) {
    Prompt prompt;
    EXPECT_EQ(prompt.ask('v', input), output) << input;
    EXPECT_EQ(prompt.value, value) << input;
    EXPECT_EQ(prompt.query, query) << input;
  }
  Prompt narrow;  // All of what is shown counts, and no more.
  narrow.value = 0.0081F;
  EXPECT_EQ(narrow.ask('v', "\n", 3), "Ene=[0.01]\n" + kUp);
  EXPECT_EQ(narrow.value, 0.01F);
}

TEST(Prompts, TextAndYesOrNoAreKeptOrTypedAndConfirmed) {
  const std::string longest(80, 'x');
  // Four blanks count as empty. The default is in the history (Ctrl-P). Tab
  // completes nothing, and Escape and RET turn no vi keys on.
  for (const auto& f : tests::table(
           "t,  Cu//,Cu|t,    Cu/,Fe|t,Quartz//,Quartz|t,quartz/,*|t,*/,*|"
           "t,help//,help|t,HE//,Fe|t,back//,Fe|t,\x10O//,FeO|t,a\tb//,ab|"
           "t,C\x1b/u//,Cu|t,\x1b[200~Cu//,Cu|t,\x16\x1b(//,\x1b(|y,no//,n|y,x/"
           "/,y|y,n/ Yes//,y|y,Quit/,*|"
           "y,help//,y|t," +
           longest + "//," + longest)) {
    Prompt prompt;
    prompt.ask(f[0][0], tests::typed(f[1]));
    const Text<132> yes = std::string(1, prompt.yes);
    EXPECT_EQ(f[0] == "t" ? prompt.text : yes, f[2]) << f[1];
  }
  EXPECT_TRUE(has(Prompt().ask('t', "Cu\n\n"), erased(80) + "Energy [Cu]\n>"));
}

TEST(Prompts, ScriptIsRecordedAndReplayed) {
  base::Unit& script = base::unit(10);
  const tests::WorkingDirectory directory;
  script.create("script");
  EXPECT_EQ(Prompt('w').ask('v', "14.4\n\n"),
            "(b) " + kAsked + erased(6) + "(b) Energy=[14.40]\n" + kUp);
  // With the help of the question comes that of the script.
  EXPECT_TRUE(has(Prompt('w').ask('t', "he\nCu\n\n"),
                  kNoHelp + kNoHelp + "(b) Energy [Fe]\n"));
  EXPECT_EQ(Prompt('w').ask('y', "n\n\n"),
            "Energy [y]\n" + erased(6) + "Energy [n]\n" + kUp);
  Prompt('w').ask('v', "back\n");  // leaves the question
  script.write("Energy 14.4");
  script.close();

  script.open("script");
  Prompt value('r'), text('r'), yes('r');
  EXPECT_EQ(value.ask('v', ""), "Energy=[14.40]\n");
  EXPECT_EQ(text.ask('t', ""), "");
  EXPECT_EQ(yes.ask('y', ""), "Energy [n]\n");
  EXPECT_EQ(value.value, 14.4F);
  EXPECT_EQ(text.text, "Cu");
  EXPECT_EQ(yes.yes, 'n');
  EXPECT_CAUSE(Prompt('r').ask('v', ""),
               "Script line 'Energy 14.4' has no value in brackets");
  const std::string end = "end of sript file: switch to interactive mode\n";
  EXPECT_EQ(Prompt('r').ask('v', "\n"), " " + end + kAsked + kUp);
  EXPECT_TRUE(Prompt('r').ask('y', "\n").starts_with("1" + end));
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
