// No input, file, terminal or signal makes the program crash, hang, or leave
// the terminal in another mode.

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "attenuation/coefficientfile.h"
#include "attenuation/elementdensity.h"
#include "attenuation/elementlist.h"
#include "base/unit.h"
#include "terminal/window.h"
#include "tests/screen.h"
#include "tests/support.h"

namespace {

using tests::Screen;

const std::string kKeys = "5 ES\n\nCu\n\n20\n\n\n5\n\n\n\n0.1\n\nn\n\n";

tests::Options in_data(const std::string& redirect = "") {
  tests::Options options;
  options.directory = DATA_DIR;
  options.redirect = redirect;
  return options;
}

// A fatal end with a report, or none; never a signal, and never for long.
void expect_clean_end(const tests::Outcome& outcome, const std::string& how) {
  EXPECT_TRUE(outcome.status == 0 || outcome.status == 2)
      << how << ": status " << outcome.status << ", signal " << outcome.signal;
  EXPECT_FALSE(outcome.killed) << how;
}

TEST(EndOfInput, EndsTheRunAtEveryRead) {
  for (const char* sample : {"1 N", "2 I", "3 L", "4 A", "5 ES", "6 m", "7 t",
                             "8 N", "9 F", "10 c", "11 0"}) {
    const std::string keys =
        sample + std::string("\n\nhe\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n");
    for (std::size_t cut = 0; cut < keys.size(); ++cut) {
      const auto run =
          tests::run_piped({PROGRAM}, DATA_DIR, {}, keys.substr(0, cut));
      if (run.status == 0) break;
      expect_clean_end(run, keys.substr(0, cut));
      EXPECT_NE(run.err.find("end of input"), std::string::npos) << run.err;
    }
  }
}

// What is awaited: a key, a line, a line in the editor.
void go_to(Screen& screen, int what) {
  ASSERT_TRUE(screen.answer("[1 Nickel foil]", what == 0   ? ""
                                               : what == 1 ? "\r"
                                                           : "5 ES\r"));
  if (what == 2) {
    ASSERT_TRUE(screen.answer("[5 ES", "\r"));
  }
  ASSERT_TRUE(screen.answer(what == 0   ? "Nickel"
                            : what == 1 ? "Photon energy"
                                        : ">",
                            ""));
}

TEST(Signals, EndTheRunWithTheTerminalAsItWas) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    for (int what = 0; what < 3; ++what) {
      Screen screen({PROGRAM}, {24, 80}, in_data());
      go_to(screen, what);
      screen.signal(signal);
      EXPECT_EQ(screen.wait().signal, signal) << what << screen.dump();
      EXPECT_TRUE(
          tests::same_settings(screen.initial_settings(), screen.settings()))
          << signal << " at " << what;
    }
  }
  Screen screen({PROGRAM}, {24, 80}, in_data());
  ASSERT_TRUE(screen.answer("[1 Nickel foil]", "#"));
  EXPECT_EQ(screen.wait().signal, SIGINT) << "# interrupts a menu";
  for (int what = 0; what < 3; ++what) {
    Screen gone({PROGRAM}, {24, 80}, in_data());
    go_to(gone, what);
    gone.hang_up();
    EXPECT_EQ(gone.wait().signal, SIGHUP);
  }
}

TEST(Signals, StoppedAndContinuedItTakesUpSingleKeysAgain) {
  tests::Options options = in_data();
  options.job = true;
  Screen screen({PROGRAM}, {24, 80}, options);
  go_to(screen, 0);
  const termios awaiting = screen.settings();
  for (const int stop : {SIGTSTP, SIGSTOP}) {
    screen.signal(stop);
    ASSERT_TRUE(screen.shows("")) << screen.dump();
    EXPECT_TRUE(screen.stopped());
    if (stop == SIGTSTP) {
      EXPECT_TRUE(
          tests::same_settings(screen.initial_settings(), screen.settings()));
    }
    screen.signal(SIGCONT);
    ASSERT_TRUE(screen.answer("[1 Nickel foil]", ""));
    EXPECT_TRUE(tests::same_settings(awaiting, screen.settings()));
  }
  ASSERT_TRUE(screen.answer("[1 Nickel foil]", tests::kDown));
  EXPECT_TRUE(screen.shows("[2 Iron foil]")) << screen.dump();
}

TEST(Terminals, OfAnySizeAndKindAreLeftAsTheyWere) {
  for (const tests::Size size : {tests::Size{0, 0},
                                 {1, 1},
                                 {3, 10},
                                 {12, 40},
                                 {200, 500},
                                 {24, 132},
                                 {24, 20}}) {
    Screen screen({PROGRAM}, size, in_data());
    screen.type(kKeys.substr(0, 12));
    screen.resize({10, 60});
    screen.type(kKeys.substr(12) + "\n\n\n\n\n\nn\n\n");
    screen.type("\x04\x04\x04");
    expect_clean_end(screen.wait(), std::to_string(size.columns) + " columns");
    EXPECT_TRUE(
        tests::same_settings(screen.initial_settings(), screen.settings()));
  }
  for (const char* variable : {"TERM=", "TERM=nonesuch", "INPUTRC=/nonesuch"}) {
    const auto run = tests::run_piped({PROGRAM}, DATA_DIR, {variable}, kKeys);
    EXPECT_EQ(run.status, 0) << variable << run.err;
  }
  const std::string huge(100000, 'x');
  const auto run = tests::run_piped(
      {PROGRAM}, DATA_DIR,
      {"ZOXUHEPATH=" + huge, "ZOXUUTPATH= a b ", "EDITOR=" + huge,
       "SHELL=", "COLORFILE=" + huge, "PWD=" + huge},
      "he\n\n\n" + kKeys);
  EXPECT_EQ(run.status, 0) << run.err;
}

TEST(Channels, ClosedOrFullEndTheRunWithAMessage) {
  const struct {
    const char* redirect;
    int status;
  } cases[] = {{">/dev/full", 2},   {">&-", 2},          {"</dev/null", 2},
               {"<&-", 2},          {"<.", 2},           {"2>&- </dev/null", 2},
               {"<&- >&- 2>&-", 2}, {"<elements.dat", 2}};
  for (const auto& c : cases) {
    Screen screen({PROGRAM}, {24, 80}, in_data(c.redirect));
    const auto outcome = screen.wait();
    EXPECT_EQ(outcome.status, c.status) << c.redirect << screen.dump();
    EXPECT_FALSE(outcome.killed) << c.redirect;
  }
  EXPECT_EQ(tests::run_piped({PROGRAM, "--help"}, ".", {}, "").status, 2);
}

// Cut anywhere, a file gives what it gives whole, or a fatal end.
TEST(DataFiles, CutAnywhereNeverGiveAnotherNumber) {
  const tests::TemporaryDirectory directory;
  const tests::WorkingDirectory here(directory.path(""));
  const auto cuts_of = [&](const char* file, std::size_t step,
                           const std::function<float()>& number) {
    const std::string whole =
        tests::content_of(std::string(DATA_DIR) + "/" + file);
    directory.write(file, whole);
    const float expected = number();
    int fatal_ends = 0;
    for (std::size_t cut = 0; cut < whole.size(); cut += step) {
      directory.write(file, whole.substr(0, cut));
      try {
        EXPECT_EQ(number(), expected) << file << " cut after " << cut;
      } catch (const base::FatalEnd&) {
        ++fatal_ends;
      }
    }
    EXPECT_GT(fatal_ends, 10);
  };
  cuts_of("attenuation.coefficients", 37, [] {
    const base::UnitCloser closer(base::unit(1));
    base::Text<16> element;
    float atc = 0;
    attenuation::find_element("Iron", element);
    attenuation::attenuation_of("Iron", 14.4F, atc);
    return atc;
  });
  cuts_of("dichte.dat", 37, [] {
    float density = 0;
    tests::output_of("\n\n", [&] {
      terminal::window(1);
      density = attenuation::elementdensity(26);
    });
    return density;
  });
  cuts_of("elements.dat", 37, [] {
    attenuation::ElementList elements;
    attenuation::read_element_list(elements);
    return elements.emolweight(81);
  });
}

TEST(DataFiles, PresetsNeedTheElementsInOrder) {
  const tests::TemporaryDirectory directory;
  directory.write("elements.dat",
                  "\n" + tests::content_of(DATA_DIR "/elements.dat"));
  const auto run =
      tests::run_piped({PROGRAM}, directory.path(""), {}, "9 F\n\n\n\n");
  EXPECT_NE(run.err.find("Record 7 of 'elements.dat' is not N"),
            std::string::npos)
      << run.err;
}

TEST(DataFiles, DamagedInAnyWayComeToACleanEnd) {
  const std::vector<std::string> files = {
      "elements.dat", "attenuation.coefficients", "dichte.dat"};
  const std::string nul(1, '\0');
  for (const std::string& file : files) {
    const std::string whole =
        tests::content_of(std::string(DATA_DIR) + "/" + file);
    std::string cr_lf;
    for (const char c : whole) cr_lf += c == '\n' ? "\r\n" : std::string(1, c);
    const struct {
      const char* damage;
      std::string content;
      int status;
    } cases[] = {{"empty", "", 2},
                 {"CR LF", cr_lf, 0},
                 {"NUL bytes", nul + nul + nul + "\n" + whole, 0},
                 {"a 10 MB line", std::string(10 << 20, 'x') + "\n", 2},
                 {"10 MB of numbers", std::string(10 << 20, '1'), 2}};
    for (const auto& c : cases) {
      const tests::TemporaryDirectory directory;
      for (const std::string& other : files) {
        std::filesystem::copy(DATA_DIR "/" + other, directory.path(other));
      }
      directory.write(file, c.content);
      const auto run =
          tests::run_piped({PROGRAM}, directory.path(""), {}, kKeys);
      EXPECT_EQ(run.status, c.status) << file << ": " << c.damage << run.err;
      EXPECT_FALSE(run.killed);
      std::filesystem::remove(directory.path(file));
      std::filesystem::create_directory(directory.path(file));
      EXPECT_EQ(
          tests::run_piped({PROGRAM}, directory.path(""), {}, kKeys).status, 2)
          << file << " is a directory";
    }
  }
}

}  // namespace
