#include <gtest/gtest.h>

#include <string>

#include "base/unit.h"
#include "help/help.h"
#include "help/infopath.h"
#include "tests/support.h"
#include "toolkit/prompts/askstring.h"
#include "toolkit/prompts/askvalue.h"
#include "toolkit/prompts/yesno.h"

namespace {

using base::Text;
using tests::output_of;

constexpr const char* kUp = " \x1b[2A\n";
constexpr const char* kUpThree = " \x1b[3A\n";
const std::string kNoHelp =
    " helpfile:helpfile.help\n not found in the current directory \n";

// The lines between a typed answer and the prompt that shows it.
std::string erased(int width) {
  const std::string blanks(static_cast<std::size_t>(width), ' ');
  return std::string(kUp) + kUp + blanks + "\n" + blanks + "\n" + kUpThree;
}

// One call of each prompt; the arguments are also what comes back.
struct Prompt {
  Text<132> query = "Energy";
  Text<7> form = "f8.2";
  float value = 122.0F;
  Text<132> text = "Fe";
  char yes = 'y';
  Text<132> key = "read/energy";
  int columns = 80;

  std::string ask_value(const std::string& input) {
    return output_of(input, [this] {
      toolkit::askvalue(query, form, value, key, columns, 5, 6);
    });
  }
  std::string ask_string(const std::string& input) {
    return output_of(
        input, [this] { toolkit::askstring(query, text, key, columns, 5, 6); });
  }
  std::string ask_yes(const std::string& input) {
    return output_of(
        input, [this] { toolkit::yesno(query, yes, key, columns, 5, 6); });
  }
};

// Prompts in an empty directory, where there is no help file.
class Prompts : public testing::Test {
 protected:
  std::string script() const { return directory_.path("script"); }

  const tests::TemporaryDirectory directory_;
  const tests::WorkingDirectory here_{directory_.path("")};
};

TEST_F(Prompts, ValueIsKeptAsShownOrTypedAndConfirmed) {
  const struct {
    const char* input;
    float before, after;
    std::string output;
  } cases[] = {
      {"\n", 122.0F, 122.0F, std::string("Energy=[122.00]\n") + kUp},
      {"\n", 0.0041F, 0.0F, std::string("Energy=[0.00]\n") + kUp},
      {"  136.5\n\n", 122.0F, 136.5F,
       "Energy=[122.00]\n" + erased(6) + "Energy=[136.50]\n" + kUp},
      {"5.e3 keV\n\n", 122.0F, 5000.0F,
       "Energy=[122.00]\n" + erased(6) + "Energy=[5000.00]\n" + kUp},
      // Not one number: asked again, nothing erased.
      {"5e3\nkeV\n\n", 122.0F, 122.0F,
       std::string("Energy=[122.00]\n") + kUp + "Energy=[122.00]\n" + kUp +
           "Energy=[122.00]\n" + kUp},
      // Too wide: stars and the start of the text are shown, the value counts.
      {"123456.25\n\n", 122.0F, 123456.25F,
       "Energy=[122.00]\n" + erased(6) + "Energy=[***123]\n" + kUp},
      {"2.e10\n\n", 122.0F, 2e10F,
       "Energy=[122.00]\n" + erased(6) + "Energy=[2.00000e10]\n" + kUp},
  };
  for (const auto& c : cases) {
    Prompt prompt;
    prompt.value = c.before;
    EXPECT_EQ(prompt.ask_value(c.input), c.output) << c.input;
    EXPECT_EQ(prompt.value, c.after) << c.input;
    EXPECT_EQ(prompt.query, "Energy");
  }
}

TEST_F(Prompts, ValueQuitsHelpsAndGoesBack) {
  for (const char* quit : {"quit\n", "  Q\n", "*\n"}) {
    Prompt prompt;
    prompt.ask_value(quit);
    EXPECT_EQ(prompt.query, "*") << quit;
    EXPECT_EQ(prompt.value, 122.0F);
  }
  Prompt help;
  EXPECT_EQ(help.ask_value("HELP\n\n"), std::string("Energy=[122.00]\n") + kUp +
                                            kNoHelp + "Energy=[122.00]\n" +
                                            kUp);
  Prompt back;
  EXPECT_EQ(back.ask_value("back\n\n"),
            std::string("Energy=[122.00]\n") + kUp + kNoHelp +
                " a script file has not been defined\nEnergy=[122.00]\n" + kUp);
  EXPECT_EQ(back.key, "back/energy");
  // Behind the question the tail of the page's key stays.
  EXPECT_EQ(back.query, "Energycript/alteration");
  Prompt narrow;
  narrow.columns = 3;
  EXPECT_EQ(narrow.ask_value("\n"), std::string("Ene=[122.00]\n") + kUp);
  EXPECT_EQ(narrow.value, 122.0F);
}

TEST_F(Prompts, TextIsKeptOrTypedAndConfirmed) {
  const struct {
    const char* input;
    const char* after;
  } cases[] = {
      {"\n", "Fe"},
      {"Cu\n\n", "Cu"},
      {"  Cu\n\n", "Cu"},
      {"    Cu\n", "Fe"},  // four blanks count as empty
      {"Quartz\n\n", "Quartz"},
      {"quartz\n", "*"},
      {"*\n", "*"},
      {"help\n\n", "help"},
      {"a\tb\n\n", "ab"},
  };
  for (const auto& c : cases) {
    Prompt prompt;
    prompt.ask_string(c.input);
    EXPECT_EQ(prompt.text, c.after) << c.input;
  }
  Prompt prompt;
  const std::string written = prompt.ask_string("Cu\n\n");
  EXPECT_TRUE(written.starts_with("Energy [Fe]\n>")) << written;
  EXPECT_NE(written.find(erased(80) + "Energy [Cu]\n>"), std::string::npos)
      << written;
  Prompt help;
  EXPECT_NE(help.ask_string("HE\n\n").find(kNoHelp), std::string::npos);
  EXPECT_EQ(help.text, "Fe");
  // The default is in the history, to be recalled (Ctrl-P) and changed.
  Prompt recalled;
  recalled.ask_string("\x10O\n\n");
  EXPECT_EQ(recalled.text, "FeO");
  Prompt longest;
  longest.ask_string(std::string(80, 'x') + "\n\n");
  EXPECT_EQ(longest.text, std::string(80, 'x'));
  EXPECT_EQ(tests::advice_of([] {
              Prompt too_long;
              too_long.ask_string(std::string(140, 'x') + "\n\n");
            }),
            "an answer has at most 80 characters: shorten it");
}

TEST_F(Prompts, YesOrNo) {
  const struct {
    const char* input;
    char after;
  } cases[] = {{"\n", 'y'},      {"no\n\n", 'n'},   {" Yes\n\n", 'y'},
               {"x\n\n", 'y'},   {"n\ny\n\n", 'y'}, {"Quit\n", '*'},
               {"help\n\n", 'y'}};
  for (const auto& c : cases) {
    Prompt prompt;
    prompt.ask_yes(c.input);
    EXPECT_EQ(prompt.yes, c.after) << c.input;
  }
  Prompt prompt;
  EXPECT_EQ(prompt.ask_yes("n\n\n"),
            "Energy [y]\n" + erased(6) + "Energy [n]\n" + kUp);
}

// What record mode writes is what replay mode reads.
TEST_F(Prompts, ScriptIsRecordedAndReplayed) {
  const auto with_flag = [](char flag) {
    Prompt prompt;
    prompt.query.at(132, "query") = flag;
    return prompt;
  };
  Prompt value = with_flag('w');
  Prompt text = with_flag('w');
  Prompt yes = with_flag('w');
  base::unit(10).create(script());
  EXPECT_EQ(value.ask_value("14.4\n\n"),
            "(b) Energy=[122.00]\n" + erased(6) + "(b) Energy=[14.40]\n" + kUp);
  text.ask_string("Cu\n\n");
  yes.ask_yes("n\n\n");
  base::unit(10).close();
  EXPECT_EQ(tests::content_of(script()),
            "Energy=[14.40]\nEnergy [Cu]\nEnergy [n]\n");

  value = with_flag('r');
  text = with_flag('r');
  yes = with_flag('r');
  base::unit(10).open(script());
  EXPECT_EQ(value.ask_value(""), "Energy=[14.40]\n");
  EXPECT_EQ(text.ask_string(""), "");
  EXPECT_EQ(yes.ask_yes(""), "Energy [n]\n");
  EXPECT_EQ(value.value, 14.4F);
  EXPECT_EQ(text.text, "Cu");
  EXPECT_EQ(yes.yes, 'n');
  // At the script's end each goes on with the user.
  value = with_flag('r');
  yes = with_flag('r');
  EXPECT_EQ(value.ask_value("\n"),
            std::string(" end of sript file: switch to interactive mode\n"
                        "Energy=[122.00]\n") +
                kUp);
  EXPECT_EQ(yes.ask_yes("\n").substr(0, 48),
            "1end of sript file: switch to interactive mode\nE");
  base::unit(10).close();

  directory_.write("script", "Energy 14.4\n");
  base::unit(10).open(script());
  value = with_flag('r');
  EXPECT_EQ(tests::cause_of([&] { value.ask_value(""); }),
            "Script line 'Energy 14.4' has no value in brackets");
  base::unit(10).close();
}

TEST_F(Prompts, EndOfInputEndsTheRun) {
  for (const char* input : {"", "abc\n", "he\n"}) {
    Prompt prompt;
    EXPECT_EQ(tests::cause_of([&] { prompt.ask_value(input); }),
              "end of input");
    EXPECT_EQ(tests::cause_of([&] { prompt.ask_yes(input); }), "end of input");
    EXPECT_EQ(tests::cause_of([&] { prompt.ask_string(input); }),
              "end of input");
  }
}

TEST(Infopath, ValuesAreCutAtTheirFieldAndNotPadded) {
  setenv("EDITOR", std::string(100000, 'e').c_str(), 1);
  setenv("SHELL", "/bin/sh", 1);
  help::infopath();
  setenv("SHELL", "sh", 1);
  help::infopath();
  EXPECT_EQ(help::path.editor, std::string(80, 'e'));
  EXPECT_EQ(help::path.shell.columns(1, 7, "shell"), "shin/sh");
  setenv("SHELL", "", 1);
  help::infopath();
  EXPECT_EQ(help::path.shell.columns(1, 3, "shell"),
            std::string_view("\0hi", 3));
}

}  // namespace
