#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>
#include <string>

#include "physics/absorber.h"
#include "physics/capillary.h"
#include "physics/errors.h"
#include "physics/spectrum.h"
#include "physics/table.h"
#include "physics/xafs.h"

namespace {

using physics::Bin;
using physics::Bins;

constexpr double kInfinite = std::numeric_limits<double>::infinity();

const physics::Transition& iron57() {
  const auto all = physics::transitions();
  return *std::find_if(all.begin(), all.end(), [](const auto& transition) {
    return transition.isotope == "57Fe";
  });
}

TEST(Absorber, ResonantAbsorptionKeepsItsDigitsForThinAndThick) {
  // Expected: the series of I0 with 60 digits.
  const struct {
    double t, eps;
  } cases[] = {
      {0.0, 0.0},
      {1e-12, 4.9999999999981248e-13},
      {1e-3, 0.00049981255207194218},
      {0.999, 0.3547203392468255},
      {1.0, 0.35496472955084996},
      {10.0, 0.81645918739067169},
      {59.9, 0.92679249508885109},
      {60.1, 0.92691545689448651},
      {1000.0, 0.98215429349984684},
      {1e6, 1.0 - (1.0 + 0.25e-6) / std::sqrt(3.14159265358979324e6)},
  };
  for (const auto& c : cases)
    EXPECT_NEAR(physics::resonant_absorption(c.t), c.eps, 1e-14 * c.eps) << c.t;
}

TEST(Absorber, NaturalIronHasAnEffectiveThicknessOf0564PerMilligram) {
  const auto iron = physics::resonance(physics::material("Fe"), iron57());
  EXPECT_NEAR(physics::resonance_cross_section(iron57()), 2.466e-18, 1e-21);
  EXPECT_NEAR(
      physics::resonance_cross_section(iron57()) * iron.nuclei_per_g * 1e-3,
      0.564, 5e-4);
}

TEST(Absorber, ThinLinesHaveTheirBestMuxByBackgroundAlone) {
  const struct {
    double background, x;
  } cases[] = {{0.0, 2.0}, {0.5, 1.23}, {1.0, 1.14}, {kInfinite, 1.0}};
  for (const auto& c : cases) {
    const auto best =
        physics::best_thickness({{50.0}, 1e-6, c.background}).best;
    EXPECT_NEAR(50.0 * best.g_cm2, c.x, 0.005) << c.background;
  }
  // Hardly any nuclei, and so much material that nothing passes.
  const physics::Absorber poor{{50.0}, 1e-200, 0.0};
  EXPECT_NEAR(50.0 * physics::best_thickness(poor).best.g_cm2, 2.0, 1e-6);
  EXPECT_EQ(physics::merit(poor, {100.0}), 0.0);
  // A line that saturates at once: eps is 1 - 1/sqrt(pi t), so that the best x
  // is (pi t/x)^(-1/3).
  const auto best = physics::best_thickness({{50.0}, 50e9, 0.0}).best;
  EXPECT_NEAR(50.0 * best.g_cm2, std::cbrt(1e-9 / 3.14159265), 2e-6);
}

TEST(Absorber, BestThicknessOfCommonAbsorbers) {
  const struct {
    const char* material;
    double f, weight, best_0, best_1;  // mg/cm2 without background, and b = 1
  } cases[] = {
      {"Fe", 0.80, 0.25, 16, 12},
      {"Fe2O3", 0.80, 0.25, 23, 16},
      {"Na2Fe(CN)5NO*2H2O", 0.367, 0.5, 82, 57},
      {"K4Fe(CN)6*3H2O", 0.31, 1.0, 61, 42},
  };
  physics::Transition transition = iron57();
  transition.alpha = 8.55;
  for (const auto& c : cases) {
    const auto r =
        physics::resonance(physics::material(c.material), transition);
    const double t = physics::resonance_cross_section(transition) *
                     r.nuclei_per_g * c.f * c.weight;
    for (const auto& [b, wanted] :
         {std::pair{0.0, c.best_0}, {1.0, c.best_1}}) {
      const physics::Absorber absorber{r.mu_rho, t, b};
      const auto found = physics::best_thickness(absorber);
      EXPECT_NEAR(1e3 * found.best.g_cm2, wanted, 0.5) << c.material << b;
      const double best = physics::merit(absorber, found.best);
      EXPECT_NEAR(physics::merit(absorber, found.thinnest), best / 1.1, 1e-9);
      EXPECT_NEAR(physics::merit(absorber, found.thickest), best / 1.1, 1e-9);
      EXPECT_LT(found.thinnest, found.best);
      EXPECT_GT(found.thickest, found.best);
    }
  }
}

TEST(Absorber, EnrichmentChangesMassAndShareButNotTheAtoms) {
  const auto natural = physics::resonance(physics::material("Fe2O3"), iron57());
  const auto named =
      physics::resonance(physics::material("^57Fe2O3"), iron57());
  const auto enriched =
      physics::resonance(physics::material("Fe2O3"), iron57(), 100.0);
  // 2 x 56.935 + 3 x 15.999 against 159.687 g/mol.
  EXPECT_NEAR(natural.mu_rho.cm2_g / enriched.mu_rho.cm2_g, 161.868 / 159.687,
              1e-5);
  EXPECT_NEAR(enriched.nuclei_per_g / named.nuclei_per_g, 1.0, 1e-6);
  EXPECT_NEAR(enriched.mu_rho.cm2_g / named.mu_rho.cm2_g, 1.0, 1e-6);
  EXPECT_NEAR(enriched.element_fraction, named.element_fraction, 1e-6);
  EXPECT_THROW(physics::resonance(physics::material("SnO2"), iron57()),
               physics::InputError);
  EXPECT_THROW(physics::resonance(physics::material("^56Fe"), iron57()),
               physics::InputError);
  EXPECT_THROW(
      physics::resonance(physics::material("^57Fe2O3"), iron57(), 95.0),
      physics::InputError);
  for (const double percent : {0.0, -1.0, 100.1, std::nan("")}) {
    EXPECT_THROW(physics::resonance(physics::material("Fe"), iron57(), percent),
                 physics::InputError)
        << percent;
  }
}

TEST(Xafs, StepOfIron) {
  // By hand from the rows of iron, straight in logarithms: above the edge from
  // 407.6 at 7.112 and 305.6 at 8.000 keV, below it from 60.42 at 6.789 and
  // 53.19 at 7.112.
  const auto step =
      physics::edge_step(physics::material("Fe"), physics::table_edge(26, "K"));
  EXPECT_NEAR(step.energy.keV, 7.162, 1e-9);
  EXPECT_NEAR(step.above.cm2_g, 400.8, 1.0);
  EXPECT_NEAR(step.below.cm2_g, 52.17, 0.2);
  const auto sample = physics::xafs_sample(step, 2.6);
  EXPECT_NEAR(sample.total_absorption.g_cm2, 2.6 / 400.8, 2e-5);
  EXPECT_NEAR(sample.step, 2.6 * (400.8 - 52.2) / 400.8, 5e-3);
  EXPECT_NEAR(sample.unit_step.g_cm2, 1.0 / 348.6, 1e-5);
  EXPECT_FALSE(sample.absorption_binds());
  // As much again of what absorbs alike: half the sample for the same mu x,
  // while the step asks for as much as before.
  const auto diluted = physics::xafs_sample(step, 2.6, step.above, 1.0);
  EXPECT_NEAR(diluted.total_absorption.g_cm2,
              sample.total_absorption.g_cm2 / 2.0, 1e-12);
  EXPECT_EQ(diluted.unit_step, sample.unit_step);
}

TEST(Xafs, StepIsThatOfOneEdge) {
  // 50 eV above L3 of zinc lies beyond its L2, 23 eV above.
  const auto zinc = physics::edge_step(physics::material("Zn"),
                                       physics::table_edge(30, "L3"));
  EXPECT_EQ(zinc.energy, physics::table_edge(30, "L2").energy);
  EXPECT_NEAR(
      zinc.above.cm2_g,
      physics::mass_attenuation_below(physics::builtin().table(30), zinc.energy)
          .cm2_g,
      1e-9);
  EXPECT_GT(zinc.above.cm2_g, zinc.below.cm2_g);
  EXPECT_THROW(physics::table_edge(26, "L3"), physics::InputError);
  EXPECT_THROW(
      physics::edge_step(physics::material("Cu"), physics::table_edge(26, "K")),
      physics::InputError);
  EXPECT_THROW(
      physics::edge_step(physics::material("Fe"), physics::table_edge(26, "K"),
                         physics::Energy{-0.05}),
      physics::InputError);
}

TEST(Capillary, TransmissionOfACylinder) {
  // Expected: Struve and Bessel functions by their series with 120 digits. The
  // inverse of the second is 5.091 at mu R of 1, as in the International
  // Tables.
  const struct {
    double mu_r, width, section;
  } cases[] = {
      {0.0, 1.0, 1.0},
      {0.01, 0.984424588209727, 0.983172571473271},
      {1.0, 0.233644494805425, 0.19642602141963},
      {30.0, 0.000278010233311378, 1.1809028234933e-05},
      // The rim alone: 1/(2 mu R)^2.
      {1e4, 2.5e-9, 1e-12 / 3.14159265358979},
  };
  for (const auto& c : cases) {
    const auto found = physics::cylinder(c.mu_r);
    EXPECT_NEAR(found.axis, std::exp(-2.0 * c.mu_r), 1e-15);
    EXPECT_NEAR(found.width, c.width, 1e-7 * c.width) << c.mu_r;
    EXPECT_NEAR(found.cross_section, c.section, 1e-7 * c.section) << c.mu_r;
  }
}

TEST(Spectrum, ReadsTwoColumnsHoweverTheyAreSeparated) {
  for (const char* text : {
           "10 1\n20 0\n30 2.5e3\n",
           "# tube\n\n10\t1\tmore\r\n30\t2500\r\n",
           "energy_keV,photons\n10,1\n30,2500",
           "keV photons\n 10 , 1 \n 30;+2500\n",
           "\xEF\xBB\xBF"
           "10 1\n30 2500",
       }) {
    std::istringstream in(text);
    const auto lines = physics::read_spectrum(in);
    ASSERT_EQ(lines.size(), 2U) << text;
    EXPECT_EQ(lines[0].energy.keV, 10.0) << text;
    EXPECT_EQ(lines[1].weight, 2500.0) << text;
  }
}

TEST(Spectrum, RefusesWhatIsNone) {
  const struct {
    std::string text, message;
  } cases[] = {
      {"", "the spectrum is empty"},
      {"# only this\n", "the spectrum is empty"},
      {"10 0\n20 0\n", "no bin of the spectrum has photons"},
      {"10 1\n20\n", "line 2: one column"},
      {"10 1\n20,\n", "line 2: one column"},
      {"10 1\n20 -3\n", "line 2: less than no photons"},
      {"10 1\n20 nan\n", "line 2: 'nan' is no number of photons"},
      {"10 1\n20 1e999\n", "line 2: '1e999' is no number of photons"},
      {"nan 1\n", "line 1: 'nan' is no energy in keV"},
      {"inf 1\n", "line 1: 'inf' is no energy in keV"},
      {"0 1\n", "line 1: an energy is above 0"},
      {"-5 1\n", "line 1: an energy is above 0"},
      {"20 1\n10 1\n", "line 2: the energies do not rise"},
      {"10 1\n10 1\n", "line 2: the energies do not rise"},
      {"keV photons\nsecond heading\n", "line 2: 'second' is no energy in keV"},
      {"14,4 100\n",
       "line 1: ',' separates columns here, and something else does too"},
      {"30;1,5\n",
       "line 1: ',' separates columns here, and something else does too"},
      {std::string("10 1\0\n", 6), "line 1: binary data"},
      {"\x7F"
       "ELF",
       "line 1: '?ELF' is no energy in keV"},
      {"10 1\n" + std::string(2000, '1'),
       "line 2: longer than 1000 characters"},
  };
  for (const auto& c : cases) {
    std::istringstream in(c.text);
    try {
      physics::read_spectrum(in);
      ADD_FAILURE() << c.text;
    } catch (const physics::InputError& error) {
      EXPECT_EQ(error.message(), c.message);
    }
  }
}

TEST(Spectrum, TooManyBinsAreRefusedBeforeTheyFillTheMemory) {
  std::string text;
  for (int i = 1; i <= 100'001; ++i) text += std::to_string(i) + " 1\n";
  std::istringstream in(text);
  EXPECT_THROW(physics::read_spectrum(in), physics::InputError);
}

TEST(Spectrum, OneLineDoesNotHarden) {
  const Bins one = {{3.0, 20.0, 2.0}};
  const double half = physics::thickness_for(one, 0.5).g_cm2;
  EXPECT_NEAR(half, std::log(2.0) / 2.0, 1e-15);
  EXPECT_NEAR(physics::thickness_for(one, 0.25).g_cm2, 2.0 * half, 1e-15);
  EXPECT_EQ(physics::mean_energy(one, {5.0}).keV, 20.0);
  EXPECT_NEAR(physics::effective(one, {5.0}).cm2_g, 2.0, 1e-15);
}

TEST(Spectrum, TwoLinesHardenAsTheSumOfTwoExponentials) {
  // exp(-d) + exp(-3d) = 2 T with u = exp(-d): u + u^3 = 2 T.
  const Bins two = {{1.0, 30.0, 3.0}, {1.0, 60.0, 1.0}};
  const double half = physics::thickness_for(two, 0.5).g_cm2;
  EXPECT_NEAR(std::exp(-half), 0.68232780382801933, 1e-14);
  EXPECT_NEAR(physics::effective(two, {}).cm2_g, 2.0, 1e-15);
  EXPECT_NEAR(physics::effective(two, {half}).cm2_g, std::log(2.0) / half,
              1e-14);
  EXPECT_NEAR(physics::mean_energy(two).keV, 45.0, 1e-12);
  // 60 u + 30 u^3 over u + u^3, which is 1.
  EXPECT_NEAR(physics::mean_energy(two, {half}).keV,
              60.0 * 0.68232780382801933 + 30.0 * 0.31767219617198067, 1e-11);
  // Where exp(-x) is no number any more, the hard line alone is left.
  EXPECT_NEAR(physics::exponent(two, {5000.0}), 5000.0 + std::log(2.0), 1e-9);
  EXPECT_EQ(physics::mean_energy(two, {5000.0}).keV, 60.0);
  EXPECT_EQ(physics::thickness_for(two, 1.0).g_cm2, 0.0);
  const double deep = physics::thickness_for(two, 1e-300).g_cm2;
  EXPECT_NEAR(physics::exponent(two, {deep}), 300.0 * std::log(10.0), 1e-9);
}

}  // namespace
