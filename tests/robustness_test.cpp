// No input, file, terminal or signal makes the program crash, hang, or leave
// the terminal in another mode.

#include <sys/stat.h>

#include <csignal>
#include <regex>

#include "attenuation/catalogue.h"
#include "attenuation/dialogue.h"
#include "tests/screen.h"

namespace {

using tests::content_of;
using tests::has;
using tests::run_piped;
using tests::Screen;
using tests::Step;

const std::string kKeys = "5 ES\n\nCu\n\n20\n\n\n5\n\n\n\n0.1\n\nn\n\n";

TEST(EndOfInput, EndsTheRunAtEveryRead) {
  for (const auto& sample : attenuation::kCatalogue) {
    const std::string keys = std::string(sample.text.substr(0, 4)) + "\n\nhe" +
                             std::string(15, '\n');
    for (std::size_t cut = 0; cut < keys.size(); ++cut) {
      const auto run = run_piped(keys.substr(0, cut));
      if (run.status == 0) break;
      EXPECT_EQ(run.status, 2) << keys.substr(0, cut);
      EXPECT_TRUE(has(run.err, "nd of input"));
    }
  }
}

const std::vector<Step> kKeyAwaited = {{.shows = "[1 Nickel"}};
const std::vector<Step> kLineAwaited = {{.prompt = "[1 Nickel"},
                                        {.shows = "Photon energy"}};
const std::vector<Step> kEditorAwaits = {
    {.prompt = "[1 Nickel", .keys = "5 ES"},
    {.shows = "symbol for the element"}};

TEST(Signals, EndTheRunWithTheTerminalAsItWas) {
  for (const auto* steps : {&kKeyAwaited, &kLineAwaited, &kEditorAwaits}) {
    const std::string& where = steps->back().shows;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGUSR1}) {
      Screen screen;
      EXPECT_TRUE(screen.walk(*steps));
      EXPECT_EQ(screen.restored(), steps == &kLineAwaited) << where;
      screen.signal(signal);
      EXPECT_EQ(screen.wait(), 128 + signal) << where;
      EXPECT_TRUE(screen.restored()) << signal << where;
    }
    Screen gone;
    EXPECT_TRUE(gone.walk(*steps));
    gone.hang_up();
    EXPECT_EQ(gone.wait(), 2) << "where the shell keeps SIGHUP to itself";
  }
  Screen menu;
  EXPECT_TRUE(menu.walk({{.shows = "[1 Nickel"}, {.types = "#"}}));
  EXPECT_EQ(menu.wait(), 128 + SIGINT) << "# interrupts a menu";
}

TEST(Signals, StoppedAndContinuedItTakesUpSingleKeysAgain) {
  Screen screen;
  EXPECT_TRUE(screen.walk(kKeyAwaited));
  const auto single_keys = screen.settings();
  for (const int stop : {SIGTSTP, SIGSTOP}) {
    screen.signal(stop);
    screen.await_stop();
    EXPECT_EQ(screen.restored(), stop == SIGTSTP);
    // Continued in the background it leaves the terminal to the shell, and
    // waits.
    screen.edit_in_shell();
    const auto shells = screen.settings();
    screen.signal(SIGCONT);
    screen.await_stop();
    EXPECT_EQ(screen.settings(), shells);
    screen.continue_in_foreground();
    screen.await_settings(single_keys);
    EXPECT_TRUE(screen.walk(kKeyAwaited));
  }
}

// Else the shell's settings would be taken for the user's and given back.
TEST(Signals, StartedInTheBackgroundItWaitsForTheTerminal) {
  Screen screen({24, 80}, {.background = true});
  screen.await_stop();
  screen.continue_in_foreground();
  EXPECT_TRUE(
      screen.walk({{.prompt = "[1 Nickel"}, {.shows = "keV=[122.00]"}}));
  EXPECT_TRUE(screen.restored());
}

TEST(Terminals, OfAnySizeAndKindAreLeftAsTheyWere) {
  using tests::Size;
  for (const Size size :
       {Size{0, 0}, Size{1, 1}, Size{3, 10}, Size{12, 40}, Size{200, 500}}) {
    Screen screen(size);
    screen.type(kKeys.substr(0, 12));
    screen.resize({10, 60});
    screen.type(kKeys.substr(12) + "\n\n\n\n\n\nn\n\n\x04\x04\x04");
    const int status = screen.wait();
    EXPECT_TRUE(status == 0 || status == 2) << size.columns << screen.raw();
    EXPECT_TRUE(screen.restored()) << size.columns;
  }
  const std::string x(100000, 'x');
  const tests::Words hostile = {"TERM=nonesuch",     "EDITOR=" + x,
                                "INPUTRC=/nonesuch", "ZOXUHEPATH=" + x,
                                "ZOXUUTPATH= a b ",  "COLORFILE=" + x};
  const auto run = run_piped("he\n\n\n" + kKeys, {.environment = hostile});
  EXPECT_EQ(run.status, 0) << run.err;
}

TEST(Channels, ClosedOrFullEndTheRunWithAMessage) {
  for (const char* rest : {">/dev/full", ">&-", "<&-", "<.", "2>&- </dev/null",
                           "<&- >&- 2>&-", "<elements.dat", "--help"}) {
    Screen screen({24, 80}, {.rest = rest});
    screen.type("\x04");
    EXPECT_EQ(screen.wait(), 2) << rest << screen.raw();
  }
  Screen screen({24, 80}, {.rest = "</dev/null"});
  EXPECT_EQ(screen.wait(), 2);
  EXPECT_TRUE(has(screen.raw(), "\x1b[0m\r\nFatal error: ")) << "a fresh line";
}

// Readline's movement to the end of a word went on for ever.
TEST(LineEditor, DoesNotHangOnBytesThatAreNoCharacter) {
  const tests::WorkingDirectory files;
  tests::write("inputrc", "set editing-mode vi\n");
  const std::string typed = "\xf4" + std::string(8, '\x8d') + "\x1b" + "0e";
  const auto run = run_piped(
      "10 c\n\n" + typed + "\n\n",
      {.environment = {"INPUTRC=" +
                       std::filesystem::absolute("inputrc").string()}});
  EXPECT_EQ(run.status, 2) << run.out;
  EXPECT_TRUE(has(run.err, "nd of input"));
}

// Some of Readline's commands divided by the columns that there were left.
TEST(LineEditor, DoesNotDivideByZeroOnTwoColumns) {
  Screen screen({24, 2}, {.environment = {"TERM=dumb"}});
  const Step asks{.shows = "\n"};  // whatever it shows
  EXPECT_TRUE(screen.walk({{.types = "5\r\r"},
                           {.shows = ">"},
                           {.types = "\x12"
                                     "C"},
                           asks,
                           {.types = "\r\r"},
                           asks,
                           {.types = "*\r\r"},
                           asks,
                           {.types = "\x04\x04"}}));
  EXPECT_EQ(screen.wait(), 2) << screen.raw();
  EXPECT_TRUE(screen.restored());
}

TEST(Input, WithoutEndIsRefused) {
  const tests::WorkingDirectory data(DATA_DIR);
  EXPECT_CAUSE(
      tests::output_of(std::string(2 << 20, '\0'), attenuation::dialogue),
      "Endless line on standard input");
}

// What a session on the files here shows; nothing where it ends fatally.
std::string session() {
  try {
    return tests::output_of(kKeys, attenuation::dialogue);
  } catch (const base::FatalEnd& end) {
    EXPECT_NE(end.cause(), "end of input");
    return "";
  }
}

TEST(DataFiles, CutOrDamagedGiveNoOtherNumbers) {
  const tests::WorkingDirectory directory;
  std::filesystem::copy(DATA_DIR, ".");
  const std::string expected = session();
  EXPECT_TRUE(has(expected, "transmission="));
  for (const char* file :
       {"elements.dat", "attenuation.coefficients", "dichte.dat"}) {
    const std::string whole = content_of(file);
    const auto with = [&](const std::string& content) {
      tests::write(file, content);
      return session();
    };
    for (std::size_t cut = 0; cut < whole.size(); cut += 37) {
      const std::string shown = with(whole.substr(0, cut));
      EXPECT_TRUE(shown.empty() || shown == expected) << file << cut << shown;
    }
    EXPECT_EQ(with(std::regex_replace(whole, std::regex("\n"), "\r\n")),
              expected);
    EXPECT_EQ(with(std::string(3, '\0') + "\n" + whole), expected);
    for (const char c : {'x', '1', '\n'})
      EXPECT_EQ(with(std::string(10 << 20, c)), "");
    for (const auto make : {mkdir, mkfifo}) {
      std::filesystem::remove(file);
      EXPECT_EQ(make(file, 0700), 0);
      EXPECT_EQ(session(), "") << file;
    }
    std::filesystem::remove(file);
    tests::write(file, whole);
  }
}

}  // namespace
