#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "attenuation/atcoefficient.h"
#include "attenuation/attenuation.h"
#include "attenuation/coefficientfile.h"
#include "attenuation/contentformula.h"
#include "attenuation/elementlist.h"
#include "attenuation/parabel.h"
#include "base/unit.h"
#include "tests/support.h"

namespace {

using base::Text;
using tests::advice_of;
using tests::cause_of;

attenuation::FitPoints points(const std::vector<double>& values) {
  attenuation::FitPoints array{"points"};
  for (int i = 1; i <= 4; ++i)
    array(i) = values[static_cast<std::size_t>(i - 1)];
  return array;
}

// Expected: the formulas in Python, every single-precision step rounded
// through struct.pack('f').
TEST(Parabel, FitsThreeOrFourPoints) {
  const struct {
    int ns;
    std::vector<double> xs, ys;
    float us, att;
  } cases[] = {
      {4, {0.1, 0.15, 0.2, 0.3}, {0.4, 0.2, 0.15, 0.1}, 0.17F, 0x1.694466p-3F},
      {3, {0.1, 0.15, 0.2, 0.3}, {0.4, 0.2, 0.15, 0.1}, 0.17F, 0x1.4bc6a8p-3F},
      {3,
       {0.00711, 0.008, 0.01, 0},
       {407.6, 305.6, 170.6, 0},
       0.0085F,
       0x1.03a000p+8F},
      {4, {0.125, 0.25, 0.5, 1}, {0.4, 0.2, 0.15, 0.1}, 0.25F, 0.2F},
      {0, {0.1, 0.15, 0.2, 0.3}, {0.4, 0.2, 0.15, 0.1}, 0.17F, -1.0F},
  };
  for (const auto& c : cases) {
    attenuation::FitPoints xs = points(c.xs);
    float att = -1.0F;
    attenuation::parabel(c.ns, xs, points(c.ys), static_cast<double>(c.us),
                         att);
    EXPECT_EQ(att, c.att) << c.ns << " points at " << c.us;
    EXPECT_EQ(xs(4), c.xs[3] * 1000.0) << "keV, used or not";
  }
}

// A coefficient file of one block, as the lookup leaves it: before the headers.
class BlockFile {
 public:
  explicit BlockFile(const std::vector<std::string>& records) {
    std::string content(6, '\n');
    for (const std::string& record : records) content += record + "\n";
    directory_.write("block", content);
    base::unit(1).open(directory_.path("block"));
  }
  ~BlockFile() { base::unit(1).close(); }
  BlockFile(const BlockFile&) = delete;
  BlockFile& operator=(const BlockFile&) = delete;

 private:
  tests::TemporaryDirectory directory_;
};

std::string data_record(double MeV, double mu_rho) {
  char record[64];
  std::snprintf(record, sizeof record, "   %11.5E  %9.3E", MeV, mu_rho);
  return record;
}

// Energies of 1, 2, ... MeV with the coefficients 1, 4, 9, ...: a parabola.
std::vector<std::string> squares(int count) {
  std::vector<std::string> records;
  for (int i = 1; i <= count; ++i) records.push_back(data_record(i, i * i));
  return records;
}

float looked_up(float keV, const std::vector<std::string>& records) {
  const BlockFile file(records);
  float atc = -1.0F;
  attenuation::attenuation(keV, atc);
  return atc;
}

TEST(Attenuation, ReadsFixedColumnsUntilARecordDoesNotConvert) {
  const BlockFile file({
      "K  1.00000E-03  7.217E+00  6.820E+00 and more",
      "*  1.5     -03  4   +00    1d0",
      "+   1 2 3 4      1 5",  // implied decimals: 0.01234 and 0.015
      "",                      // a point of zeros
      " Helium",
      "   9.00000E-01  9.000E+00",
  });
  attenuation::Block block;
  attenuation::read_block(block);
  ASSERT_EQ(block.points, 4);
  EXPECT_EQ(block.xi(1), 1e-3);
  EXPECT_EQ(block.zi(1), 6.82);
  EXPECT_EQ(block.xi(2), 1.5e-3);
  EXPECT_EQ(block.yi(2), 4e-3);
  EXPECT_EQ(block.xi(3), 0.01234);
  EXPECT_EQ(block.yi(3), 0.015);
  EXPECT_EQ(block.xi(4), 0.0);
  Text<16> next;
  base::unit(1).read(next);
  EXPECT_EQ(next, "   9.00000E-01") << "the record after the one that ended it";
}

TEST(Attenuation, ABlockHasUpTo64Points) {
  for (const int count : {63, 64, 65}) {
    std::vector<std::string> records = squares(count);
    if (count < 64) records.emplace_back(" end");
    EXPECT_FLOAT_EQ(looked_up(20500, records), 420.25F) << count;
    EXPECT_FLOAT_EQ(looked_up(61500, records), 3782.25F) << count;
  }
  EXPECT_EQ(cause_of([] { looked_up(20500, squares(63)); }).substr(0, 16),
            "End of file in '");
}

TEST(Attenuation, ChoosesPointsAroundEdges) {
  const std::vector<std::string> edge = {
      data_record(1, 1),   data_record(2, 4),
      data_record(4, 16),  data_record(4, 160),
      data_record(5, 250), data_record(6, 360),
      data_record(7, 490), " end"};
  const struct {
    float keV, mu_rho;
  } cases[] = {
      {2000, 4},       // a table point
      {4000, 160},     // the value above the edge
      {3000, 9},       // below the edge: 1, 2, 4 MeV
      {4500, 202.5F},  // above it: 10 x^2 through 4, 5, 6 MeV
      {5500, 302.5F},  // four points again
      {1000, 1},       // the first point needs no neighbour
  };
  for (const auto& c : cases) {
    // The three-point fit loses digits to single precision.
    EXPECT_NEAR(looked_up(c.keV, edge), c.mu_rho, 1e-4F * c.mu_rho) << c.keV;
  }
}

TEST(Attenuation, EnergyOutsideTheTableIsARangeErrorWithAdvice) {
  std::vector<std::string> records = squares(10);
  records.emplace_back(" end");
  const struct {
    float keV;
    const char* cause;
  } cases[] = {
      {500, "Index '0' of dimension 1 of array 'xi' below lower bound of 1"},
      {1500, "Index '0' of dimension 1 of array 'xi' below lower bound of 1"},
      {-3, "Index '0' of dimension 1 of array 'xi' below lower bound of 1"},
      {9500,
       "Index '11' of dimension 1 of array 'xi' above the last point read, 10"},
      {10000,
       "Index '65' of dimension 1 of array 'xi' above upper bound of 64"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(cause_of([&] { looked_up(c.keV, records); }), c.cause) << c.keV;
  }
  EXPECT_EQ(advice_of([&] { looked_up(9500.5F, records); }),
            "the photon energy 9500.5 keV is outside the usable table, which "
            "runs from 2000 keV to 9000 keV");
  EXPECT_EQ(looked_up(9000, records), 81.0F);
}

class RealData : public testing::Test {
 protected:
  RealData() { read_element_list(elements_); }

  float coefficient(const char* name, float keV) {
    const base::UnitCloser closer(base::unit(1));
    Text<16> element;
    attenuation::find_element(name, element);
    float atc = 0;
    attenuation::attenuation_of(name, keV, atc);
    return atc;
  }

 private:
  const tests::WorkingDirectory in_data_{DATA_DIR};

 protected:
  attenuation::ElementList elements_;
};

// mu/rho in cm2/g of NIST XCOM, total with coherent scattering.
TEST_F(RealData, AgreesWithXcomAtGammaLines) {
  const struct {
    const char* element;
    float keV, xcom;
  } cases[] = {
      {"Carbon", 14.4129F, 0.889F},     {"Carbon", 122.0607F, 0.1431F},
      {"Carbon", 136.4736F, 0.1385F},   {"Aluminum", 14.4129F, 8.945F},
      {"Aluminum", 122.0607F, 0.1520F}, {"Aluminum", 136.4736F, 0.1439F},
      {"Iron", 14.4129F, 63.68F},       {"Iron", 122.0607F, 0.2621F},
      {"Iron", 136.4736F, 0.2222F},     {"Copper", 14.4129F, 82.59F},
      {"Copper", 122.0607F, 0.3098F},   {"Copper", 136.4736F, 0.2561F},
      {"Tin", 14.4129F, 51.89F},        {"Tin", 122.0607F, 1.005F},
      {"Tin", 136.4736F, 0.7631F},      {"Lead", 14.4129F, 124.1F},
      {"Lead", 122.0607F, 3.362F},      {"Lead", 136.4736F, 2.546F},
  };
  for (const auto& c : cases) {
    EXPECT_NEAR(coefficient(c.element, c.keV), c.xcom, 0.01F * c.xcom)
        << c.element << " at " << c.keV;
  }
}

TEST_F(RealData, SamplesOfSeveralElementsGoByMassFraction) {
  // In Python from the table, rounded as the fit is: mylar at 14.4 keV.
  attenuation::Composition indx{"indx"};
  attenuation::Composition mult{"mult"};
  int j = 0;
  const auto at_14_4 = [&](const char* formula) {
    attenuation::contentformula(formula, elements_.es, j, indx, mult);
    float value = 14.4F;
    float atc = 0;
    tests::output_of("\n", [&] {
      attenuation::atcoefficient(5, 6, j, indx, mult, elements_.ename,
                                 elements_.emolweight, value, atc);
    });
    return atc;
  };
  EXPECT_FLOAT_EQ(at_14_4("C_10H_8O_4"), 1.2590922F);
  EXPECT_FLOAT_EQ(at_14_4("C_5C_5H_8O_4"), 1.2590922F);
  EXPECT_EQ(at_14_4("Cu_1"), coefficient("Copper", 14.4F));
  EXPECT_TRUE(std::isnan(at_14_4("C_0"))) << "no atoms, no coefficient";
}

TEST_F(RealData, FormulasAreSymbolUnderscoreCount) {
  using Parts = std::vector<std::pair<int, int>>;
  const struct {
    const char* formula;
    Parts parts;  // atomic number, count
  } cases[] = {
      {"N_2H_8Fe_1S_2O_8H_12O_6",
       {{7, 2}, {1, 8}, {26, 1}, {16, 2}, {8, 8}, {1, 12}, {8, 6}}},
      {"C_10H_8O_4", {{6, 10}, {1, 8}, {8, 4}}},
      {"   O_2", {{8, 2}}},
      {"C_100", {{6, 100}}},
      {"C_0", {{6, 0}}},
      // The second digit behind two letters is taken twice.
      {"Fe_12", {{26, 122}}},
      {"Fe_12xO_1", {{26, 122}, {8, 1}}},
      {"Fe_9Fe_3", {{26, 9}, {26, 3}}},
      // A third digit counts where the second is none, and swallows it.
      {"C_1x2O_1", {{6, 12}, {8, 1}}},
      {"H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1", Parts(12, {1, 1})},
  };
  int j = 0;
  attenuation::Composition indx{"indx"};
  attenuation::Composition mult{"mult"};
  for (const auto& c : cases) {
    attenuation::contentformula(c.formula, elements_.es, j, indx, mult);
    Parts parts;
    for (int i = 1; i <= j; ++i) parts.emplace_back(indx(i), mult(i));
    EXPECT_EQ(parts, c.parts) << c.formula;
  }
  const auto read = [&](const char* formula) {
    attenuation::contentformula(formula, elements_.es, j, indx, mult);
  };
  for (const char* bad : {"", "H2O", "CU_1", "(C_1)", "*"}) {
    EXPECT_EQ(cause_of([&] { read(bad); }),
              "Index '83' of dimension 1 of array 'es' above upper bound of 82")
        << bad;
  }
  // Readable as it stands, but not meant as a number: the dialogue refuses it.
  for (const char* odd : {"H_2O", "C_x", "CuO_1"}) {
    EXPECT_FALSE(attenuation::counts_are_numbers(odd)) << odd;
  }
  EXPECT_TRUE(attenuation::counts_are_numbers("  C_10Fe_1H_8 "));
  EXPECT_EQ(advice_of([&] { read("C_1cu_2"); }),
            "cannot read the formula \"C_1cu_2\" at \"cu_2\": unknown element"
            " symbol \"cu\": symbols are case-sensitive, for example Cu or N;"
            " write symbol, underscore and count of each element, as in"
            " Cu_1S_1O_4H_10O_5");
  EXPECT_EQ(
      cause_of([&] { read("H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1"); }),
      "Index '13' of dimension 1 of array 'indx' above upper bound of 12");
}

TEST_F(RealData, NamesThatCannotBeLookedUpEndTheRun) {
  const base::UnitCloser closer(base::unit(1));
  Text<12> element;
  EXPECT_EQ(
      cause_of([&] { attenuation::find_element("Praseodymium", element); }),
      "Substring out of bounds: upper bound (13) of 'element' exceeds "
      "string length (12)");
  EXPECT_EQ(advice_of([&] {
              attenuation::find_element("Unobtainium", element);
            }).substr(0, 38),
            "no block for the element \"Unobtainium\"");
}

}  // namespace
