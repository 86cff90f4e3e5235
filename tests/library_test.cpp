#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "library/attenuate.h"
#include "physics/arrays.h"
#include "physics/layers.h"

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// Energies of every size, edges and ends of tables among them.
std::vector<double> energies(std::size_t n) {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> log(0.0, std::log(20000.0));
  std::vector<double> keV{1.0, 20000.0};
  for (int z = 1; z <= physics::kElements; ++z) {
    for (const auto& edge : physics::edges(z)) {
      if (edge.energy.keV >= 1.0) keV.push_back(edge.energy.keV);
      if (edge.energy.keV > 1.0) {
        keV.push_back(std::nextafter(edge.energy.keV, 0.0));
      }
    }
  }
  while (keV.size() < n) keV.push_back(std::exp(log(random)));
  keV.resize(n);
  return keV;
}

TEST(Arrays, AgreeWithSingleValues) {
  const auto keV = energies(5000);
  std::vector<double> mu(keV.size()), mu_en(keV.size());
  for (int z = 1; z <= physics::kElements; ++z) {
    physics::Material material;
    material.constituents = {{z, 1.0, 1.0}};
    physics::CurveSum total, absorbed;
    total.add(material, 1.0);
    absorbed.add(material, 1.0, physics::Coefficient::kEnergyAbsorption);
    ASSERT_FALSE(total.evaluate(keV, mu));
    ASSERT_FALSE(absorbed.evaluate(keV, mu_en));
    for (std::size_t i = 0; i < keV.size(); ++i) {
      const physics::Energy e{keV[i]};
      const double alone = mass_attenuation(material, e).cm2_g;
      const double alone_en = energy_absorption(material, e).cm2_g;
      ASSERT_NEAR(mu[i] / alone, 1, 1e-13) << z << " at " << keV[i];
      ASSERT_NEAR(mu_en[i] / alone_en, 1, 1e-13) << z << " at " << keV[i];
    }
  }
}

TEST(Arrays, EveryProcessorGivesTheSameBits) {
  auto keV = energies(1000);
  keV[7] = kNan;
  physics::CurveSum sum;
  sum.add(physics::material("18% Cr // 8% Ni // U"), 0.3);
  for (const auto form : {physics::Form::kSum, physics::Form::kTransmission}) {
    std::vector<double> two(keV.size()), more(keV.size());
    ASSERT_EQ(sum.evaluate(keV, two, form, 1.5, 2)->subscript, 7u);
    for (std::size_t lanes = 4; lanes <= physics::CurveSum::most_lanes();
         lanes *= 2) {
      ASSERT_EQ(sum.evaluate(keV, more, form, 1.5, lanes)->subscript, 7u);
      EXPECT_EQ(std::memcmp(two.data(), more.data(), 8 * two.size()), 0)
          << lanes;
    }
  }
}

TEST(Arrays, NothingInTheBeamPassesAll) {
  const physics::CurveSum nothing;
  std::vector<double> values{1.0, 14.4, 20000.0};
  EXPECT_FALSE(nothing.evaluate(values, values, physics::Form::kTransmission));
  EXPECT_EQ(values, (std::vector<double>{1.0, 1.0, 1.0}));
  EXPECT_STREQ(nothing.outside({std::nextafter(20000.0, 1e9)}).what(),
               "20000.000000000004 keV is outside the tables, 1 to 20000 keV");
}

TEST(Arrays, TransmissionHoldsForEveryExponent) {
  const auto material = physics::material("Fe");
  const std::vector<double> keV{14.4};
  const double mu = mass_attenuation(material, {14.4}).cm2_g;
  for (const double mu_x : {0.0, 1e-12, 0.5, 10.0, 700.0, 740.0, 746.0, 1e6}) {
    physics::CurveSum sum;
    sum.add(material, mu_x / mu);
    std::vector<double> passed(1);
    sum.evaluate(keV, passed, physics::Form::kTransmission);
    // Below 1e-308 digits go by themselves.
    EXPECT_NEAR(passed[0], std::exp(-mu_x), 1e-12 * std::exp(-mu_x) + 1e-323)
        << mu_x;
  }
}

TEST(Arrays, EveryLengthGivesTheSame) {
  const auto keV = energies(200);
  physics::CurveSum sum;
  sum.add(physics::material("18% Cr // 8% Ni // Fe"), 1.0);
  std::vector<double> whole(keV.size());
  sum.evaluate(keV, whole);
  for (std::size_t n = 0; n <= keV.size(); ++n) {
    std::vector<double> part(keV.end() - static_cast<std::ptrdiff_t>(n),
                             keV.end());
    sum.evaluate(part, part);
    EXPECT_TRUE(std::equal(part.begin(), part.end(),
                           whole.end() - static_cast<std::ptrdiff_t>(n)))
        << n;
  }
}

// Handles that end with the test.
class Library : public testing::Test {
 protected:
  Library() {
    attenuate_material_new("Fe", 0, &iron_, nullptr);
    attenuate_material_new("C10H8O4", 0, &foil_, nullptr);
    const attenuate_layer layers[] = {{foil_, 0.01}, {iron_, 0.02}};
    attenuate_stack_new(layers, 2, &stack_, nullptr);
  }
  ~Library() override {
    attenuate_material_free(iron_);
    attenuate_material_free(foil_);
    attenuate_stack_free(stack_);
  }

  attenuate_material *iron_ = nullptr, *foil_ = nullptr;
  attenuate_stack* stack_ = nullptr;
  attenuate_error error_;
};

TEST_F(Library, AnswersAsThePhysicsDoes) {
  const auto iron = physics::material("Fe"),
             foil = physics::material("C10H8O4");
  const std::vector<physics::Layer> layers{{foil, {0.01}}, {iron, {0.02}}};
  const double keV[] = {6.4, 14.41};
  const double weight[] = {1.0, 3.0};
  double values[2];
  const double mu = mass_attenuation(iron, {14.41}).cm2_g;
  ASSERT_EQ(attenuate_mu(iron_, keV, values, 2, &error_), ATTENUATE_OK);
  EXPECT_NEAR(values[1], mu * iron.density->g_cm3, 1e-10);
  ASSERT_EQ(attenuate_uncertainty(iron_, keV, values, 2, &error_),
            ATTENUATE_OK);
  EXPECT_EQ(values[1], relative_uncertainty(iron, {14.41}));
  ASSERT_EQ(attenuate_transmission(stack_, keV, values, 2, &error_),
            ATTENUATE_OK);
  EXPECT_NEAR(values[0], physics::transmission(layers, {6.4}), 1e-12);
  ASSERT_EQ(attenuate_mu_x(stack_, keV, values, 2, &error_), ATTENUATE_OK);
  EXPECT_NEAR(values[1], physics::mu_x(layers, {14.41}), 1e-12);

  const std::vector<physics::Line> lines{{{6.4}, 1.0}, {{14.41}, 3.0}};
  double one = 0;
  ASSERT_EQ(attenuate_beam_transmission(stack_, keV, weight, 2,
                                        ATTENUATE_BY_ENERGY, &one, &error_),
            ATTENUATE_OK);
  EXPECT_NEAR(one,
              physics::transmission(layers, lines, physics::Weighting::kEnergy),
              1e-12);
  ASSERT_EQ(attenuate_thickness(stack_, 1, 0.3, keV, weight, 2,
                                ATTENUATE_BY_PHOTONS, &one, &error_),
            ATTENUATE_OK);
  EXPECT_EQ(one, physics::thickness_for(layers, 1, {0.3}, lines).g_cm2);
}

TEST_F(Library, WeightsOfEverySizeAreRelative) {
  const double keV[] = {20, 30};
  for (const int by : {ATTENUATE_BY_PHOTONS, ATTENUATE_BY_ENERGY}) {
    double equal = 0, passed = 0, thickness = 0, found = 0;
    attenuate_beam_transmission(stack_, keV, nullptr, 2, by, &equal, &error_);
    attenuate_thickness(stack_, 1, 0.3, keV, nullptr, 2, by, &thickness,
                        &error_);
    for (const double one : {5e-324, 1e-300, 0.1, 1e307, 1.7e308}) {
      const double weight[] = {one, one};
      ASSERT_EQ(attenuate_beam_transmission(stack_, keV, weight, 2, by, &passed,
                                            &error_),
                ATTENUATE_OK);
      ASSERT_EQ(attenuate_thickness(stack_, 1, 0.3, keV, weight, 2, by, &found,
                                    &error_),
                ATTENUATE_OK);
      EXPECT_EQ(passed, equal) << one;
      EXPECT_EQ(found, thickness) << one;
    }
  }
}

TEST_F(Library, ErrorsTellPlaceAndHint) {
  attenuate_material* none = iron_;
  ASSERT_EQ(attenuate_material_new("FE2O3", 0, &none, &error_),
            ATTENUATE_INPUT);
  EXPECT_EQ(none, nullptr);
  EXPECT_STREQ(error_.message, "'E' is not an element");
  EXPECT_EQ(error_.column, 2);
  EXPECT_STREQ(error_.hint,
               "did you mean Fe2O3? Capital and small letters differ");

  // Messages hold no more than their place, and no half characters.
  std::string name;
  while (name.size() < 400) name += "\u00e4";
  int z = 0;
  ASSERT_EQ(attenuate_element(name.c_str(), &z, &error_), ATTENUATE_INPUT);
  EXPECT_EQ(std::strlen(error_.message), 255U);
  EXPECT_EQ(error_.message[254], '\xa4');

  // Nothing that a terminal obeys, and nothing that is no UTF-8.
  for (const char* text : {"\xff", "Fe\033[31m", "\xed\xa0\x80"}) {
    double value = 0;
    attenuate_absorber absorber;
    const attenuate_status statuses[] = {
        attenuate_element(text, &z, &error_),
        attenuate_source(text, nullptr, nullptr, 0, nullptr, &error_),
        attenuate_areal_mass(iron_, text, &value, &error_),
        attenuate_best_absorber(iron_, text, 0.5, 0, 1, 0, &absorber, &error_)};
    for (const auto status : statuses) EXPECT_EQ(status, ATTENUATE_INPUT);
    EXPECT_NE(std::strstr(error_.message, "is no text"), nullptr);
  }

  const attenuate_layer layers[] = {{iron_, 1}, {nullptr, 1}};
  attenuate_stack* stack = nullptr;
  ASSERT_EQ(attenuate_stack_new(layers, 2, &stack, &error_), ATTENUATE_HANDLE);
  EXPECT_EQ(error_.position, 1U);

  double keV[] = {14.41, 0.5, kNan};
  ASSERT_EQ(attenuate_mu_rho(iron_, keV, keV, 3, &error_), ATTENUATE_OUTSIDE);
  EXPECT_EQ(error_.position, 1U);
  EXPECT_NE(std::strstr(error_.message, "0.5 keV"), nullptr);
  EXPECT_TRUE(keV[0] > 60 && std::isnan(keV[1]) && std::isnan(keV[2]));
}

TEST_F(Library, WrongArgumentsAreStatuses) {
  double keV = 14.41, value = 0;
  std::size_t n = 0;
  char buffer[4];
  attenuate_material* made = nullptr;
  attenuate_stack* stack = nullptr;
  attenuate_edge edge;
  attenuate_error* const e = &error_;
  // A stack for a material, memory that is none, a pointer into one.
  const auto* other = reinterpret_cast<attenuate_material*>(stack_);
  alignas(64) char zeros[256] = {};
  const auto* blank = reinterpret_cast<attenuate_material*>(zeros);
  const auto* odd = reinterpret_cast<attenuate_material*>(zeros + 1);
  const double inf = std::numeric_limits<double>::infinity();
  const attenuate_absorber endless{14.4, inf, 0.02, inf, 0, 0.1, 0.1, 0.2};
  const attenuate_layer bad_handle{blank, 1}, bad_mass{iron_, -1},
      nan_mass{iron_, kNan};
  const struct {
    int expected;
    attenuate_status status;
    const char* what;
  } cases[] = {
      {ATTENUATE_HANDLE, attenuate_mu_rho(nullptr, &keV, &value, 1, e), "NULL"},
      {ATTENUATE_HANDLE, attenuate_mu_rho(other, &keV, &value, 1, e), "stack"},
      {ATTENUATE_HANDLE, attenuate_mu(blank, &keV, &value, 1, e), "zeros"},
      {ATTENUATE_HANDLE, attenuate_density(odd, &value, e), "unaligned"},
      {ATTENUATE_HANDLE, attenuate_stack_new(&bad_handle, 1, &stack, e), "la"},
      {ATTENUATE_ARGUMENT, attenuate_stack_new(&bad_mass, 1, &stack, e), "-1"},
      {ATTENUATE_ARGUMENT, attenuate_stack_new(&nan_mass, 1, &stack, e), "nan"},
      {ATTENUATE_ARGUMENT, attenuate_stack_new(nullptr, 1, &stack, e), "NULL"},
      {ATTENUATE_ARGUMENT, attenuate_mu_rho(iron_, nullptr, &value, 1, e), "E"},
      {ATTENUATE_ARGUMENT, attenuate_mu_rho(iron_, &keV, nullptr, 1, e), "mu"},
      {ATTENUATE_OK, attenuate_mu_rho(iron_, nullptr, nullptr, 0, e), "none"},
      {ATTENUATE_ARGUMENT, attenuate_material_new(nullptr, 0, &made, e), "txt"},
      {ATTENUATE_ARGUMENT, attenuate_material_new("Fe", 0, nullptr, e), "to"},
      {ATTENUATE_ARGUMENT, attenuate_material_new("Fe", kNan, &made, e), "rho"},
      {ATTENUATE_ARGUMENT, attenuate_material_new("Fe", -1, &made, e), "rho"},
      {ATTENUATE_UNKNOWN, attenuate_density(foil_, &value, e), "density"},
      {ATTENUATE_UNKNOWN, attenuate_mu(foil_, &keV, &value, 1, e), "mu"},
      {ATTENUATE_UNKNOWN, attenuate_areal_mass(foil_, "1um", &value, e), "um"},
      {ATTENUATE_INPUT, attenuate_areal_mass(iron_, "1furlong", &value, e),
       "unit"},
      {ATTENUATE_ARGUMENT, attenuate_material_text(iron_, 9, buffer, 4, &n, e),
       "which"},
      {ATTENUATE_SPACE, attenuate_material_text(iron_, 0, buffer, 2, &n, e),
       "short"},
      {ATTENUATE_SPACE, attenuate_edges(26, &edge, 1, &n, e), "edges"},
      {ATTENUATE_ARGUMENT, attenuate_edges(93, &edge, 1, &n, e), "z"},
      {ATTENUATE_INPUT,
       attenuate_element("Xx", nullptr, nullptr) == 1 ? ATTENUATE_INPUT
                                                      : ATTENUATE_OK,
       "no place"},
      {ATTENUATE_ARGUMENT,
       attenuate_beam_transmission(stack_, &keV, nullptr, 0, 0, &value, e),
       "no lines"},
      {ATTENUATE_ARGUMENT,
       attenuate_beam_transmission(stack_, &keV, &value, 1, 0, &value, e),
       "weight 0"},
      {ATTENUATE_ARGUMENT,
       attenuate_thickness(stack_, 2, 0.3, &keV, nullptr, 1, 0, &value, e),
       "layer"},
      {ATTENUATE_ARGUMENT,
       attenuate_thickness(stack_, 0, kNan, &keV, nullptr, 1, 0, &value, e),
       "T"},
      {ATTENUATE_UNKNOWN,
       attenuate_thickness(stack_, 0, 0.999, &keV, nullptr, 1, 0, &value, e),
       "too much"},
      {ATTENUATE_ARGUMENT,
       attenuate_counting_time(&endless, &keV, &value, 1, e), "infinite"},
  };
  for (const auto& c : cases) EXPECT_EQ(c.status, c.expected) << c.what;
  EXPECT_EQ(n, 9U) << "nothing is written after a wrong argument";
  attenuate_material_free(nullptr);
  attenuate_material_free(reinterpret_cast<attenuate_material*>(zeros));
}

TEST_F(Library, ThreadsShareHandles) {
  const auto keV = energies(10000);
  std::vector<std::vector<double>> results(4, std::vector<double>(keV.size()));
  std::vector<std::thread> threads;
  for (auto& result : results) {
    threads.emplace_back([&] {
      for (int i = 0; i < 20; ++i) {
        attenuate_error error;
        attenuate_transmission(stack_, keV.data(), result.data(), keV.size(),
                               &error);
      }
    });
  }
  for (auto& thread : threads) thread.join();
  for (const auto& result : results) EXPECT_EQ(result, results[0]);
}

}  // namespace
