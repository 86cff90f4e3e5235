// Planners, spectra and figures as they are typed in a shell.

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/support.h"

namespace {

using tests::has;

struct Ran {
  std::string out, err;
  int status;
};

// By bash in an empty directory, with spectra of two lines, a descending one
// and one that begins below the tables.
Ran shell(const std::string& command) {
  const tests::WorkingDirectory here;
  tests::write("two", "keV photons\n30 1\n60 1\n");
  tests::write("falling", "60 1\n30 1\n");
  tests::write("soft", "0.5 1\n30 1\n");
  tests::write("command", "attenuate() { " ATTENUATE " \"$@\"; }\n" + command);
  const int status = std::system(
      "env -i PATH=/usr/bin:/bin LC_ALL=C.UTF-8 bash command "
      "> out 2> err < /dev/null");
  return {tests::content_of("out"), tests::content_of("err"),
          WEXITSTATUS(status)};
}

nlohmann::json answer(const std::string& words) {
  const Ran ran = shell("attenuate " + words + " --json --digits 8");
  EXPECT_EQ(ran.status, 0) << words << '\n' << ran.err;
  return nlohmann::json::parse(ran.out, nullptr, false);
}

TEST(Plan, NumbersForPrograms) {
  const struct {
    const char* words;
    const char* key;
    double value, tolerance;  // relative
  } cases[] = {
      {"absorber alpha-iron --f 0.8 --lines sextet", "best_mg_cm2", 16, 0.03},
      {"absorber Fe2O3 --f 0.8 --lines 3:2:1:1:2:3 --background 1",
       "best_mg_cm2", 16, 0.03},
      // A holder that takes half of the line doubles the background's share:
      // 0.2 mm of aluminium at 14.41 keV have a mu x of 0.47.
      {"absorber Fe2O3 --f 0.8 --lines sextet --background 1 + Al 0.2mm",
       "best_mg_cm2", 15.6, 0.03},
      {"absorber hematite", "f", 0.844, 1e-9},
      {"absorber Fe --alpha 8.2 --disc 13mm", "sigma0_cm2", 2.56e-18, 2e-3},
      {"absorber '0.001% Fe // BN' --f 0.8 --background inf", "mu_x", 1.0,
       0.01},
      // The thin limit: hardly any resonant nuclei.
      {"absorber '0.001% Fe // BN' --f 0.8", "mu_x", 2.0, 0.01},
      {"absorber SnO2 --isotope 119Sn --f 0.5", "sigma0_cm2", 1.417e-18, 1e-3},
      {"xafs Fe --edge Fe:K", "absorption_mg_cm2", 2600 / 400.8, 3e-3},
      {"xafs Fe --edge Fe:K --mux 2.557 7.2", "energy_keV", 7.2, 1e-9},
      // Two exponentials; the light one passes longer.
      {"Al 2mm --spectrum two", "mean_keV", 45, 1e-9},
      {"Al T=0.5 --spectrum two", "transmission_photons", 0.5, 1e-7},
      {"Al --spectrum <(printf '20 5')", "homogeneity", 1, 1e-7},
  };
  for (const auto& c : cases) {
    const auto json = answer(c.words);
    ASSERT_TRUE(json.contains(c.key)) << c.words << json;
    EXPECT_NEAR(json[c.key], c.value, c.tolerance * c.value) << c.words;
  }
  // At mu R of 1 the three transmissions of a cylinder are far apart.
  const auto row =
      answer("capillary Fe@10 --packing 0.5 --diameter 0.1mm 14.41")["rows"][0];
  const double mu_r = 63.7155 * 5 * 0.005;
  EXPECT_NEAR(row["mu_r"], mu_r, 1e-3);
  EXPECT_NEAR(row["transmission_axis"], std::exp(-2 * mu_r), 1e-3);
  EXPECT_LT(row["transmission_axis"], row["transmission_section"]);
  EXPECT_LT(row["transmission_section"], row["transmission_width"]);
}

TEST(Plan, RefusesWhatHasNoAnswer) {
  const struct {
    const char* words;
    const char* error;
  } cases[] = {
      {"absorber Fe2O3",
       "error: no recoil-free fraction is known for Fe2O3\n  Fe2O3\n"
       "hint: --f with a number; at room temperature hematite 0.844, "
       "maghemite 0.814\n"},
      {"absorber magnetite", "no recoil-free fraction is known for magnetite"},
      {"absorber SnO2", "holds no iron (57Fe)"},
      {"absorber Fe 14.4", "the energy is that of the transition"},
      {"absorber Fe --isotope 57Co", "no transition of '57Co' is known"},
      {"absorber Gd --isotope 155Gd@95 --f 1", "the next is 86.5463 keV"},
      {"absorber Fe --isotope 57Fe@x", "'x' is not a number"},
      {"absorber Fe --f 1.2", "--f 1.2 is not from 0.001 to 1"},
      {"absorber Fe --background nan", "--background takes a number"},
      {"absorber Fe --lines 3:0:1", "--lines 0 is not from"},
      {"absorber Fe --disc 13", "unit"},
      {"absorber Fe + Al", "Fe and Al have no thickness"},
      {"absorber", "no material given"},
      {"xafs Fe2O3", "no edge given"},
      {"xafs Fe2O3 --edge Fe:K 7.1",
       "7.1 keV is not above the edge (7.112 keV)\n  Fe2O3 7.1\n        ^\n"},
      {"xafs Fe2O3 --edge Fe:L3", "the tables have no edge Fe:L3"},
      {"xafs Cu --edge Fe:K", "Cu holds no iron"},
      {"xafs Fe --edge Fe:K --diluent BN", "--diluent BN has no ratio"},
      {"capillary Fe2O3 --diameter 1mm 17", "needs a density"},
      {"capillary Fe 17", "no diameter given"},
      {"capillary Fe --diameter 1mm --packing 1.5 17", "--packing 1.5"},
      {"capillary Fe --diameter 1mm", "no energy given"},
      {"capillary Fe --diameter 1mm 5:30:1e-9", "more than"},
      {"Al 2mm --spectrum none", "cannot read none: No such file"},
      {"Al 2mm --spectrum .", ". is a directory"},
      {"Al 2mm --spectrum falling",
       "falling: line 2: the energies do not rise"},
      {"Al 2mm --spectrum soft", "soft: 0.5 keV is below the tables"},
      {"Al 2mm --spectrum /dev/zero", "line 1: binary data"},
      {"Al 2mm 14 --spectrum two", "--spectrum stands for the energies"},
      {"Al --spectrum <(printf '\\377\\001 1')", "line 1: '"},
      {"xafs Fe 25um --edge Fe:K",
       "the sample is planned without a thickness of its own\n  Fe 25um\n"
       "     ^\nhint: without 25um\n"},
      {"capillary Fe 1mm --diameter 1mm 17", "hint: without 1mm"},
      {"capillary Fe --diameter 1mm 7.112 --strict", "the K edge of iron"},
      {"capillary Cr2O3@5.2 --diameter 1mm 8 --strict", "chromium, 6.2 to 15"},
      {"absorber hematite --weight energy", "a planner takes no --weight"},
      {"Fe 1um --spectrum <(printf '7 1\n8 2') --strict", "edges of iron"},
      {"Al --spectrum two --explain", "--spectrum takes no --explain"},
      {"Fe 7.112 --plot --strict", "the K edge of iron"},
      {"Fe 7.112 --svg f.svg --strict; s=$?; [ ! -e f.svg ] && (exit $s)",
       "the K edge of iron"},
      {"Fe 14 --svg - --json", "--svg - has standard output to itself"},
      {"Fe 5:30:1 --beside Xx --plot", "'Xx' is not an element\n  Xx\n  ^\n"},
      {"materials --svg x.svg", "this list takes no --svg"},
      {"Fe 14 --beside Pb", "--beside adds to a figure"},
      {"Fe 5:30:1 --beside 'Pb 1mm' --plot", "differ in what they ask"},
      {"Fe 1um 14 --plot --csv", "--plot stands in place of text"},
      {"Fe 1um 5:30:1 --svg none/x.svg", "cannot write none/x.svg"},
      {"Fe 1um 152Eu --plot", "cannot be told apart"},
  };
  for (const auto& c : cases) {
    const Ran ran = shell("attenuate " + std::string(c.words));
    EXPECT_EQ(ran.status, 2) << c.words;
    EXPECT_EQ(ran.out, "") << c.words;
    EXPECT_TRUE(has(ran.err, c.error)) << c.words;
  }
}

TEST(Plan, FiguresFitAndAreValid) {
  for (const char* const words :
       {"Fe 5:30:0.5", "Fe --beside Pb --beside 'Na2[Fe(CN)5NO]*2H2O'",
        "Fe 25um 57Co", "kapton 50um + Fe T=0.3 14.41,122",
        "Fe 1um 5:30:1 --beside 'Pb 1um'", "Pb 1000:20000:500log",
        "absorber alpha-iron 10um --lines sextet",
        "xafs Fe2O3 --edge Fe:K --diluent BN:5",
        "capillary Fe --diameter 0.3mm 17.48",
        "capillary Fe --diameter 0.3mm 8:60:1", "Al 2mm --spectrum two",
        "Pb 1cm --spectrum two", "Al --spectrum two"}) {
    const std::string command = "attenuate " + std::string(words);
    const Ran plot = shell(command + " --plot");
    EXPECT_EQ(plot.status, 0) << words << plot.err;
    EXPECT_EQ(std::count(plot.out.begin(), plot.out.end(), '\n'), 23) << words;
    EXPECT_EQ(plot.out.find('\033'), std::string::npos) << words;
    const Ran svg =
        shell(command +
              " --svg f.svg > /dev/null &&"
              " python3 -c 'import xml.dom.minidom as m; m.parse(\"f.svg\")' &&"
              " [ \"$(" +
              command + " --svg -)\" = \"$(cat f.svg)\" ]");
    EXPECT_EQ(svg.status, 0) << words << svg.err;
  }
}

TEST(Plan, FormatsAgree) {
  const Ran csv = shell("attenuate absorber hematite --lines sextet --csv");
  const auto json = nlohmann::json::parse(
      shell("attenuate absorber hematite --lines sextet --jsonl").out);
  tests::Words names;
  tests::Words values;
  for (const auto& line : tests::split(csv.out, '\n')) {
    if (line.empty() || line[0] == '#') continue;
    (names.empty() ? names : values) = tests::split(line, ',');
  }
  ASSERT_FALSE(values.empty()) << csv.out;
  EXPECT_EQ(names[0], "best_mg_cm2");
  EXPECT_EQ(std::stod(values[0]), json["best_mg_cm2"]);
  const Ran text = shell("attenuate absorber hematite --lines sextet");
  EXPECT_TRUE(has(text.out, "alpha 8.55"));
  EXPECT_TRUE(has(text.out, "f 0.844 (hematite, room temperature; "));
}

}  // namespace
