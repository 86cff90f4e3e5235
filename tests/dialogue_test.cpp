// The program on a terminal of 80 x 24, as its users see it.

#include <algorithm>

#include "base/text.h"
#include "tests/screen.h"

namespace {

using tests::has;
using tests::run_piped;
using tests::Screen;
using tests::Step;

struct Session {
  const char* sample;
  std::vector<Step> prompts;
  std::string mue_rho, density, mu_e;  // as shown
  std::string transmission;            // of 100 mg/cm2
  std::string mm, mg_per_cm2, again;   // a thickness, and its transmission
};
// All are from the fit in Python, each step rounded as the program rounds, and
// math.exp. Without a density there is no thickness in mm.
const Session kSessions[] = {
    // clang-format off
    {"1 N", {{"keV=[122.00]"}}, "  0.304", "  8.908", "  0.271", "0.9700", "0.2", "178.16", "0.9472"},
    {"2 I", {{"keV=[14.40]"}, {"density", "gamma"}}, " 63.891", "  7.640", " 48.813", "0.0017", "0.02", " 15.28", "0.3767"},
    {"3 L", {{"keV=[122.0]"}}, "  3.368", " 11.342", "  3.820", "0.7140", "0.2", "226.84", "0.4658"},
    {"4 A", {{"keV=[14.40]"}}, "  8.974", "  2.700", "  2.423", "0.4076", "0.2", " 54.00", "0.6160"},
    {"5 ES", {{"element [Cu]"}, {"keV=[14.40]"}}, " 82.871", "  8.920", " 73.921", "0.0003", "0.02", " 17.84", "0.2280"},
    {"6 m", {{"keV=[14.40]"}}, " 1.258", " 1.380", " 0.174", "0.8818", "0.2", " 27.60", "0.9659"},
    {"7 t", {{"keV=[14.40]"}}, " 2.343", " 2.200", " 0.515", "0.7911", "0.2", " 44.00", "0.9021"},
    {"8 N", {{"keV=[14.40]"}}, "13.787", " 1.720", " 2.371", "0.2519", "0.2", " 34.40", "0.6223"},
    {"9 F", {{"keV=[14.40]"}}, "13.245", " 1.860", " 2.464", "0.2659", "0.2", " 37.20", "0.6110"},
    {"10 c", {{"[N_2H_8Fe_1S_2O_8H_12O_6]"}, {"g/cm3=[0.00]"}, {"keV=[14.40]"}}, "13.245", " 0.000", " 0.000", "0.2659", "", "  0.00", "1.0000"},
    {"11 0", {{"[N_2H_8Fe_1S_2O_8H_12O_6]"}, {"g/cm3=[1.86]"}, {"keV=[122.01]"}, {"keV=[136.46]"}}, "", "", "", "0.9829", "0.2", " 37.20", "0.9936"},
    // clang-format on
};

std::string mass(const std::string& mg_per_cm2) {
  return "       mg/cm2=    " + mg_per_cm2;
}

TEST(Dialogue, EverySampleIsWorkedThroughAndRepeated) {
  for (const Session& s : kSessions) {
    SCOPED_TRACE(s.sample);
    const std::string coefficients =
        s.density.empty()
            ? "122keV:      0.0173 136keV:      0.0162"
            : " mue/rho=" + s.mue_rho + " [cm^2/g]  density=" + s.density +
                  " [g/cm^3]  mu_e=" + s.mu_e + " [mm^-1]";
    const std::string again = "new value for the thickness [y]";
    const std::string sum = " transmission=    ";
    Screen screen;
    ASSERT_TRUE(screen.walk({{"select (help:he)", s.sample}}));
    ASSERT_TRUE(screen.walk(s.prompts));
    if (!s.mm.empty()) {
      ASSERT_TRUE(screen.walk({{"[thickness mg/cm2]"}}));
    }
    ASSERT_TRUE(screen.walk({{"mg/cm2=[100.00]"},
                             {.shows = mass("100.00")},
                             {.shows = sum + s.transmission},
                             {.shows = coefficients},
                             {again}}));
    if (s.mm.empty()) {
      ASSERT_TRUE(screen.walk({{"thickness mg/cm2=[100.00]", "0"}}));
    } else {
      ASSERT_TRUE(screen.walk({{"[thickness mg/cm2]", "in"},
                               {"thickness in mm=[0.1250]", s.mm},
                               {again},
                               {"[thickness in mm]"},
                               {"mm=[0.1250]"}}));
    }
    ASSERT_TRUE(screen.walk({{.shows = mass(s.mg_per_cm2)},
                             {.shows = sum + s.again},
                             {again, "n"}}));
    EXPECT_EQ(screen.wait(), 0);
    EXPECT_TRUE(screen.restored());
  }
}

TEST(Dialogue, StartsWithBannerAndMenu) {
  const std::string edge(77, '-');
  Screen screen;
  ASSERT_TRUE(screen.walk({{.shows = "[1 Nickel foil]"}}));
  EXPECT_EQ(
      screen.rows(1, 12),
      " The program uses the tables:\n X-Ray Mass Attenuation Coefficients\n"
      " published by National Institute of Standards and Technology (NIST)\n"
      " by J. H. Hubbell, S. M. Seltzer and M. J. Berger\n and\n"
      " Das Periodensystem der Elemente online:Dichte der Elemente im"
      " Festzustand\n"
      " with densities from handbooks, NIST and X-ray lattice constants\n"
      "\n\n\n" +
          edge.substr(47) + "select (help:he)" + edge.substr(46) +
          "\n[1 Nickel foil]\n");
  EXPECT_EQ(screen.rows(22, 24),
            " 11 0.111(136.5keV), 0.889(122.0keV)\n" + edge + "\n\n");
  // The highlight walks around. The first key scrolls the screen by a line;
  // from then on the menu stays where it is.
  ASSERT_TRUE(screen.walk({{.types = "\x1b[A"},
                           {.shows = "[11 0.11"},
                           {.types = "Fe\r"},
                           {.shows = "[8 Na_2Fe[(CN)_5NO]2H_2O]"}}));
  EXPECT_EQ(screen.rows(22, 22), edge + "\n");
  // Left without a choice, the menu comes again, as at the start.
  EXPECT_TRUE(screen.walk({{.types = "q\r"}, {.shows = "[1 Nickel foil]"}}));
}

// The same keys, typed ahead, piped in, or where numbers have a comma.
TEST(Dialogue, KeysTypedAheadAndPipedReachWhoeverAsks) {
  const auto keys =
      std::string("5 ES\n\nFe\n\n59.54\n\n\n\n50\n\ny\n\nin\n\n0.1\n\nn\n\n");
  const auto piped = run_piped(keys);
  EXPECT_EQ(piped.status, 0) << piped.out << piped.err;
  // Behind the symbol RET comes as the line editor left the terminal.
  Screen screen;
  ASSERT_TRUE(screen.walk(
      {{"[1 Nickel foil]", "5 ES"},
       {.shows = "symbol"},
       {.types = "Fe\r\r59.54\r" + keys.substr(keys.find("59.54") + 6)}}));
  EXPECT_EQ(screen.wait(), 0) << screen.raw();
  // In Python: 1.2298 cm2/g at 59.54 keV.
  for (const char* line :
       {" mue/rho=  1.230", "thickness mg/cm2=[50.00]",
        "       mg/cm2=     50.00", "mm=[0.1000]", "mg/cm2=     78.74"}) {
    EXPECT_TRUE(has(piped.out, line));
    EXPECT_TRUE(has(screen.raw(), line));
  }
  EXPECT_TRUE(has(piped.out, std::string(80, ' ') + "\n")) << "erases a line";
  EXPECT_EQ(run_piped(keys, {.environment = {"LC_ALL=de_DE.UTF-8"}}).out,
            piped.out);
}

TEST(Dialogue, FatalEndsTellWhatToDo) {
  // Formulas of twelve components and of one more.
  const std::string twelve = "C_1H_1O_1N_1S_1P_1F_1K_1I_1V_1Y_1W_1";
  const struct {
    std::string keys, told;
  } cases[] = {
      {"5 ES\n\ncu\n\n", "unknown element symbol \"cu\": symbols are case-"},
      {"10 c\n\nH2O\n\n1\n\n",
       "cannot read the formula \"H2O\" at \"H2O\": type H_2O_1 Fatal "
       "error: "},
      {"10 c\n\nxyz\n\n1\n\n", "write symbol, underscore and count"},
      {"10 c\n\nq\n1\n\n", "the question for it was left without an answer"},
      {"2 I\n\n1.2\n\n\n",
       "usable table, which runs from 1.253 keV to 20000 keV"},
      {"6 m\n\n3.e4\n\n", "Carbon: the photon energy 30000 keV is outside"},
      {"2 I\n\n\n*\n", "no density was chosen: choose a modification"},
      {"10 c\n\n" + twelve + "B_1\n\n1\n\n",
       "at \"B_1\": a formula has at most 12"}};
  for (const auto& [keys, told] : cases) {
    const auto run = run_piped(keys);
    EXPECT_EQ(run.status, 2) << keys << run.out;
    std::string unwrapped = run.err;
    std::replace(unwrapped.begin(), unwrapped.end(), '\n', ' ');
    EXPECT_TRUE(has(unwrapped, told));
    EXPECT_TRUE(has(unwrapped, "attenuation::dialogue"));  // the backtrace
    EXPECT_LT(unwrapped.find(told), unwrapped.find(" At ")) << "advice first";
  }
  EXPECT_EQ(run_piped("2 I\n\n\n\n\n\n").err,
            "End of input: the session ends here.\n");
  EXPECT_EQ(run_piped("10 c\n\n" + twelve + "\n\n\n\n\nn\n\n").status, 0);
  const auto run = run_piped("", {.directory = "/dev"});
  EXPECT_TRUE(has(run.err, "Cannot open file 'elements.dat': No such file"));
  EXPECT_TRUE(has(run.err, "looked in /dev"));
}

// On standard error: the numbers on standard output stay what they are.
TEST(Dialogue, NotesNumbersThatAreOfAnotherSample) {
  const struct {
    std::string keys, told;
  } cases[] = {
      {"10 c\n\nFe_12\n\n\n\n\nn\n\n",
       "this is not Fe_12 but Fe_122: stop (Ctrl-C) and type Fe_9Fe_3"},
      {"10 c\n\nSiO2\n\n\n\n\nn\n\n",
       "this is not SiO2 but Si_2: stop (Ctrl-C) and type Si_1O_2"},
      {"10 c\n\nC_1x2O_1\n\n\n\n\nn\n\n",
       "the formula C_1x2O_1 is read as C_12O_1: if it is not meant, stop"},
      {"10 c\n\nC_0\n\n\n\n\nn\n\n", "no atoms are counted, so there is no"},
      {"10 c\n\nPb_1\n\n\n3\n\n\nn\n\n",
       "mue/rho = 1941.39 cm2/g is too wide for its field"},
      {"10 c\n\nC_1\n\n-1\n\n\n\nn\n\n", "no sample has a negative density"},
      {"5 ES\n\nIron\n\n\n\n\nn\n\n",
       "of Iron only Ir counts, iridium: stop (Ctrl-C) and type Fe"},
      {"6 m\n\n122,06\n\n\n\nn\n\n",
       "no number in '122,06' (decimals take a point): the question stands"},
      {"6 m\n\n5 6\n\n\n\nn\n\n",
       "more than one number in '5 6': the question stands"},
      {"6 m\n\n\n\n1.e39\n\nn\n\n",
       "no number can be read in ***************: it"},
      {"6 m\n\n\n\n-5\n\nn\n\n", "no sample has a negative areal mass"}};
  for (const auto& [keys, told] : cases) {
    const auto run = run_piped(keys);
    EXPECT_EQ(run.status, 0) << keys << run.err;
    EXPECT_TRUE(run.err.starts_with("Note: " + told)) << run.err;
  }
  EXPECT_EQ(run_piped(cases[4].keys).err, "Note: " + cases[4].told + "\n");
  const tests::WorkingDirectory own;
  std::filesystem::copy(DATA_DIR, ".");
  const std::string list = tests::content_of("elements.dat");
  const auto weight = list.find("12.011");
  for (const auto& [content, told] :
       {std::pair("\n" + list, "dat:6: the sample takes B, which"),
        std::pair(std::string(list).replace(weight, 6, 6, ' '),
                  "dat:6: no molar weight for C")}) {
    tests::write("elements.dat", content);
    const auto run = run_piped("7 t\n\n\n\n\nn\n\n",
                               {.directory = std::filesystem::current_path()});
    EXPECT_TRUE(has(run.err, told));
  }
  Screen narrow({24, 34});
  EXPECT_TRUE(narrow.walk(
      {{"", "2 I"}, {"keV=[14.40]"}, {}, {.shows = "has cut the density"}}));
}

// Praseodymium: the list and the field of a compound's name hold eleven
// letters.
TEST(Dialogue, ANameOfTwelveLettersIsFoundAsElementAndInACompound) {
  const auto element = run_piped("5 ES\n\nPr\n\n60\n\n\n\n\nn\n\n");
  const auto compound = run_piped("10 c\n\nPr_1\n\n6.77\n\n60\n\n\n\nn\n\n");
  const auto coefficient = [](const std::string& shown) {
    return shown.substr(std::min(shown.find("mue/rho="), shown.size()), 15);
  };
  EXPECT_EQ(coefficient(element.out), "mue/rho=  9.977");
  EXPECT_EQ(coefficient(compound.out), "mue/rho= 9.977 ");
}

// The question for the energy of a compound takes 80 columns on any terminal,
// the others what there is; a menu is as wide as the terminal until help has
// measured it.
TEST(Dialogue, WidthsAreThoseOfTheTerminalButForACompoundsEnergy) {
  Screen element({24, 12}), compound({24, 12}), menu({24, 200});
  EXPECT_TRUE(element.walk({{.types = "1 N\r\r"}, {.shows = "=[122.00]"}}));
  EXPECT_TRUE(has(element.raw(), "\nPhoton energ=[122.00]\r"));
  EXPECT_TRUE(compound.walk({{.types = "6 m\r\r"}, {.shows = ".40]"}}));
  EXPECT_TRUE(has(compound.raw(), "\nPhoton energy in keV=[14.40]\r"));
  const std::string edge(127, '-');
  EXPECT_TRUE(menu.walk({{.shows = edge + "---\n"}, {.types = "he\r"}}));
  EXPECT_TRUE(menu.walk({{"", "q"}, {.shows = "\n" + edge + "\n"}}));
}

// The recipe of the manual, for whoever pipes sessions.
TEST(Dialogue, ScriptsFindEveryElementInTheSameWay) {
  const std::string list = tests::content_of(DATA_DIR "/elements.dat");
  const std::string recipe = "Sn_1 '' 0 '' 23.87 '' 100 '' n ''";
  EXPECT_TRUE(has(tests::content_of(DATA_DIR "/attenuation.help"), recipe));
  for (std::size_t line = 0; line < list.size();
       line = list.find('\n', line) + 1) {
    const std::string symbol(base::Text<2>(list.substr(line + 8)).trimmed());
    const auto run =
        run_piped("comp\n\n" + symbol + "_1\n\n0\n\n23.87\n\n100\n\nn\n\n");
    EXPECT_EQ(run.status, 0) << symbol << run.err;
    EXPECT_TRUE(has(run.out, "\n transmission=    ")) << symbol;
  }
}

// The first "```text" block of the README is this session's screen.
TEST(Dialogue, ReadmeShowsARealSession) {
  const std::string readme = tests::content_of(README), mark = "\n```text\n";
  const auto begin = readme.find(mark) + mark.size();
  Screen screen({50, 80});
  ASSERT_TRUE(screen.walk({{"select (help:he)", "2 I"},
                           {"keV=[14.40]", "59.54"},
                           {"density of the modifications"},
                           {"[thickness mg/cm2]", "in"},
                           {"mm=[0.1250]", "0.5"},
                           {"[y]", "n"}}));
  EXPECT_EQ(screen.wait(), 0);
  std::string shown = screen.rows(1, 50);
  shown.erase(0, shown.rfind('\n', shown.find("select")) + 1);
  shown.resize(shown.find_last_not_of('\n') + 2);
  EXPECT_EQ(readme.substr(begin, readme.find("```", begin) - begin), shown);
}

}  // namespace
