#include <cmath>
#include <cstdio>

#include "attenuation/atcoefficient.h"
#include "attenuation/coefficientfile.h"
#include "attenuation/contentformula.h"
#include "attenuation/elementlist.h"
#include "base/unit.h"
#include "tests/support.h"

namespace {

// Unit 1 then stands before the six header records of a block.
void open_block(const std::string& records) {
  const tests::WorkingDirectory directory;
  tests::write("block", "\n\n\n\n\n\n" + records);
  base::unit(1).open("block");
}

float looked_up(float keV, const std::string& records) {
  float atc = -1.0F;
  open_block(records);
  attenuation::attenuation(keV, atc);
  return atc;
}

// Each energy in MeV is followed by its coefficient. A name ends the block.
std::string block_of(const std::vector<double>& points) {
  std::string records, record(64, ' ');
  for (std::size_t i = 0; i < points.size(); i += 2) {
    std::snprintf(record.data(), 64, "   %11.5E  %9.3E\n", points[i],
                  points[i + 1]);
    records += record.c_str();
  }
  return records + " end";
}

// Energies of 1, 2, ... MeV with the coefficients 1, 4, 9, ...: a parabola.
std::string squares(int count) {
  std::vector<double> points;
  for (int i = 1; i <= count; ++i)
    points.insert(points.end(), {1.0 * i, 1.0 * i * i});
  return block_of(points);
}

TEST(Attenuation, ReadsFixedColumnsUntilARecordDoesNotConvert) {
  attenuation::Block block;
  // The third record has implied decimals; a blank one is a point of zeros.
  open_block(
      "K  1.00000E-03  7.217E+00  6.820E+00 and more\n"
      "*  1.5     -03  4   +00    1d0\n"
      "+   1 2 3 4      1 5\n"
      "\n"
      " Helium\n"
      "   9.00000E-01  9.000E+00\n");
  attenuation::read_block(block);
  ASSERT_EQ(block.points, 4);
  EXPECT_EQ(block.xi(2), 1.5e-3);
  EXPECT_EQ(block.yi(2), 4e-3);
  EXPECT_EQ(block.xi(3), 0.01234);
  EXPECT_EQ(block.yi(3), 0.015);
}

TEST(Attenuation, ChoosesPointsAroundEdges) {
  const std::string edge =
      block_of({1, 1, 2, 4, 4, 16, 4, 160, 5, 250, 6, 360, 7, 490});
  // Table points, on the edge the value above it; three points below the edge
  // and above; four points again. Three points lose digits to single precision.
  for (const auto& f : tests::table("1000,1|2000,4|4000,160|3000,9|"
                                    "4500,202.5|5500,302.5")) {
    EXPECT_NEAR(looked_up(std::stof(f[0]), edge) / std::stof(f[1]), 1, 1e-4);
  }
  // Expected: the formulas in Python, every single-precision step rounded
  // through struct.pack('f'). A product decides, at the keV that make 0.338F
  // MeV; then three points below an edge.
  EXPECT_EQ(looked_up(337.99997F,
                      block_of({0.21, 4.5, 0.3, 4.1, 0.71, 5.9, 0.78, 7.1})),
            0x1.fc6b6cp+1F);
  EXPECT_EQ(looked_up(8.5F, block_of({0.00711, 407.6, 0.008, 305.6, 0.01, 170.6,
                                      0.01, 999})),
            0x1.03a000p+8F);
}

TEST(Attenuation, HoldsUpTo64PointsAndNoEnergyBeyond) {
  for (const int count : {63, 64, 65})
    EXPECT_FLOAT_EQ(looked_up(61500, squares(count)), 3782.25F) << count;
  EXPECT_FLOAT_EQ(looked_up(61500, squares(64).substr(0, 64 * 26)), 3782.25F);
  EXPECT_THROW(looked_up(20500, squares(63).substr(0, 63 * 26)),
               base::EndOfFile);
  for (const float keV : {1500.0F, 9500.0F, 10000.0F})
    EXPECT_THROW(looked_up(keV, squares(10)), base::RangeError) << keV;
  const auto end = tests::fatal_end_of([] { looked_up(9500.5F, squares(10)); });
  EXPECT_EQ(end.advice(),
            "the photon energy 9500.5 keV is outside the usable table, which "
            "runs from 2000 keV to 9000 keV");
  EXPECT_EQ(looked_up(9000, squares(10)), 81.0F);
}

class RealData : public testing::Test {
 protected:
  RealData() { read_element_list(elements_); }

  void read(const std::string& formula) {
    attenuation::contentformula(formula, elements_.es, j_, indx_, mult_);
  }
  float coefficient(const std::string& formula, float keV) {
    read(formula);
    float atc = 0;
    tests::output_of("\n", [&] {
      attenuation::atcoefficient(5, 6, j_, indx_, mult_, elements_.ename,
                                 elements_.emolweight, keV, atc);
    });
    return atc;
  }

  const tests::WorkingDirectory in_data_{DATA_DIR};
  attenuation::ElementList elements_;
  int j_ = 0;
  attenuation::Composition indx_{"indx"}, mult_{"mult"};
};

TEST_F(RealData, EveryElementWorksAloneAndInCompounds) {
  for (int z = 1; z <= attenuation::kElements; ++z) {
    const auto& name = elements_.ename(z);
    for (const float keV : {1.6F, 14.4F, 122.0F, 1332.0F, 20000.0F}) {
      float alone = 0;
      base::Text<16> record;
      attenuation::find_element(name, record);
      attenuation::attenuation_of(name, keV, alone);
      EXPECT_GT(alone, 0) << name.full();
      const std::string symbol(elements_.es(z).trimmed());
      EXPECT_FLOAT_EQ(coefficient(symbol + "_1", keV), alone) << keV;
    }
  }
}

// mu/rho in cm2/g of NIST XCOM, total with coherent scattering.
TEST_F(RealData, AgreesWithXcomAtGammaLines) {
  // At 14.4129, 122.0607 and 136.4736 keV.
  for (const auto& f : tests::table("C_1,0.889,0.1431,0.1385|"
                                    "Al_1,8.945,0.1520,0.1439|"
                                    "Fe_1,63.68,0.2621,0.2222|"
                                    "Cu_1,82.59,0.3098,0.2561|"
                                    "Sn_1,51.89,1.005,0.7631|"
                                    "Pb_1,124.1,3.362,2.546")) {
    const auto ratio = [&](float keV, const std::string& mu_rho) {
      return coefficient(f[0], keV) / std::stof(mu_rho);
    };
    EXPECT_NEAR(ratio(14.4129F, f[1]), 1, 0.003) << f[0];
    EXPECT_NEAR(ratio(122.0607F, f[2]), 1, 0.003) << f[0];
    EXPECT_NEAR(ratio(136.4736F, f[3]), 1, 0.003) << f[0];
  }
  // Mylar in Python from the table, rounded as the fit is.
  EXPECT_FLOAT_EQ(coefficient("C_5C_5H_8O_4", 14.4F), 1.2577950F);
  EXPECT_TRUE(std::isnan(coefficient("C_0", 14.4F))) << "no atoms";
}

TEST_F(RealData, FormulasAreSymbolUnderscoreCount) {
  const std::string twelve = "H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1H_1";
  // With every count as it was read. The second digit behind two letters is
  // taken twice; a third counts where the second is none, and swallows it.
  for (const auto& f :
       tests::table("   N_2H_8Fe_1C_100,N_2H_8Fe_1C_100|Fe_12xO_1,Fe_122O_1|"
                    "Fe_9Fe_3,Fe_9Fe_3|C_1x2O_1,C_12O_1|" +
                    twelve + "," + twelve + "|H_2O,H_2O_-16")) {
    read(f[0]);
    EXPECT_EQ(attenuation::written_out(elements_.es, j_, indx_, mult_), f[1]);
  }
  EXPECT_EQ(indx_(2), 8) << "O";
  EXPECT_CAUSE(
      read(twelve + "H_1"),
      "Index '13' of dimension 1 of array 'indx' above upper bound of 12");
  for (const char* bad : {"", "H2O", "CU_1", "C_1:O_1", "C_1/", "*"}) {
    EXPECT_CAUSE(
        read(bad),
        "Index '83' of dimension 1 of array 'es' above upper bound of 82");
  }
}

}  // namespace
