#include "physics/table.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "base/fatal.h"
#include "base/unit.h"
#include "physics/curve.h"
#include "physics/data.h"
#include "physics/elementlist.h"
#include "physics/material.h"
#include "physics/parabola.h"
#include "tests/support.h"

namespace {

using physics::builtin;
using physics::Energy;

double mu(int z, double keV) {
  return mass_attenuation(builtin().table(z), {keV}).cm2_g;
}
double mu_en(int z, double keV) {
  return energy_absorption(builtin().table(z), {keV}).cm2_g;
}

TEST(Table, IsThePchipOfSciPy) {
  // scipy 1.10.1, PchipInterpolator on logarithms over the rows of tables.csv
  // (and over those with mu_en, or mu times the ratio of its neighbours where
  // that is over 0.95), each segment between edges for itself.
  const struct {
    int z;
    double keV, mu, mu_en;
  } rows[] = {
      {1, 1.0, 7.217, 6.82},
      {1, 2.7, 0.6365879995899859, 0.24098905934302692},
      {1, 20000, 0.021529999999999994, 0.016059999999999998},
      {24, 5.5, 83.07456469358323, 80.96586443208612},  // by the ratio
      {24, 5.9892, 518.9999999999999, 402.7},           // above the K edge
      {24, 6.4, 448.0585393642792, 380.1974069783863},
      {26, 14.41295, 63.679800594512535, 54.33288627856487},
      {50, 4.3, 1064.2375011100119, 1006.0169302448232},
      {79, 2.2, 923.9293639861194, 912.609341082179},
      {82, 15.5, 142.1735672324909, 108.70226193041236},  // L2, L1 beside it
      {82, 88.0045, 7.683000000000002, 2.16},
      {82, 661.657, 0.11033697631500425, 0.05931423082290778},
      {92, 5.3, 814.4865716532456, 785.3144704007153},
      {92, 1332.5, 0.06054980482963463, 0.03163925163996379},
  };
  for (const auto& row : rows) {
    EXPECT_NEAR(mu(row.z, row.keV) / row.mu, 1, 1e-13) << row.z;
    EXPECT_NEAR(mu_en(row.z, row.keV) / row.mu_en, 1, 1e-13) << row.z;
  }
}

TEST(Table, AnEdgeHasTwoSides) {
  const physics::Table& iron = builtin().table(26);
  // K edge of tables.csv: 7.112 keV, 53.19 below and 407.6 above.
  EXPECT_NEAR(mass_attenuation(iron, {7.112}).cm2_g, 407.6, 1e-10);
  EXPECT_NEAR(mass_attenuation_below(iron, {7.112}).cm2_g, 53.19, 1e-11);
  const double near = std::nextafter(7.112, 0);
  EXPECT_NEAR(mass_attenuation(iron, {near}).cm2_g, 53.19, 1e-11);
  for (const double keV : {1.0, 6.0, 14.4, 20000.0}) {
    EXPECT_DOUBLE_EQ(mass_attenuation_below(iron, {keV}).cm2_g, mu(26, keV));
  }
}

// Each step of a table has the name of its edge, but for N shells, of which the
// tables of the heaviest know some, and for rhenium's M5, 60 eV from the real.
TEST(Table, ItsStepsAreEdges) {
  for (int z = 1; z <= physics::kElements; ++z) {
    const physics::Table& table = builtin().table(z);
    std::set<double> named;
    for (const physics::Edge& edge : physics::edges(z)) {
      if (!edge.in_table) continue;
      const double below = mass_attenuation_below(table, edge.energy).cm2_g;
      named.insert(edge.energy.keV);
      EXPECT_GT(mu(z, edge.energy.keV), below) << z << edge.shell;
    }
    for (const physics::Cubic& piece : table.total.pieces()) {
      const double below = table.total.below({piece.keV});
      if (table.total({piece.keV}) < below * 1.001) continue;
      EXPECT_TRUE(named.contains(piece.keV) || (z > 82 && piece.keV < 1.5) ||
                  (z == 75 && piece.keV == 1.8224))
          << z << " at " << piece.keV;
    }
  }
}

// No more is absorbed than attenuated.
TEST(Table, AbsorbsNoMoreThanItAttenuates) {
  for (int z = 1; z <= physics::kElements; ++z) {
    for (double keV = 1.0; keV < 20000; keV *= 1.003) {
      ASSERT_LE(mu_en(z, keV), mu(z, keV)) << z << " at " << keV;
    }
  }
}

TEST(Table, OutsideIsAnError) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double keV : {std::nextafter(1.0, 0), std::nextafter(2e4, 3e4),
                           0.0, -14.4, infinite, -infinite, nan}) {
    EXPECT_THROW(mu(92, keV), physics::OutsideTable) << keV;
    EXPECT_THROW(mu_en(92, keV), physics::OutsideTable) << keV;
  }
}

TEST(Table, IsMonotoneBetweenRows) {
  constexpr int kSteps = 20;
  for (int z = 1; z <= physics::kElements; ++z) {
    const physics::Table& table = builtin().table(z);
    for (const physics::Curve* curve : {&table.total, &table.absorption}) {
      const auto pieces = curve->pieces();
      for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
        const double end = pieces[i + 1].keV;
        const double falls =
            curve->below({end}) < (*curve)({pieces[i].keV}) ? 1 : -1;
        double last = (*curve)({pieces[i].keV});
        for (int step = 1; step <= kSteps; ++step) {
          const double keV =
              pieces[i].keV + (end - pieces[i].keV) * step / kSteps;
          const double next = curve->below({std::min(keV, end)});
          EXPECT_LE((next - last) * falls, 1e-14 * last) << z << " at " << keV;
          last = next;
        }
      }
    }
  }
}

TEST(Binary, LogarithmAndPowerAreRightInEveryCell) {
  // Every cell of the tables several times, and all exponents.
  for (double x = 2.3e-308; x < 1e308; x *= 1.0037) {
    const double log = std::log2(x);
    ASSERT_NEAR(physics::binary_log(x), log, 1e-15 + 2.3e-16 * std::abs(log))
        << x;
    ASSERT_NEAR(physics::binary_power(log) / std::exp2(log), 1.0, 5e-16) << x;
  }
  EXPECT_EQ(physics::binary_power(10), 1024);
}

TEST(Curve, ASegmentOfTwoPointsIsStraight) {
  const std::vector<physics::CurvePoint> points{
      {1, 100}, {2, 10}, {2, 50}, {4, 5}, {4, 20}, {8, 1}, {16, 0.5}};
  const auto pieces = physics::pchip(points);
  const auto grid = physics::grid_of(pieces);
  const physics::Curve curve(pieces, grid);
  EXPECT_NEAR(curve({std::sqrt(8.0)}), std::sqrt(250.0), 1e-12);
  EXPECT_NEAR(curve({2}), 50, 1e-12);
  EXPECT_NEAR(curve.below({2}), 10, 1e-12);
  EXPECT_NEAR(curve({16}), 0.5, 1e-12);
  EXPECT_NE(curve({6}), curve.straight({6}));
  const std::vector<std::vector<physics::CurvePoint>> faulty{
      {},
      {{1, 2}},
      {{1, 2}, {1, 3}, {2, 3}},          // nothing below the edge
      {{1, 2}, {2, 3}, {2, 4}},          // nothing above
      {{1, 2}, {2, 1}, {2, 3}, {2, 4}},  // twice an edge
      {{2, 2}, {1, 3}},
      {{1, 2}, {2, 0}},
      {{0, 2}, {2, 1}},
      {{1, std::nan("")}, {2, 1}}};
  for (const auto& rows : faulty) {
    EXPECT_THROW(physics::pchip(rows), std::invalid_argument) << rows.size();
  }
}

// The file of the dialogue, at the block of `element`.
physics::Block shipped_block(const physics::Element& element) {
  base::Unit file(1);
  file.open(DATA_DIR "/attenuation.coefficients");
  std::string name(element.name);
  name[0] = static_cast<char>(name[0] - 'a' + 'A');
  static_cast<void>(physics::find_block<16>(file, name));
  return physics::read_block(file);
}

TEST(Parabola, IsTheDialoguesToTheLastBit) {
  const auto own = physics::read_data(DATA_DIR);
  for (int z = 1; z <= physics::kListedElements; ++z) {
    const auto& element = builtin().elements()[static_cast<std::size_t>(z - 1)];
    const physics::Block shipped = shipped_block(element);
    const physics::Block rows = builtin().block(z).value();
    EXPECT_EQ(own->block(z).value().points, rows.points) << z;
    ASSERT_EQ(rows.points, shipped.points) << z;
    for (int i = 1; i <= physics::kBlockRows; ++i) {
      EXPECT_EQ(rows.xi(i), shipped.xi(i)) << z << " row " << i;
      EXPECT_EQ(rows.yi(i), shipped.yi(i)) << z << " row " << i;
      EXPECT_EQ(rows.zi(i), shipped.zi(i)) << z << " row " << i;
    }
    const auto material = physics::material(element.symbol);
    for (const float keV : {2.5F, 14.4F, 122.06F, 20000.0F}) {
      EXPECT_EQ(
          mass_attenuation(material, {double{keV}}, physics::Rule::kParabola)
              .cm2_g,
          double{physics::parabola(shipped, keV)})
          << z << " at " << keV;
    }
  }
  const auto uranium = physics::material("U");
  EXPECT_THROW(mass_attenuation(uranium, {14.4}, physics::Rule::kParabola),
               physics::InputError);
  const auto lead = physics::material("Pb");
  for (const double keV : {0.5, 1e6, 1e308, std::nan("")}) {
    EXPECT_THROW(mass_attenuation(lead, {keV}, physics::Rule::kParabola),
                 physics::OutsideTable)
        << keV;
  }
}

TEST(OwnData, ReplacesWhatItHas) {
  const tests::WorkingDirectory directory;
  std::string elements;
  for (int z = 1; z <= physics::kListedElements; ++z) {
    const auto& element = builtin().elements()[static_cast<std::size_t>(z - 1)];
    std::string record(40, ' ');
    record.replace(8, element.symbol.size(), element.symbol);
    record.replace(16, 4, "none");
    record.replace(29, 6, z == 26 ? "55.999" : "100   ");
    if (z == 26) record.replace(16, 4, "Iron");
    elements += record + '\n';
  }
  tests::write("elements.dat", elements);
  const std::string iron =
      " Iron\n        26\n\n\n\n\n\n\n"
      "   5.00000E-04  1.000E+04\n"
      "   1.00000E-03  1.000E+03\n"
      "K  1.00000E-03  2.000E+03\n"
      "   2.00000E-03  2.000E+02\n end\n";
  tests::write("attenuation.coefficients", iron);
  tests::write("dichte.dat",
               "Titles\n  26    Iron, 77 K                    7.9 g/cm3\n"
               "  26    Iron                          7.8 g/cm3\nend\n");
  const auto own = physics::read_data(".");
  EXPECT_EQ(own->elements()[25].weight, 55.999);
  const physics::Table& table = own->table(26);
  EXPECT_NEAR(mass_attenuation(table, {1}).cm2_g, 2000, 1e-9);
  EXPECT_NEAR(mass_attenuation_below(table, {1}).cm2_g, 1000, 1e-9);
  EXPECT_NEAR(mass_attenuation(table, {0.5}).cm2_g, 1e4, 1e-8);
  EXPECT_THROW(mass_attenuation(table, {2.0001}), physics::OutsideTable);
  // Without a column of its own, mu_en/rho is the built-in one.
  EXPECT_EQ(energy_absorption(table, {14.4}).cm2_g, mu_en(26, 14.4));
  EXPECT_EQ(mass_attenuation(own->table(29), {14.4}).cm2_g, mu(29, 14.4));
  ASSERT_EQ(own->modifications(26).size(), 2U);
  EXPECT_EQ(own->modifications(26)[0].temperature, "77 K");
  EXPECT_EQ(own->modifications(26)[1].temperature, "room");
  EXPECT_EQ(own->modifications(26)[1].density.g_cm3, 7.8);

  const struct {
    const char* file;
    std::string text;
  } faulty[] = {
      {"attenuation.coefficients", iron.substr(0, iron.size() - 5)},  // no end
      {"attenuation.coefficients", " Iron\n\n\n\n\n\n\n\n   1\n end\n"},
      {"dichte.dat", "  26    Iron\n"},
      {"elements.dat", elements.substr(41)},
      {"elements.dat", "x" + elements.substr(1, 8) + "Xx" + elements},
  };
  for (const auto& row : faulty) {
    tests::write("elements.dat", elements);
    tests::write("attenuation.coefficients", iron);
    tests::write("dichte.dat", "end\n");
    EXPECT_NO_THROW(physics::read_data("."));
    tests::write(row.file, row.text);
    EXPECT_THROW(physics::read_data("."), base::FatalEnd) << row.text;
  }
  std::filesystem::remove("dichte.dat");
  EXPECT_THROW(physics::read_data("."), base::FatalEnd);
}

TEST(Catalogue, NamesFindTheirEntry) {
  const struct {
    const char* typed;
    const char* name;  // null if there is none
  } materials[] = {
      {"kapton", "kapton"},
      {"stainless steel 304", "stainless-steel-304"},
      {"stainless-steel", "stainless-steel-304"},
      {"nitroprusside", "sodium-nitroprusside"},
      {"pvc", "pvc"},
      // Formulas in small letters are no names.
      {"fe2o3", nullptr},
      {"sic", nullptr},
      {"d2o", nullptr},
      {"iron", nullptr},
      {"Kapton", nullptr},
      {"", nullptr},
  };
  for (const auto& row : materials) {
    const auto* const found = physics::named_material(row.typed);
    EXPECT_EQ(found ? std::string(found->name) : "", row.name ? row.name : "")
        << row.typed;
  }
  const struct {
    const char* typed;
    const char* name;
    std::size_t lines;
  } sources[] = {
      {"57Co", "57Co", 8},      {"co-57", "57Co", 8},
      {"COBALT-57", "57Co", 8}, {"sn119m", "119mSn", 6},
      {"CuKa", "CuKa", 2},      {"copper anode", "Cu-anode", 3},
      {"57Fe", "", 0},          {"", "", 0},
  };
  for (const auto& row : sources) {
    const auto* const found = physics::source(row.typed);
    EXPECT_EQ(found ? std::string(found->name) : "", row.name) << row.typed;
    EXPECT_EQ(found ? found->lines.size() : 0, row.lines) << row.typed;
  }
}

}  // namespace
