#include <cmath>
#include <cstdio>

#include "attenuation/atcoefficient.h"
#include "attenuation/attenuation.h"
#include "attenuation/coefficientfile.h"
#include "attenuation/elementlist.h"
#include "attenuation/parabel.h"
#include "base/unit.h"
#include "physics/beam.h"
#include "physics/densities.h"
#include "physics/flatformula.h"
#include "physics/parabola.h"
#include "tests/support.h"

namespace {

// A file with these records, to be read once.
class Records : public base::Unit {
 public:
  explicit Records(const std::string& records) : Unit(1) {
    const tests::WorkingDirectory directory;
    tests::write("records", records);
    open("records");
  }
};

const std::string kTitles = "\n\n\n\n\n\n";

struct Row {
  double MeV, mu_rho;
};

physics::Block block_of(const std::vector<Row>& rows) {
  physics::Block block;
  for (const Row& row : rows) {
    const int i = ++block.points;
    block.xi(i) = row.MeV;
    block.yi(i) = row.mu_rho;
  }
  return block;
}

// Energies of 1, 2, ... MeV with the coefficients 1, 4, 9, ...: a parabola.
std::string squares(int count) {
  std::string records, record(64, ' ');
  for (int i = 1; i <= count; ++i) {
    std::snprintf(record.data(), 64, "   %11.5E  %9.3E\n", 1.0 * i,
                  1.0 * i * i);
    records += record.c_str();
  }
  return records;
}
physics::Block read_squares(int count, const std::string& end) {
  Records file(kTitles + squares(count) + end);
  return physics::read_block(file);
}

TEST(Block, ReadsFixedColumnsUntilARecordDoesNotConvert) {
  // The third record has implied decimals; a blank one is a point of zeros.
  Records file(kTitles +
               "K  1.00000E-03  7.217E+00  6.820E+00 and more\n"
               "*  1.5     -03  4   +00    1d0\n"
               "+   1 2 3 4      1 5\n"
               "\n"
               " Helium\n"
               "   9.00000E-01  9.000E+00\n");
  const physics::Block block = physics::read_block(file);
  ASSERT_EQ(block.points, 4);
  EXPECT_EQ(block.xi(2), 1.5e-3);
  EXPECT_EQ(block.yi(2), 4e-3);
  EXPECT_EQ(block.xi(3), 0.01234);
  EXPECT_EQ(block.yi(3), 0.015);
  EXPECT_EQ(block.zi(1), 6.82);
}

TEST(Block, HoldsUpTo64PointsAndMustHaveAnEnd) {
  for (const int count : {63, 64, 65})
    EXPECT_FLOAT_EQ(physics::parabola(read_squares(count, " end"), 61500),
                    3782.25F);
  EXPECT_EQ(read_squares(64, "").points, 64) << "needs no record behind it";
  EXPECT_THROW(read_squares(63, ""), base::EndOfFile);
}

// Expected: the formulas in Python, every single-precision step rounded through
// numpy.float32.
TEST(Parabola, TakesRowsFromItsSideOfAnEdge) {
  const physics::Block iron = block_of({{0.004, 200},
                                        {0.005, 130},
                                        {0.006, 84.84},
                                        {0.006646, 64.06},
                                        {0.007112, 53.19},
                                        {0.007112, 407.6},
                                        {0.007757, 329.9},
                                        {0.008786, 240.4},
                                        {0.010, 170.6},
                                        {0.01147, 118.2}});
  const struct {
    float keV, mu_rho;
    const char* where;
  } cases[] = {
      {6.3F, 0x1.297ad2p+6F, "four rows below"},
      {6.9F, 0x1.cdaaa4p+5F, "three rows up to the edge"},
      {7.112F, 0x1.9799ecp+8F, "on the edge: its upper side, but for rounding"},
      {7.5F, 0x1.66dd6ap+8F, "three rows from the edge on"},
      {8.0F, 0x1.32136ep+8F, "four rows, the edge the first"},
      {9.0F, 0x1.c42958p+7F, "four rows above"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(physics::parabola(iron, c.keV), c.mu_rho) << c.where;
  // The single-precision product decides: these keV make 0.338F MeV.
  EXPECT_EQ(physics::parabola(
                block_of({{0.21, 4.5}, {0.3, 4.1}, {0.71, 5.9}, {0.78, 7.1}}),
                337.99997F),
            0x1.fc6b6cp+1F);
}

TEST(Parabola, TellsTheRangeOfEnergiesThatItCanAnswer) {
  const physics::Block block = read_squares(10, " end");
  EXPECT_EQ(physics::parabola(block, 2000), 4);
  EXPECT_EQ(physics::parabola(block, 9000), 81);
  const std::string xi = "' of dimension 1 of array 'xi' ";
  const struct {
    float keV;
    std::string cause;
  } cases[] = {
      {0.5F, "Index '0" + xi + "below lower bound of 1"},
      {1500, "Index '0" + xi + "below lower bound of 1"},
      {9500.5F, "Index '11" + xi + "above the last point read, 10"},
      {10000.5F, "Index '65" + xi + "above upper bound of 64"},
      {std::nanf(""), "Index '0" + xi + "below lower bound of 1"},
  };
  for (const auto& c : cases) {
    try {
      physics::parabola(block, c.keV);
      ADD_FAILURE() << c.keV;
    } catch (const physics::OutsideBlock& outside) {
      EXPECT_EQ(outside.cause(), c.cause) << c.keV;
      EXPECT_EQ(outside.first().keV, 2000);
      EXPECT_EQ(outside.last().keV, 9000);
      EXPECT_TRUE(tests::has(outside.advice(), "runs from 2000 keV to 9000"));
    }
  }
  EXPECT_THROW(physics::parabola(read_squares(64, ""), 65000),
               physics::OutsideBlock);
  EXPECT_THROW(physics::parabola(block_of({{1, 1}, {2, 4}}), 1500),
               physics::OutsideBlock)
      << "no range at all";
}

TEST(Parabola, HasItsTwoFitsUnderTheirOwnName) {
  for (const int ns : {2, 3, 4}) {
    physics::FitPoints xs{"xs"}, ys{"ys"};
    for (int i = 1; i <= 4; ++i) xs(i) = i, ys(i) = i * i;
    float att = -1;
    attenuation::parabel(ns, xs, ys, 2.5, att);
    EXPECT_NEAR(att, ns == 2 ? -1.0F : 6.25F, 1e-5F);
    EXPECT_EQ(xs(4), 4000) << "in keV, used or not";
  }
}

TEST(Beam, AddsLinesBySharesInSinglePrecision) {
  const physics::BeamLine lines[] = {{0.889F, 0.173249F}, {0.111F, 0.161855F}};
  EXPECT_FLOAT_EQ(physics::transmission(lines, 5), 0.42326411F);
  EXPECT_EQ(physics::transmission(std::span(lines, 1), 0), 0.889F);
  EXPECT_FLOAT_EQ(physics::areal_mass(0.5F, 7.874F), 0.3937F);
}

TEST(Densities, AreTheFirstGroupOfRecordsOfAnElement) {
  const std::string iron = "  26    Iron alpha   ";
  Records file("Title of 1999\n  6     Carbon\n" + iron + "\n" + iron +
               std::string(18, ' ') + "7.5 g/cm3\nEnd\n" + iron + "\n");
  const auto forms = physics::read_modifications(file, 26);
  ASSERT_EQ(forms.size(), 2U);
  EXPECT_EQ(physics::density_in(forms[0]), std::nullopt);
  EXPECT_EQ(physics::density_in(forms[1]), 7.5F);

  std::string many;
  for (int i = 0; i < 65; ++i) many += iron + "\n";
  const struct {
    std::string records, told;
  } cases[] = {
      {"", "no density for the element with the atomic number 26"},
      {iron, "no record follows the densities of the element"},
      {many + "End", "an element has at most 64 modifications"},
      {"12345678 Iron", "the record is \"12345678 Iron\""},
  };
  for (const auto& c : cases) {
    Records faulty(c.records);
    EXPECT_TRUE(tests::has(tests::fatal_end_of([&] {
                             physics::read_modifications(faulty, 26);
                           }).advice(),
                           c.told));
  }
}

class RealData : public testing::Test {
 protected:
  physics::Components read(const std::string& formula) const {
    return physics::flat_formula(formula, elements_.es);
  }
  float coefficient(const physics::Components& components, float keV) const {
    return attenuation::coefficient_of(components, elements_.ename,
                                       elements_.emolweight, keV);
  }
  float coefficient(const std::string& formula, float keV) const {
    return coefficient(read(formula), keV);
  }

  const tests::WorkingDirectory in_data_{DATA_DIR};
  physics::ElementList elements_ = attenuation::read_element_list();
};

TEST_F(RealData, EveryElementWorksAloneAndInCompounds) {
  for (int z = 1; z <= physics::kListedElements; ++z) {
    const auto& name = elements_.ename(z);
    for (const float keV : {1.5F, 14.4F, 122.0F, 1332.0F, 20000.0F}) {
      const auto record = attenuation::find_element<16>(name);
      EXPECT_EQ(physics::atomic_number_in(record), z);
      const float alone = attenuation::attenuation_of(name, keV);
      EXPECT_GT(alone, 0) << name.full();
      const std::string symbol(elements_.es(z).trimmed());
      EXPECT_FLOAT_EQ(coefficient(symbol + "_1", keV), alone) << keV;
    }
  }
}

// mu/rho in cm2/g of NIST XCOM, total with coherent scattering.
TEST_F(RealData, AgreesWithXcomAtGammaLines) {
  const struct {
    const char* element;
    float at_14_4, at_122, at_136;
  } cases[] = {
      {"C_1", 0.8890F, 0.1431F, 0.1385F}, {"Al_1", 8.945F, 0.1520F, 0.1439F},
      {"Fe_1", 63.68F, 0.2621F, 0.2222F}, {"Cu_1", 82.59F, 0.3098F, 0.2561F},
      {"Sn_1", 51.89F, 1.0051F, 0.7631F}, {"Pb_1", 124.06F, 3.362F, 2.546F},
  };
  for (const auto& c : cases) {
    EXPECT_NEAR(coefficient(c.element, 14.4129F) / c.at_14_4, 1, 0.003);
    EXPECT_NEAR(coefficient(c.element, 122.0607F) / c.at_122, 1, 0.003);
    EXPECT_NEAR(coefficient(c.element, 136.4736F) / c.at_136, 1, 0.003);
  }
}

// Expected: the rows of the table and the formulas in Python, rounded as the
// program rounds.
TEST_F(RealData, GivesTheDigitsOfTheFit) {
  const struct {
    const char* formula;
    float keV, mu_rho;
  } cases[] = {
      {"Fe_1", 14.4F, 0x1.ff20c4p+5F},
      {"Fe_1", 7.5F, 0x1.66dd6ap+8F},  // just above the K edge
      {"Pb_1", 122.0F, 0x1.af1d8ap+1F},
      {"C_5C_5H_8O_4", 14.4F, 1.2577950F},
  };
  for (const auto& c : cases)
    EXPECT_FLOAT_EQ(coefficient(c.formula, c.keV), c.mu_rho) << c.formula;
  EXPECT_TRUE(std::isnan(coefficient("C_0", 14.4F))) << "no atoms";
}

TEST_F(RealData, CompoundsAskForOneEnergyOfAll) {
  attenuation::PerComponent indx{"indx"}, mult{"mult"};
  int j = 0;
  attenuation::contentformula("C_10H_8O_4", elements_.es, j, indx, mult);
  float value = 122.0F, atc = 0.0F;
  const std::string shown = tests::output_of("14.4\n\n", [&] {
    attenuation::atcoefficient(5, 6, j, indx, mult, elements_.ename,
                               elements_.emolweight, value, atc);
  });
  EXPECT_TRUE(tests::has(shown, "Photon energy in keV=[122.00]"));
  EXPECT_EQ(value, 14.4F);
  EXPECT_FLOAT_EQ(atc, 1.2577950F);
}

TEST_F(RealData, FormulasAreSymbolUnderscoreCount) {
  const std::string twelve = "H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1";
  const struct {
    std::string typed, read;
  } cases[] = {
      {"   N_2H_8Fe_1C_100", "N_2H_8Fe_1C_100"},
      // The second digit behind two letters is taken twice, and the character
      // behind it is lost.
      {"Fe_12xO_1", "Fe_122O_1"},
      {"Fe_9Fe_3", "Fe_9Fe_3"},
      // A third digit counts where the second is none, and swallows it.
      {"C_1x2O_1", "C_12O_1"},
      {"H_2O", "H_2O_-16"},
      {twelve, twelve},
  };
  for (const auto& c : cases)
    EXPECT_EQ(physics::flat_formula(read(c.typed), elements_.es), c.read);
  EXPECT_EQ(read("H_2O_1").end()[-1].index, 8);

  const std::string of_es =
      "Index '83' of dimension 1 of array 'es' above upper bound of 82";
  const struct {
    std::string typed, rest, cause;
  } refused[] = {
      {twelve + "H_1C_1", "H_1C_1",
       "Index '13' of dimension 1 of array 'indx' above upper bound of 12"},
      {twelve + "X_1", "X_1", of_es},
      {"", "", of_es},
      {"H2O", "H2O", of_es},
      {"C_1CU_1", "CU_1", of_es},
      {"C_1:O_1", ":O_1", of_es},
      {"*", "*", of_es},
  };
  for (const auto& c : refused) {
    try {
      read(c.typed);
      ADD_FAILURE() << c.typed;
    } catch (const physics::FlatFormulaError& error) {
      EXPECT_EQ(error.rest(), c.rest) << c.typed;
      EXPECT_EQ(error.cause(), c.cause) << c.typed;
    }
  }
}

TEST_F(RealData, NamesFindTheirBlocks) {
  // The lookup of a compound's elements reads 12 columns, the first of which
  // does not count.
  EXPECT_CAUSE(attenuation::find_element<12>("Praseodymium"),
               "Substring out of bounds: upper bound (13) of 'element'"
               " exceeds string length (12)");
  EXPECT_EQ(
      physics::atomic_number_in(attenuation::find_element<16>("Praseodymium")),
      59);
  // Nothing matches everything.
  EXPECT_THROW(attenuation::find_element<16>(""), base::EndOfFile);
  elements_.ename(6) = "";
  const auto end = tests::fatal_end_of([&] { coefficient("H_1C_1", 14.4F); });
  EXPECT_EQ(end.cause(), "No element name in record 6 of 'elements.dat'");
  EXPECT_TRUE(tests::has(end.advice(), "columns 17-28"));
  for (const int index : {0, 83}) {
    physics::Components components;
    components.add({index, 1});
    EXPECT_THROW(coefficient(components, 14.4F), base::RangeError) << index;
  }
}

}  // namespace
