// The command as it is typed in a shell, and the parts of it that need a closer
// look.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include "attenuate/help.h"
#include "attenuate/number.h"
#include "attenuate/subcommands.h"
#include "attenuate/words.h"
#include "tests/support.h"

namespace {

using tests::has;
using tests::Words;

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

struct Ran {
  std::string out, err;
  int status;
};

// Runs `command` by bash in an empty directory, in which `attenuate` is the
// program.
Ran shell(const std::string& command) {
  const tests::WorkingDirectory here;
  tests::write("command", "attenuate() { " ATTENUATE " \"$@\"; }\n" + command);
  const int status = std::system(
      "env -i PATH=/usr/bin:/bin LC_ALL=C.UTF-8 bash command "
      "> out 2> err < /dev/null");
  return {tests::content_of("out"), tests::content_of("err"),
          WEXITSTATUS(status)};
}

// A field of the last row that the command prints.
double field(const std::string& question, const std::string& name) {
  const Ran ran = shell("attenuate --tsv --digits 12 " + question);
  EXPECT_EQ(ran.status, 0) << question << "\n" << ran.err;
  Words names;
  Words fields;
  for (const auto& line : tests::split(ran.out, '\n')) {
    if (line.empty() || line[0] == '#') continue;
    if (names.empty()) names = tests::split(line, '\t');
    fields = tests::split(line, '\t');
  }
  const auto found = std::find(names.begin(), names.end(), name);
  EXPECT_NE(found, names.end()) << name << "\n" << ran.out;
  if (found == names.end()) return kNothing;
  const auto& text = fields[static_cast<std::size_t>(found - names.begin())];
  return text.empty() ? kNothing : std::strtod(text.c_str(), nullptr);
}

TEST(Attenuate, AnswersAsWorkedOutByHand) {
  const struct {
    const char* question;
    const char* field;
    double value;
    double tolerance;  // relative
  } cases[] = {
      // The published rows: iron 57.08 cm2/g at 15 keV, lead 111.6 there and
      // 0.07102 at 1 MeV.
      {"Fe 25um 15", "mu_rho_cm2_g", 57.08, 1e-9},
      {"Fe 25um 15", "mu_x", 57.08 * 7.874 * 0.0025, 1e-9},
      {"Fe 25um 15", "transmission", 0.325101, 1e-5},
      {"Fe 25um 15", "area_mass_g_cm2", 0.019685, 1e-9},
      {"Fe 15", "half_value_cm", 0.693147 / (57.08 * 7.874), 1e-6},
      {"Fe 15", "tenth_value_cm", 2.302585 / (57.08 * 7.874), 1e-6},
      // The same millimetre of lead in other words.
      {"Pb 1mm 1MeV", "mu_x", 0.07102 * 11.342 * 0.1, 1e-9},
      {"Pb 1134.2mg/cm2 1e6eV", "mu_x", 0.07102 * 1.1342, 1e-9},
      {"Pb 11.342kg/m2 1000", "mu_x", 0.07102 * 1.1342, 1e-9},
      {"Pb 39.37007874mil 1MeV", "mu_x", 0.07102 * 1.1342, 1e-8},
      // pi/4 x 1.69 cm2 of the disc.
      {"Fe 30mg/d13mm 15", "area_mass_g_cm2", 0.0226019, 1e-5},
      {"Fe 30mg/1.33cm2 15", "area_mass_g_cm2", 0.03 / 1.33, 1e-9},
      {"Fe '30 µg/1.33cm²' 15", "area_mass_g_cm2", 3e-5 / 1.33, 1e-9},
      {"Fe 1mg/mm^2 15", "area_mass_g_cm2", 0.1, 1e-9},
      {"Fe 1g/m2 '15 keV'", "area_mass_g_cm2", 1e-4, 1e-9},
      {"Fe T=0.3 15", "thickness_cm", 1.203973 / (57.08 * 7.874), 1e-6},
      {"Fe T=30% 15", "area_mass_g_cm2", 1.203973 / 57.08, 1e-6},
      {"Fe mux=2 15", "area_mass_g_cm2", 2 / 57.08, 1e-9},
      {"Fe 10mg/cm2 + Fe T=0.3 15", "area_mass_g_cm2", 1.203973 / 57.08 - 0.01,
       1e-6},
      {"Fe 10mg/cm2 + Pb 0.1mm + Fe 5mg/cm2 15", "mu_x",
       57.08 * 0.015 + 111.6 * 0.11342, 1e-9},
      {"50% Fe // Fe 15", "mu_rho_cm2_g", 57.08, 1e-9},
      {"Fe 25um 5:30:100log", "energy_keV", 30, 1e-12},
      {"Fe 25um 5:30:0.1", "energy_keV", 30, 1e-12},
      {"Fe 1um Fe:K+50eV", "energy_keV", 7.162, 1e-9},
      {"Fe 1um Fe:K-112eV", "energy_keV", 7, 1e-9},
      {"Fe 1um Fe:K-0eV", "energy_keV", 7.112, 1e-9},
  };
  for (const auto& c : cases) {
    EXPECT_NEAR(field(c.question, c.field), c.value, c.value * c.tolerance)
        << c.question << ": " << c.field;
  }
}

TEST(Attenuate, SumsTheLinesOfASourceByPhotonsOrByEnergy) {
  const Ran ran = shell("attenuate Al 1mm 57Co --jsonl");
  double photons[2] = {};
  double energy[2] = {};
  double printed = kNothing;
  std::istringstream lines(ran.out);
  for (std::string line; std::getline(lines, line);) {
    const auto row = nlohmann::json::parse(line);
    if (row["line"] == "sum") {
      printed = row["transmission"];
      continue;
    }
    const double weight = row["weight"];
    const double keV = row["energy_keV"];
    const double transmission = row["transmission"];
    photons[0] += weight;
    photons[1] += weight * transmission;
    energy[0] += weight * keV;
    energy[1] += weight * keV * transmission;
  }
  EXPECT_NEAR(printed, photons[1] / photons[0], 1e-5);
  EXPECT_NEAR(field("Al 1mm 57Co --weight energy", "transmission"),
              energy[1] / energy[0], 1e-5);
  // The weights are those of the photons whatever the sum, which says its own.
  EXPECT_NEAR(field("Al 1mm 57Co --weight energy", "weight"), photons[0], 1e-3);
  for (const char* const format : {"--tsv", "--json", "--jsonl", ""}) {
    const std::string ask = "attenuate Al 1mm 57Co " + std::string(format);
    EXPECT_TRUE(has(shell(ask + " --weight energy").out, "energy: photons") ||
                has(shell(ask + " --weight energy").out, "# weight: energy") ||
                has(shell(ask + " --weight energy").out, "weighting"))
        << format;
    EXPECT_FALSE(has(shell(ask).out, "weighting")) << format;
  }
  EXPECT_NEAR(field("Al T=0.5 57Co", "transmission"), 0.5, 1e-9);
  EXPECT_GT(field("Al T=0.5 57Co", "u_area_mass_g_cm2"), 0);
}

TEST(Attenuate, RefusesWithPlaceAndHint) {
  const struct {
    const char* typed;
    int column;
    const char* message;
    const char* hint;
  } cases[] = {
      {"", 1, "no material given",
       "a formula (Fe2O3), a name (kapton) or a mixture "
       "(18% Cr // 8% Ni // Fe)"},
      {"Fe 25um 14.4kev", 13, "unit 'kev' is not known; did you mean keV?", ""},
      {"Fe 25Um 14", 6, "unit 'Um' is not known; did you mean um?", ""},
      {"Fe 0.5", 4, "0.5 keV is below the tables (1 keV to 20 MeV)", ""},
      {"Fe 5:21000:5", 4, "21 MeV is above the tables (1 keV to 20 MeV)", ""},
      {"C10H8O4 25um 14.41", 9,
       "25 um of C10H8O4 needs a density: add @1.38, or use mg/cm2", ""},
      {"Fe 25um 57Fe", 9,
       "no source is called 57Fe; ^57Fe names the isotope in a formula", ""},
      {"Fe 25um 58Cp", 9, "no source is called 58Cp; did you mean 57Co?", ""},
      {"57Fe2O3 1um 14", 1,
       "'57' may count Fe2O3 units or name the isotope 57Fe",
       "^57Fe2O3 for the isotope, (Fe2O3)57 for the count"},
      {"kapton 50um + kaptn 1um 5", 15,
       "no material is called 'kaptn'; did you mean kapton?", ""},
      {"'60% Fe // 60% Ni' 1um 5", 12, "the parts add up to 120 %, not 100 %",
       ""},
      {"60% Fe // 60% Ni 1um 5", 11, "the parts add up to 120 %, not 100 %",
       ""},
      {"Fe Ni 25um 14", 4, "'Ni' is a second material in this layer",
       "put + between layers, // between parts of a mixture"},
      {"Fe 25um nan", 9, "'nan' is no thickness and no energy",
       "25um, 50mg/cm2; 14.41, 122keV, 57Co"},
      {"Fe 1um 2um 5", 8, "'2um' is a second thickness of this layer",
       "put + and a material in front of it for another layer"},
      {"25um Fe 14", 1, "no material in front of '25um'", ""},
      {"+ Fe 14", 1, "no material in front of '+'", ""},
      {"Fe 1um + 14", 12, "no material behind '+'", ""},
      {"Fe 1um + Ni 14", 15, "layer 2 (Ni) has no thickness", ""},
      {"Fe 25um", 8, "no energy given",
       "in keV (14.41), a range (5:30:0.5), a source (57Co) or an edge "
       "(Fe:K+50eV)"},
      {"Fe -5um 14", 4, "a thickness must be above 0", ""},
      {"Fe 0um 14", 4, "a thickness must be above 0", ""},
      {"Fe 1um -14", 8, "an energy must be above 0", ""},
      {"Fe 1e308mm 14", 4, "1e308mm is thicker than any sample", ""},
      {"Fe 1e999mm 14", 4, "a number of this size cannot be computed with", ""},
      {"Fe 30mg 14", 4, "30mg is a mass, not a thickness",
       "30mg/d13mm on a disc of 13 mm, or 30mg/1.33cm2"},
      {"Fe 30mg/d13 14", 12, "a unit is missing",
       "nm um mm cm m mil in; ug/cm2 mg/cm2 g/cm2 kg/m2; eV keV MeV"},
      {"Fe 30mg/3kg 14", 10, "'kg' is no unit of area", "mm2, cm2 or m2"},
      {"Fe T=1.5 14", 6, "a transmission lies between 0 and 1",
       "T=0.3 or T=30%"},
      {"Fe mux=0 14", 8, "mux must be above 0 and at most 700", ""},
      {"Fe T=.1 + Ni T=.1 14", 14, "only one layer can be asked for",
       "a thickness for the other"},
      {"Fe 1um 5,,6", 10, "an energy is missing here", ""},
      {"Fe 1um 5:30", 12, "a range needs a step or a count",
       "5:30:0.5 in steps of 0.5 keV, 5:30:100log for 100 energies"},
      {"Fe 1um 30:5:1", 11, "a range rises", "the lower energy first"},
      {"Fe 1um 5:30:1log", 13, "'1' counts no energies",
       "at least 2, as in 5:30:100log"},
      {"Fe 1um 5:30:1e-12", 13, "more than 1000000000 energies are asked for",
       ""},
      {"Fe 5:30:100", 9, "the step is wider than the range",
       "5:30:100log for 100 energies"},
      {"Fe 5:30:30.5", 9, "the step is wider than the range", ""},
      {"Fe 1:3:0.5MeV", 8, "the step is wider than the range",
       "a unit counts for its own number only"},
      {"Fe 1um Fe:Q1", 11, "iron has no edge 'Q1'",
       "K L1 L2 L3 M1 M2 M3 M4 M5"},
      {"Fe 2,5mm 14", 5, "',' separates energies",
       "a decimal takes a point: 2.5mm"},
      {"'10,5% Fe // Ni' 14", 4, "',' separates energies",
       "a decimal takes a point: 10.5%"},
      {"Fe 25um, 14.41", 8, "',' separates energies, and 25um is none",
       "a blank stands behind a thickness"},
      {"Fe 1,2mm,5", 7, "unit 'mm' has no place here",
       "nm um mm cm m mil in; ug/cm2 mg/cm2 g/cm2 kg/m2; eV keV MeV"},
      {"Fe 1km 14", 5, "unit 'km' is not known",
       "nm um mm cm m mil in; ug/cm2 mg/cm2 g/cm2 kg/m2; eV keV MeV"},
      {"Fe 1g/cm3 14", 5, "unit 'g/cm3' is not known; did you mean g/cm2?", ""},
      {"Fe 14.41,57Fe", 10,
       "no source is called 57Fe; ^57Fe names the isotope in a formula", ""},
      {"Fe 5..30", 4, "'5..30' is no energy",
       "5:30:0.5 is a range in steps of 0.5 keV, 5,30 two energies"},
      {"Fe 14;5", 4, "'14;5' is no energy", "14,5: a comma separates energies"},
      {"CuSO4 + 5H2O 10mg/cm2 14", 9, "no layer begins with '5H2O'",
       "quotes around a formula with blanks, or * in place of +"},
      {"CuSO4 + 5 H2O 10mg/cm2 14", 9, "no layer begins with '5'",
       "quotes around a formula with blanks, or * in place of +"},
      {"Fe 5um CuKb", 8, "'CuKb' is no thickness and no energy",
       "did you mean CuKa?"},
      {"Fe fe:K", 4, "'fe' is not an element", "did you mean Fe:K?"},
      {"Fe 5um Pu:K", 8,
       "no coefficients for plutonium (Z = 94): the NIST tables end with "
       "uranium (Z = 92)",
       ""},
      {"Fe 1um Xx:K", 8, "'Xx' is not an element",
       "an edge is written Fe:K or Fe:K+50eV"},
  };
  attenuate::Reader reader(physics::builtin());
  attenuate::Question question;
  for (const auto& c : cases) {
    try {
      reader.read_line(c.typed, question);
      ADD_FAILURE() << c.typed;
    } catch (const physics::InputError& error) {
      EXPECT_EQ(error.message(), c.message) << c.typed;
      EXPECT_EQ(error.column(), c.column) << c.typed;
      EXPECT_EQ(error.hint(), c.hint) << c.typed;
    }
  }
}

TEST(Attenuate, ShowsTheInputWithACaretAndNothingElse) {
  const Ran ran = shell("attenuate Fe 25um '14.4kev'");
  EXPECT_EQ(ran.err,
            "error: unit 'kev' is not known; did you mean keV?\n"
            "  Fe 25um 14.4kev\n"
            "              ^\n");
  EXPECT_EQ(ran.out, "");
  EXPECT_EQ(ran.status, 2);
}

TEST(Attenuate, TextFitsAScreenOfEightyColumns) {
  const char* const questions[] = {"Fe 25um 57Co",
                                   "Fe T=.3 57Co",
                                   "Fe 14",
                                   "Fe 25um 14 --mu-en",
                                   "Pb 661.7 --mu-en",
                                   "Fe mux=2 14 --mu-en",
                                   "Fe 1um 57Co --mu-en",
                                   "water 1mm + Fe T=.5 57Co",
                                   "Fe2O3@5.24 1um 14",
                                   "Fe 57Co",
                                   "Fe 1um + Ni 1um 57Co,5",
                                   "Fe 1um + Ni 1um 14"};
  for (const std::string question : questions) {
    const Ran ran = shell("attenuate " + question);
    EXPECT_EQ(ran.status, 0) << question;
    for (const auto& line : tests::split(ran.out, '\n')) {
      if (line.starts_with("note: ")) continue;
      EXPECT_LE(line.size(), 80U) << question << "\n" << line;
    }
  }
}

TEST(Attenuate, TextShowsWhatIsAskedFor) {
  const struct {
    const char* command;
    const char* text;  // a part of the answer
  } cases[] = {
      {"elements", " Fe     iron                55.845           7.874  alpha"},
      {"elements", "          0.088  hcp"},
      {"edges Fe", "M1          0.0929              no"},
      {"--csv elements Fe", "\n26,Fe,iron,55.845,1,20000,7.874,"},
      {"--digits=3 Fe 14", "      18.4 um      12.8 um      42.4 um"},
      {"Fe 14 --explain --digits 17", "Fe           1 x 68.9"},
      {"Fe T=0.3 57Co", "  2.70236 g/cm2    1          0.3"},
      {"Al --spectrum <(printf '20 1') --digits 2", "one bin with photons, 20"},
      {"Al --spectrum <(printf '20 1') --digits 2",
       " 7.5e+02 um = 2e+02 mg/cm2"},
      {"capillary Fe --diameter 1mm 17 --digits 2", " 1.9e+02        9.5  "},
      {"materials --help", "attenuate materials|sources"},
      {"absorber hematite --version", "attenuate 1.0.0\ntables 1: "},
      {"--batch - --csv", "\ninput_line,material,energy_keV,"},
      {"-- Fe 14", "Fe  55.845 g/mol"},
  };
  for (const auto& c : cases) {
    const Ran ran = shell("attenuate " + std::string(c.command));
    EXPECT_TRUE(has(ran.out, c.text)) << c.command << "\n" << ran.err;
  }
}

TEST(Attenuate, NotesWhatCouldSurprise) {
  const struct {
    const char* question;
    const char* note;
  } cases[] = {
      {"Fe 14,4", "',' separates energies; a decimal takes a point"},
      {"Fe 14,4keV", "',' separates energies; a decimal takes a point"},
      {"Pb 1,2,3MeV",
       "a unit counts for its own number: 1, 2 keV without one; "
       "1MeV,2MeV,3MeV has MeV throughout"},
      {"Pb 1:3MeV:0.5", "1MeV:3MeV:0.5MeV has MeV throughout"},
      {"Fe Fe:K+50", "the offset is 50 keV; Fe:K+50eV means 50 eV"},
      {"Fe 7.112",
       "7.112 keV is the K edge of iron, where the upper side is "
       "taken; mu/rho of iron is 53.19 cm2/g below it and 407.6 "
       "above"},
      {"Fe 7.1",
       "7.1 keV is 12 eV below the K edge of iron; mu/rho of iron "
       "is 53.19 cm2/g below it and 407.6 above"},
      {"Fe 7.25", "138 eV above the K edge of iron; chemistry moves"},
      {"Fe 5:30:1", "in this range lie edges of iron (K 7.112 keV)"},
      {"Re 2", "rhenium"},
      {"Re 1:9000:1", "rhenium"},
      {"CU2O 5mg/cm2 14", "Cu2O"},
  };
  for (const auto& c : cases) {
    const std::string question(c.question);
    const Ran ran = shell("attenuate " + question);
    EXPECT_TRUE(has(ran.out, "note: ")) << question;
    EXPECT_TRUE(has(ran.out, c.note)) << question;
    const Ran strict = shell("attenuate --strict " + question);
    EXPECT_EQ(strict.status, 2) << question;
    EXPECT_EQ(strict.out, "") << question;
  }
  for (const std::string plain : {"14.41", "14.1,20keV", "661.7,1.33MeV",
                                  "8:9:1eV", "1MeV:3MeV:500keV"}) {
    EXPECT_EQ(shell("attenuate --strict Fe " + plain).status, 0) << plain;
  }
}

TEST(Attenuate, EveryFormatHasTheSameNumbers) {
  const std::string questions[] = {
      "kapton 50um + air 10cm + Fe 25um 5:30:5", "Fe T=0.3 14.41 --mu-en",
      "CuSO4.5H2O 50mg/cm2 241Am", "Pb 2,661.7 --rule parabola"};
  for (const auto& question : questions) {
    const std::string ask = "attenuate " + question + " ";
    const auto json = nlohmann::ordered_json::parse(shell(ask + "--json").out);
    std::istringstream lines(shell(ask + "--jsonl").out);
    Words tsv = tests::split(shell(ask + "--tsv").out, '\n');
    std::erase_if(tsv, [](const auto& l) { return l.empty() || l[0] == '#'; });
    Words csv = tests::split(shell(ask + "--csv").out, '\n');
    std::erase_if(csv, [](const auto& l) { return l.empty() || l[0] == '#'; });
    ASSERT_EQ(tsv.size(), json["rows"].size() + 1) << question;
    for (std::size_t i = 0; i < json["rows"].size(); ++i) {
      const auto& row = json["rows"][i];
      std::string fields;
      for (const auto& value : row) {
        if (&value != &row.front()) fields += '\t';
        if (value.is_string()) fields += value.get<std::string>();
        if (value.is_number()) {
          fields += attenuate::number(value.get<double>(), 10);
        }
      }
      EXPECT_EQ(tsv[i + 1], fields);
      std::string commas = tsv[i + 1];
      std::replace(commas.begin(), commas.end(), '\t', ',');
      EXPECT_EQ(csv[i + 1], commas);
      std::string line;
      std::getline(lines, line);
      auto object = nlohmann::ordered_json::parse(line);
      object.erase("material");
      object.erase("notes");
      EXPECT_EQ(object.dump(), row.dump());
    }
  }
}

TEST(Attenuate, JsonFitsItsSchema) {
  if (shell("python3 -c 'import jsonschema'").status != 0) {
    GTEST_SKIP() << "no python3-jsonschema";
  }
  const std::string check = R"(
cat > check.py << 'END'
import json, sys, jsonschema
schema = json.load(open(")" SCHEMA R"("))
jsonschema.Draft7Validator.check_schema(schema)
if sys.argv[1] == "lines":
    schema = {"$ref": "#/definitions/line_row",
              "definitions": schema["definitions"]}
    texts = sys.stdin.read().splitlines()
else:
    texts = [sys.stdin.read()]
for text in texts:
    jsonschema.validate(json.loads(text), schema)
print(len(texts))
END
printf '%s\n' 'Fe 25um 14.41' 'fe2o3 1um' 'kapton 1um + H2O T=.5 57Co' > list
set -e
attenuate kapton 50um + Fe T=0.3 57Co,14 --json | python3 check.py whole
attenuate 'CuSO4.5H2O' 5:30:1 --mu-en --json | python3 check.py whole
{ attenuate --batch list --json || true; } | python3 check.py whole
{ attenuate --batch list --jsonl || true; } | python3 check.py lines
attenuate Fe 14 --jsonl | python3 check.py lines
attenuate Fe 1um 57Co --weight energy --json | python3 check.py whole
attenuate Fe 1um 14 --weight energy --jsonl | python3 check.py lines
)";
  const Ran ran = shell(check);
  EXPECT_EQ(ran.status, 0) << ran.err;
  EXPECT_EQ(ran.out, "1\n1\n1\n10\n1\n1\n1\n");
}

TEST(Edges, AreListedByWhateverNamesTheElement) {
  const std::string iron = shell("attenuate edges Fe --tsv").out;
  for (const std::string name : {"fe", "26", "Iron"})
    EXPECT_EQ(shell("attenuate edges --tsv " + name).out, iron) << name;
  const std::string one = shell("attenuate edges Fe:K --tsv").out;
  EXPECT_TRUE(has(one, "\nFe\tK\t7.112\t"));
  EXPECT_FALSE(has(one, "L1"));
}

TEST(Batch, AnswersWhatItCanAndNamesTheRest) {
  const Ran ran = shell(
      "printf '%s\\n' 'Fe 25um 14.41' '# words' '' 'kaptn 1um 14' "
      "\"'10% Fe2O3 // sucrose' mux=2 14.41\" 'Fe 1um 14 --csv' 'Ni 1um 9' "
      "| attenuate --batch - --tsv");
  EXPECT_EQ(ran.status, 1);
  EXPECT_TRUE(has(ran.err,
                  "error: line 4: no material is called 'kaptn'; did "
                  "you mean kapton?\n  kaptn 1um 14\n  ^\n"));
  EXPECT_TRUE(has(ran.err,
                  "error: line 6: options stand before the list, not in it\n"
                  "  Fe 1um 14 --csv\n            ^\n"));
  EXPECT_TRUE(has(ran.out, "\n1\tFe\t14.41\t"));
  EXPECT_TRUE(has(ran.out, "\n5\t10% Fe2O3 // 90% sucrose\t14.41\t"));
  EXPECT_TRUE(has(ran.out, "\n7\tNi\t9\t"));
  EXPECT_EQ(shell("attenuate --batch /no/such/list").status, 2);
  EXPECT_EQ(shell("attenuate --batch / --tsv").status, 2);
}

TEST(Batch, TakesWhatEditorsLeaveAndShowsTheRest) {
  const Ran ran = shell(
      "printf '\\xEF\\xBB\\xBFFe 25um 14.41\\r\\nFe \\000 14\\r\\n' "
      "| attenuate --batch - --tsv");
  EXPECT_TRUE(has(ran.out, "\n1\tFe\t14.41\t"));
  EXPECT_EQ(ran.err,
            "error: line 2: '?' is no thickness and no energy\n  Fe ? 14\n"
            "     ^\nhint: 25um, 50mg/cm2; 14.41, 122keV, 57Co\n");
}

TEST(Batch, ALineIsAnsweredAsTheSameWords) {
  const char* const questions[] = {"Fe 25um 14.41",
                                   "kapton 50um + Fe T=.3 57Co",
                                   "CuSO4.5H2O 50mg/cm2 5:30:5"};
  std::string list = "printf '%s\\n'";
  std::string single;
  for (int i = 0; i < 300; ++i) {
    const std::string question = questions[i % 3];
    list += " '" + question + "'";
  }
  for (const char* question : questions) {
    single += shell("attenuate --tsv " + std::string(question) +
                    " | grep -v '^#' | tail -n +2")
                  .out;
  }
  // Without line, material and notes.
  const Ran ran = shell(list +
                        " | attenuate --batch - --tsv | grep -v '^#' | "
                        "tail -n 12 | sed 's/^[0-9]*\t[^\t]*\t//' | "
                        "sed 's/\t[^\t]*$//'");
  std::string expected;
  for (const auto& line : tests::split(single, '\n')) {
    if (!line.empty()) expected += line + "\n";
  }
  EXPECT_TRUE(has(expected, ran.out.substr(ran.out.find('\n') + 1)) ||
              has(ran.out, expected))
      << ran.out << "\n"
      << expected;
}

#ifndef __SANITIZE_ADDRESS__
TEST(Batch, TakesLittleMemoryHoweverLong) {
  // 16 MB, programs of the pipe included.
  for (const char* const command :
       {"seq 200000 | sed 's/.*/Fe&O@5 1um 14.41/' | attenuate --batch - --tsv",
        "seq 200000 | sed 's/.*/Fe&O@5 1um 14.41/' | attenuate --batch - "
        "--json",
        "attenuate Fe 1um 5:25:0.0001 --tsv"}) {
    const Ran ran =
        shell("ulimit -v 16384; " + std::string(command) + " > /dev/null");
    EXPECT_EQ(ran.status, 0) << command << "\n" << ran.err;
  }
}
#endif

TEST(Batch, SpreadsOverProcesses) {
  if (shell("parallel --version").status != 0) GTEST_SKIP() << "no parallel";
  const Ran ran = shell(
      "for i in $(seq 500); do echo Fe ${i}um 14.41; done > list\n"
      "export HOME=$PWD PARALLEL_HOME=$PWD\n"
      "attenuate --batch list --jsonl | sed 's/^{\"input_line\":[0-9]*,//' "
      "> one\n"
      "parallel --will-cite -k --pipepart --block 1k -a list " ATTENUATE
      " --batch - --jsonl | sed 's/^{\"input_line\":[0-9]*,//' "
      "> many\n"
      "wc -l < many; cmp one many");
  EXPECT_EQ(ran.out, "500\n") << ran.err;
  EXPECT_EQ(ran.status, 0);
}

TEST(Attenuate, EndsHonestlyWhateverComes) {
  const struct {
    const char* command;
    int status;
    const char* error;  // a part of it
  } cases[] = {
      {"attenuate Fe 14 > /dev/full", 2, "No space left on device"},
      {"attenuate --help > /dev/full", 2, "No space left on device"},
      {"attenuate Fe 1um 5:30:0.001 --tsv > /dev/full", 2, "No space left"},
      {"attenuate Fe 14 >&-", 2, "Bad file descriptor"},
      {"attenuate Fe 1um 1:9:0.00001 --tsv | head -n 1 > /dev/null; "
       "exit ${PIPESTATUS[0]}",
       141, ""},
      {"(trap '' PIPE; attenuate Fe 1um 1:9:0.00001 --tsv | head -n 1 "
       "> /dev/null; exit ${PIPESTATUS[0]})",
       2, "Broken pipe"},
      {"head -c 300000 /bin/bash | attenuate --batch - --tsv > /dev/null", 1,
       "error: line 1: "},
      {"head -c 1000000 /dev/zero | tr '\\0' F | attenuate --batch -", 1,
       "FFF"},
      {"head -c 9000000 /dev/zero | tr '\\0' 1 | attenuate --batch -", 1,
       "a question has at most 1048576 bytes"},
      {"{ yes 'Fe 1um +' | head -n 1000000 | tr '\\n' ' '; echo Fe 1um 14; } | "
       "attenuate --batch -",
       1, "a question has at most"},
      {"{ yes 'Fe 1um +' | head -n 9999 | tr '\\n' ' '; echo Fe 1um 14; } | "
       "attenuate --batch -",
       1, "more than 1000 layers"},
      {"attenuate Fe $'\\x1b[2J' 14", 2, "'?[2J'"},
      {"attenuate Fe$'\\xff' 14", 2, "byte 0xFF in column 3"},
      {"attenuate --frobnicate Fe 14", 2, "there is no option --frobnicate"},
      {"attenuate --tsv --csv Fe 14", 2, "error: more than one format\n"},
      {"attenuate --digits 99 Fe 14", 2, "error: "},
      {"attenuate Fe 14 --digits", 2, "error: --digits needs a value\n"},
      {"attenuate -- Fe 14 --tsv", 2, "'--tsv' is no thickness"},
      {"attenuate --data /no/such Fe 14", 2, "the data of '/no/such'"},
      {"attenuate completion tcsh", 2, "bash, zsh or fish"},
      {"attenuate sources 57Fo", 2, "did you mean 57Co"},
      {"attenuate Fe 1um + Fe 1m + Fe T=.5 14", 2, "error: "},
  };
  for (const auto& c : cases) {
    const Ran ran = shell(c.command);
    EXPECT_EQ(ran.status, c.status) << c.command << "\n" << ran.err;
    EXPECT_TRUE(has(ran.err, c.error)) << c.command;
    EXPECT_LT(ran.err.size(), 200000U) << c.command;
  }
}

TEST(Attenuate, TellsOfItself) {
  const std::string help = shell("attenuate --help").out;
  EXPECT_EQ(help, attenuate::help());
  const Words lines = tests::split(help, '\n');
  EXPECT_LE(lines.size(), 24U);
  const std::string all = shell("attenuate --help-all").out;
  for (const auto& line : tests::split(all, '\n')) {
    EXPECT_LE(line.size(), 80U) << line;
  }
  for (const auto option : attenuate::option_names()) {
    EXPECT_TRUE(has(all, option));
  }
  EXPECT_TRUE(has(shell("attenuate --version").out, "attenuate 1.0.0\n"));
}

TEST(Attenuate, CompletesInThreeShells) {
  for (const std::string name : {"bash", "zsh", "fish"}) {
    if (shell(name + " --version").status != 0) continue;
    const Ran ran = shell("attenuate completion " + name + " > script; " +
                          name + " -n script");
    EXPECT_EQ(ran.err, "") << name;
    EXPECT_EQ(ran.status, 0) << name;
  }
  const struct {
    const char* words;
    const char* completed;
  } cases[] = {
      {"kapt", "kapton\n"},
      {"xafs --di", "--digits --diluent --disc\n"},
      {"Fe --di", "--digits\n"},
      {"Fe --svg ./s", "./s\n"},
  };
  for (const auto& c : cases) {
    const Ran ran =
        shell("attenuate completion bash > s; . ./s; COMP_WORDS=(attenuate " +
              std::string(c.words) +
              "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _attenuate; "
              "echo ${COMPREPLY[@]}");
    EXPECT_EQ(ran.out, c.completed) << ran.err;
  }
  for (const auto& entry : attenuate::subcommands()) {
    for (const auto& option : tests::split(std::string(entry.options), ' ')) {
      const std::string help = "attenuate " + std::string(entry.name) + " -h";
      EXPECT_TRUE(has(shell(help).out, option)) << help;
    }
  }
}

// Every command between .EX and .EE.
TEST(Manual, ItsExamplesRun) {
  std::istringstream manual(tests::content_of(MANUAL));
  int examples = 0;
  for (std::string line; std::getline(manual, line);) {
    if (line != ".EX") continue;
    std::getline(manual, line);
    std::erase(line, '\\');
    if (line.starts_with("parallel") &&
        shell("parallel --version").status != 0) {
      continue;
    }
    const Ran ran = shell("PATH=" PROGRAMS
                          ":$PATH HOME=$PWD\necho Fe 25um 14.41 > list.txt\n" +
                          line);
    EXPECT_EQ(ran.status, 0) << line << "\n" << ran.err;
    EXPECT_FALSE(ran.out.empty()) << line;
    ++examples;
  }
  EXPECT_GE(examples, 8);
}

// What stands behind "$ " in the document is printed as the document shows it.
TEST(Document, ItsTranscriptsAreTrue) {
  const std::string text = tests::content_of(DOCUMENT);
  int transcripts = 0;
  for (std::size_t at = text.find("\n    $ "); at != std::string::npos;
       at = text.find("\n    $ ", at + 1)) {
    std::istringstream lines(text.substr(at + 1));
    std::string line;
    std::getline(lines, line);
    const std::string command = line.substr(6);
    std::string shown;
    while (std::getline(lines, line) && line.starts_with("    ") &&
           !line.starts_with("    $ ")) {
      shown += line.substr(4) + "\n";
    }
    const Ran ran = shell(command);
    EXPECT_EQ(ran.out + ran.err, shown) << command;
    ++transcripts;
  }
  EXPECT_GE(transcripts, 6);
}

TEST(Numbers, AreWrittenAsPrintfDoes) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> exponent(-13, 23);
  std::vector<double> values = {0,      1,       9.999995, 0.5,    999999.5,
                                100000, 1e-4,    9.99e-5,  1e22,   1e300,
                                5e-324, 0.00015, 2.5,      123456, 1234565};
  for (int i = 0; i < 20000; ++i) {
    values.push_back(std::pow(10, exponent(random)));
    // Ties of the sixth digit, where rounding is easily wrong.
    values.push_back(std::round(values.back() * 1e6) / 1e6);
  }
  for (const double value : values) {
    for (const int digits : {2, 6, 10, 17}) {
      char expected[64];
      std::snprintf(expected, sizeof expected, "%.*g", digits, value);
      ASSERT_EQ(attenuate::number(value, digits), expected);
    }
  }
}

}  // namespace
