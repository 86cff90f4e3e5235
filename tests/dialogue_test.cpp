// The program on a terminal of 80 x 24, as its users see it.

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "tests/screen.h"
#include "tests/support.h"

namespace {

using tests::kReturn;
using tests::Screen;

const std::string kEnter(kReturn);

tests::Options in_data() {
  tests::Options options;
  options.directory = DATA_DIR;
  options.environment = {"ZOXUHEPATH=" DATA_DIR};
  return options;
}

struct Step {
  std::string prompt, keys;
};

// Types `keys` at each prompt and confirms what was typed.
testing::AssertionResult walk(Screen& screen, const std::vector<Step>& steps) {
  for (const Step& step : steps) {
    if (!screen.answer(step.prompt, step.keys + kEnter) ||
        (!step.keys.empty() && !screen.answer("", kEnter))) {
      return testing::AssertionFailure() << "at '" << step.prompt << "'\n"
                                         << screen.dump();
    }
  }
  return testing::AssertionSuccess();
}

// Coefficients from the tables by the fit in Python, each step rounded as the
// program rounds; transmissions from them by math.exp.
struct Session {
  std::string choose;
  std::vector<Step> set_up;
  std::string coefficient;         // blank where none is reported
  std::vector<std::string> first;  // 100 mg/cm2
  std::string mm;                  // a second thickness; none without menu
  std::vector<std::string> second;
};

const std::string kFas = "N_2H_8Fe_1S_2O_8H_12O_6";

const Session kSessions[] = {
    {"1 N",
     {{"Photon energy in keV=[122.00]", ""}},
     " mue/rho=  0.305 [cm^2/g]  density=  8.908 [g/cm^3]  mu_e=  0.272 "
     "[mm^-1]",
     {" transmission=    0.9700"},
     "0.2",
     {"       mg/cm2=    178.16", " transmission=    0.9471"}},
    {"2 I",
     {{"Photon energy in keV=[14.40]", ""}, {"density", "gamma"}},
     " mue/rho= 63.938 [cm^2/g]  density=  7.640 [g/cm^3]  mu_e= 48.849 "
     "[mm^-1]",
     {" transmission=    0.0017"},
     "0.02",
     {"       mg/cm2=     15.28", " transmission=    0.3764"}},
    {"3 L",
     {{"Photon energy in keV=[122.0]", ""}},
     " mue/rho=  3.352 [cm^2/g]  density= 11.342 [g/cm^3]  mu_e=  3.802 "
     "[mm^-1]",
     {" transmission=    0.7152"},
     "0.2",
     {"       mg/cm2=    226.84", " transmission=    0.4675"}},
    {"4 A",
     {{"Photon energy in keV=[14.40]", ""}},
     " mue/rho=  8.979 [cm^2/g]  density=  2.700 [g/cm^3]  mu_e=  2.424 "
     "[mm^-1]",
     {" transmission=    0.4074"},
     "0.2",
     {"       mg/cm2=     54.00", " transmission=    0.6158"}},
    {"5 ES",
     {{"symbol for the element [Cu]", ""},
      {"Photon energy in keV=[14.40]", ""}},
     " mue/rho= 82.783 [cm^2/g]  density=  8.920 [g/cm^3]  mu_e= 73.843 "
     "[mm^-1]",
     {" transmission=    0.0003"},
     "0.02",
     {"       mg/cm2=     17.84", " transmission=    0.2284"}},
    {"6 m",
     {{"Photon energy in keV=[14.40]", ""}},
     " mue/rho= 1.259 [cm^2/g]  density= 1.380 [g/cm^3]  mu_e= 0.174 [mm^-1]",
     {" transmission=    0.8817"},
     "0.2",
     {"       mg/cm2=     27.60", " transmission=    0.9658"}},
    {"7 t",
     {{"Photon energy in keV=[14.40]", ""}},
     " mue/rho= 2.345 [cm^2/g]  density= 2.200 [g/cm^3]  mu_e= 0.516 [mm^-1]",
     {" transmission=    0.7909"},
     "0.2",
     {"       mg/cm2=     44.00", " transmission=    0.9020"}},
    {"8 N",
     {{"Photon energy in keV=[14.40]", ""}},
     " mue/rho=13.798 [cm^2/g]  density= 1.720 [g/cm^3]  mu_e= 2.373 [mm^-1]",
     {" transmission=    0.2516"},
     "0.2",
     {"       mg/cm2=     34.40", " transmission=    0.6221"}},
    {"9 F",
     {{"Photon energy in keV=[14.40]", ""}},
     " mue/rho=13.260 [cm^2/g]  density= 1.860 [g/cm^3]  mu_e= 2.466 [mm^-1]",
     {" transmission=    0.2655"},
     "0.2",
     {"       mg/cm2=     37.20", " transmission=    0.6106"}},
    {"10 c",
     {{"formula of the compound [" + kFas + "]", ""},
      {"density of the compound g/cm3=[0.00]", ""},
      {"Photon energy in keV=[14.40]", ""}},
     " mue/rho=13.260 [cm^2/g]  density= 0.000 [g/cm^3]  mu_e= 0.000 [mm^-1]",
     {" transmission=    0.2655"},
     "",
     {}},
    {"11 0",
     {{"formula of the compound [" + kFas + "]", ""},
      {"density of the compound g/cm3=[1.86]", ""},
      {"Photon energy in keV=[122.01]", ""},
      {"Photon energy in keV=[136.46]", ""}},
     "",
     {"122keV:      0.0173 136keV:      0.0162", " transmission=    0.9829"},
     "0.2",
     {"       mg/cm2=     37.20", "122keV:      0.0064 136keV:      0.0060",
      " transmission=    0.9936"}},
};

TEST(Dialogue, EverySampleIsWorkedThroughAndRepeated) {
  for (const Session& session : kSessions) {
    SCOPED_TRACE(session.choose);
    Screen screen({PROGRAM}, {24, 80}, in_data());
    ASSERT_TRUE(walk(screen, {{"select (help:he)", session.choose}}));
    ASSERT_TRUE(walk(screen, session.set_up));
    const bool has_menu = !session.mm.empty();
    if (!session.coefficient.empty()) {
      EXPECT_TRUE(screen.shows(session.coefficient)) << screen.dump();
    }
    if (has_menu) {
      ASSERT_TRUE(walk(screen, {{"[thickness mg/cm2]", ""}}));
    }
    ASSERT_TRUE(walk(screen, {{"thickness mg/cm2=[100.00]", ""}}));
    EXPECT_TRUE(screen.shows("       mg/cm2=    100.00")) << screen.dump();
    for (const std::string& line : session.first) {
      EXPECT_TRUE(screen.shows(line)) << screen.dump();
    }
    ASSERT_TRUE(walk(screen, {{"new value for the thickness [y]", ""}}));
    if (has_menu) {
      ASSERT_TRUE(walk(screen, {{"[thickness mg/cm2]", "in"},
                                {"thickness in mm=[0.1250]", session.mm},
                                {"new value for the thickness [y]", ""},
                                {"[thickness in mm]", ""},
                                {"thickness in mm=[0.1250]", ""}}));
    } else {
      ASSERT_TRUE(walk(screen, {{"thickness mg/cm2=[100.00]", "0"}}));
      EXPECT_TRUE(screen.shows(" transmission=    1.0000")) << screen.dump();
    }
    for (const std::string& line : session.second) {
      EXPECT_TRUE(screen.shows(line)) << screen.dump();
    }
    ASSERT_TRUE(walk(screen, {{"new value for the thickness [y]", "n"}}));
    EXPECT_EQ(screen.wait().status, 0);
    EXPECT_TRUE(
        tests::same_settings(screen.initial_settings(), screen.settings()));
  }
}

TEST(Dialogue, StartsWithBannerAndMenu) {
  Screen screen({PROGRAM}, {24, 80}, in_data());
  ASSERT_TRUE(screen.shows(24, "")) << screen.dump();
  const std::vector<std::string> rows = {
      " The program uses the tables:",
      " X-Ray Mass Attenuation Coefficients",
      " published by National Institute of Standards and Technology (NIST)",
      " by J. H. Hubbell, S. M. Seltzer and M. J. Berger",
      " and",
      " Das Periodensystem der Elemente online:Dichte der Elemente im"
      " Festzustand",
      " with densities from handbooks, NIST and X-ray lattice constants",
      "",
      "",
      "",
      "------------------------------select (help:he)-----------------------"
      "--------",
      "[1 Nickel foil]",
      " 2 Iron foil",
      " 3 Lead shielding",
      " 4 Aluminium foil",
      " 5 ES: element symbol",
      " 6 mylar C_10H_8O_4",
      " 7 teflon C_2F_4",
      " 8 Na_2Fe[(CN)_5NO]2H_2O",
      " 9 FAS",
      " 10 compound",
      " 11 0.111(136.5keV), 0.889(122.0keV)",
      std::string(77, '-'),
      ""};
  for (int row = 1; row <= 24; ++row) {
    EXPECT_EQ(screen.row(row), rows[static_cast<std::size_t>(row - 1)]) << row;
  }
  EXPECT_TRUE(screen.red(12, 2));
  EXPECT_FALSE(screen.red(13, 2));
  EXPECT_EQ(screen.cursor(), (std::pair{24, 1}));

  // The highlight walks around. The first key scrolls the screen by a line;
  // from then on the menu stays where it is.
  ASSERT_TRUE(screen.answer("[1 Nickel foil]", tests::kUp));
  EXPECT_TRUE(screen.shows(21, "[11 0.111(136.5keV), 0.889(122.0keV)]"))
      << screen.dump();
  EXPECT_TRUE(screen.red(21, 2));
  ASSERT_TRUE(screen.answer("[11", "Fe\r"));
  EXPECT_TRUE(screen.shows("[8 Na_2Fe[(CN)_5NO]2H_2O]")) << screen.dump();
  EXPECT_EQ(screen.row(22), std::string(77, '-'));
  // Left without a choice, the menu comes again, as at the start.
  ASSERT_TRUE(screen.answer("[8", "q\r"));
  EXPECT_TRUE(screen.answer("[1 Nickel foil]", "")) << screen.dump();
}

// The same keys, typed at prompts, typed ahead, or piped in.
TEST(Dialogue, KeysTypedAheadAndPipedReachWhoeverAsks) {
  const std::string keys =
      "5 ES\n\nFe\n\n59.54\n\n\n\n50\n\ny\n\nin\n\n0.1\n\nn\n\n";
  // In Python: 1.2283 cm2/g at 59.54 keV.
  const std::vector<std::string> expected = {
      " mue/rho=  1.228", "thickness mg/cm2=[50.00]",
      "       mg/cm2=     50.00", "thickness in mm=[0.1000]",
      "       mg/cm2=     78.74"};
  const auto piped = tests::run_piped({PROGRAM}, DATA_DIR, {}, keys);
  EXPECT_EQ(piped.status, 0) << piped.out << piped.err;
  EXPECT_EQ(piped.err, "");
  Screen screen({PROGRAM}, {24, 80}, in_data());
  screen.type(keys);
  EXPECT_EQ(screen.wait().status, 0) << screen.dump();
  for (const std::string& line : expected) {
    EXPECT_NE(piped.out.find(line), std::string::npos) << line << piped.out;
    EXPECT_NE(screen.raw().find(line), std::string::npos) << line;
  }
  const auto locale = tests::run_piped(
      {PROGRAM}, DATA_DIR, {"LC_ALL=de_DE.UTF-8", "LANG=de_DE.UTF-8"}, keys);
  EXPECT_EQ(locale.out, piped.out);
}

// Each ends with a line that tells what to do.
TEST(Dialogue, FatalEndsTellWhatToDo) {
  const struct {
    const char* keys;
    const char* cause;
    const char* advice;
  } cases[] = {
      {"5 ES\n\ncu\n\n", "Index '83' of dimension 1 of array 'es'",
       "unknown element symbol \"cu\": symbols are case-sensitive"},
      {"10 c\n\nH2O\n\n1\n\n", "Index '83' of dimension 1 of array 'es'",
       "cannot read the formula \"H2O\" at \"H2O\""},
      {"10 c\n\nH_2O\n\n1\n\n", "A count is missing",
       "cannot read the formula \"H_2O\": write symbol, underscore and count"},
      {"10 c\n\nq\n1\n\n", "array 'es'",
       "the question for it was left without an answer"},
      {"2 I\n\n1.2\n\n\n", "Index '0' of dimension 1 of array 'xi'",
       "Iron: the photon energy 1.2 keV is outside the usable table, which runs"
       " from 1.5 keV to 20000 keV"},
      {"6 m\n\n3.e4\n\n", "array 'xi'",
       "Carbon: the photon energy 30000 keV is outside the usable table"},
      {"2 I\n\n\n*\n", "Index '0' of dimension 1 of array 'queryar'",
       "no density was chosen: choose a modification with RET"},
      {"1 N\n\n", "end of input", ""},
  };
  for (const auto& c : cases) {
    const auto run = tests::run_piped({PROGRAM}, DATA_DIR, {}, c.keys);
    EXPECT_EQ(run.status, 2) << c.keys << run.out;
    EXPECT_NE(run.err.find(c.cause), std::string::npos) << run.err;
    EXPECT_NE(run.err.find(c.advice), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("attenuation::dialogue"), std::string::npos)
        << "no backtrace: " << run.err;
  }
  const tests::TemporaryDirectory empty;
  const auto run = tests::run_piped({PROGRAM}, empty.path(""), {}, "");
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("Cannot open file 'elements.dat'"), std::string::npos);
  EXPECT_NE(run.err.find("looked in " + empty.path("").substr(0, 10)),
            std::string::npos);
}

// The first "```text" block of the README is this session's screen.
TEST(Dialogue, ReadmeShowsARealSession) {
  std::string transcript;
  std::ifstream readme(README);
  bool inside = false;
  for (std::string line; std::getline(readme, line);) {
    if (inside && line == "```") break;
    if (inside) transcript += line + "\n";
    if (line == "```text") inside = true;
  }
  Screen screen({PROGRAM}, {50, 80}, in_data());
  ASSERT_TRUE(walk(screen, {{"select (help:he)", "2 I"},
                            {"Photon energy in keV=[14.40]", "59.54"},
                            {"density of the modifications", ""},
                            {"[thickness mg/cm2]", "in"},
                            {"thickness in mm=[0.1250]", "0.5"},
                            {"new value for the thickness [y]", "n"}}));
  EXPECT_EQ(screen.wait().status, 0);
  std::string shown;
  bool begun = false;
  for (int row = 1; row <= 50; ++row) {
    begun =
        begun || screen.row(row).find("select (help:he)") != std::string::npos;
    if (begun) shown += screen.row(row) + "\n";
  }
  shown.resize(shown.find_last_not_of('\n') + 2);
  EXPECT_EQ(transcript, shown);
}

}  // namespace
