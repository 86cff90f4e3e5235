#include "physics/layers.h"

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "physics/material.h"
#include "physics/uncertainty.h"
#include "tests/support.h"

namespace {

using physics::Energy;
using physics::Layer;
using physics::Line;
using physics::material;
using physics::Wanted;
using physics::Weighting;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

// Four lines of 57Co.
const std::vector<Line> kCobalt{{{6.4039}, 32.6},
                                {{14.41295}, 9.18},
                                {{122.06065}, 85.6},
                                {{136.47356}, 10.68}};

std::vector<Layer> iron_behind_aluminium(double iron, double aluminium) {
  return {{material("Fe"), {iron}}, {material("Al"), {aluminium}}};
}

TEST(Layers, WeakenABeam) {
  // exp and the weighted sum by hand, coefficients as in table_test.cpp.
  const Layer foil{material("Fe"),
                   physics::Density{7.874} * physics::Length{0.0025}};
  EXPECT_NEAR(transmission(std::span(&foil, 1), Energy{14.41}),
              0.28529281664817835, 1e-12);
  const auto layers = iron_behind_aluminium(0.1, 0.2);
  EXPECT_NEAR(transmission(layers, kCobalt), 0.6594353481553192, 1e-12);
  EXPECT_NEAR(transmission(layers, kCobalt, Weighting::kEnergy),
              0.9192935243518122, 1e-12);
  // Weights only count relative to each other, however large.
  auto lines = kCobalt;
  for (Line& line : lines) line.weight *= 1e306;
  EXPECT_NEAR(transmission(layers, lines), 0.6594353481553192, 1e-12);
}

TEST(Layers, ThicknessForAWantedTransmission) {
  const auto layers = iron_behind_aluminium(kNaN, 0.2);
  const struct {
    double wanted, thickness;
  } rows[] = {
      // scipy 1.10.1, brentq on the logarithm of the sum
      {0.5, 1.1748351982155454},
      {1e-3, 25.555649570931816},
      {1e-200, 2059.5686885171617},
  };
  for (const auto& row : rows) {
    const double d = thickness_for(layers, 0, {row.wanted}, kCobalt).g_cm2;
    EXPECT_NEAR(d / row.thickness, 1, 1e-12) << row.wanted;
  }
  const auto foil = std::span(layers).first(1);
  const auto one = std::span(kCobalt).subspan(1, 1);
  const double fe = mass_attenuation(layers[0].material, {14.41295}).cm2_g;
  EXPECT_NEAR(thickness_for(foil, 0, {0.3}, one).g_cm2, -std::log(0.3) / fe,
              1e-15);
  // From nothing to the smallest number; what is asked for comes out.
  for (const double wanted : {1.0, 1 - 1e-15, 0.999, 1e-5, 5e-324}) {
    for (const auto lines : {std::span(kCobalt), one}) {
      auto solved = iron_behind_aluminium(0, 0);
      solved[0].d = thickness_for(foil, 0, {wanted}, lines);
      EXPECT_GE(solved[0].d.g_cm2, 0) << wanted;
      const double ln_t = std::log(transmission(solved, lines));
      EXPECT_NEAR(ln_t, std::log(wanted), 1e-12 - 1e-12 * std::log(wanted));
    }
  }
}

// Areal mass of the first of `layers` for a mu x of the whole.
double for_mu_x(const std::vector<Layer>& layers, double wanted,
                std::span<const Line> lines) {
  return thickness_for(layers, 0, {wanted, Wanted::As::kMuX}, lines).g_cm2;
}

TEST(Layers, ThicknessForAWantedExponent) {
  const auto layers = iron_behind_aluminium(kNaN, 0.2);
  const std::vector<Line> one{{{14.41}}}, two{{{14.41}, 3.0}, {{122.06}, 1.0}};
  const double fe = mass_attenuation(layers[0].material, {14.41}).cm2_g;
  const double al = mass_attenuation(layers[1].material, {14.41}).cm2_g;
  for (const double wanted : {2.0, 1e4}) {
    EXPECT_NEAR(for_mu_x(layers, wanted, one) * fe, wanted - 0.2 * al, 1e-10);
  }
  // Of a thin layer every digit is kept, of several lines too.
  const std::vector<Layer> foil{layers[0]};
  const double of_two =
      0.75 * fe + 0.25 * mass_attenuation(foil[0].material, {122.06}).cm2_g;
  for (const double wanted : {1e-12, 1e-300}) {
    EXPECT_DOUBLE_EQ(for_mu_x(foil, wanted, one), wanted / fe);
    EXPECT_NEAR(for_mu_x(foil, wanted, two) * of_two / wanted, 1, 1e-11);
  }
  EXPECT_EQ(for_mu_x(foil, 0, two), 0);
}

TEST(Layers, WhatHasNoAnswerIsAnError) {
  const auto layers = iron_behind_aluminium(0.1, 0.2);
  const auto wanted = [&layers](double value) {
    return [&layers, value] { thickness_for(layers, 0, {value}, kCobalt); };
  };
  const auto weights = [&layers](double first, double second) {
    return [&layers, first, second] {
      const Line lines[] = {{{10}, first}, {{20}, second}};
      thickness_for(layers, 0, {0.1}, lines);
    };
  };
  const struct {
    const char* message;
    std::function<void()> ask;
  } rows[] = {
      {"a transmission is above 0 and at most 1", wanted(0)},
      {"a transmission is above 0 and at most 1", wanted(-0.5)},
      {"a transmission is above 0 and at most 1", wanted(1.0000001)},
      {"a transmission is above 0 and at most 1", wanted(kNaN)},
      {"the other layers alone transmit 0.687732, less than the 0.9 wanted",
       wanted(0.9)},
      {"the other layers alone transmit 0.687732, less than the 1 wanted",
       wanted(1)},
      {"no line has a weight", weights(0, 0)},
      {"the weight of a line is negative or no number", weights(1, -1)},
      {"the weight of a line is negative or no number", weights(kNaN, 1)},
      {"the weight of a line is negative or no number", weights(1, kInfinite)},
      {"the other layers alone have a mu x of 1.5, more than the 1 wanted",
       [&layers] {
         const double al = mass_attenuation(layers[1].material, {14.41}).cm2_g;
         auto thick = layers;
         thick[1].d = {1.5 / al};
         for_mu_x(thick, 1, std::vector<Line>{{{14.41}}});
       }},
      {"mu x is a number from 0 on",
       [&layers] { for_mu_x(layers, kNaN, kCobalt); }},
      {"the thickness of a layer is negative or no number",
       [&layers] {
         auto negative = layers;
         negative[1].d = {kNaN};
         thickness_for(negative, 0, {0.5}, kCobalt);
       }},
  };
  for (const auto& row : rows) {
    try {
      row.ask();
      ADD_FAILURE() << row.message;
    } catch (const physics::InputError& error) {
      EXPECT_EQ(error.message(), row.message);
    }
  }
}

TEST(Uncertainty, IsTheLargestOfTheRowsThatFit) {
  const struct {
    int z;
    double keV, relative;
  } rows[] = {
      {26, 1, 0.05},
      {26, 4.9999, 0.05},
      {26, 5, 0.02},
      {26, 14.41, 0.02},
      {26, 100, 0.01},
      {26, 20000, 0.01},
      // Iron's K edge is at 7.112 keV.
      {26, 6.4, 0.02},
      {26, 6.41, 0.15},
      {26, 7.112, 0.5},
      {26, 7.5, 0.15},
      {26, 8, 0.03},
      {26, 8.6, 0.02},
      // Lead at 16 keV lies above L3, L2 and L1: 22.7, 5.3 and 0.9 %.
      {82, 16, 0.3},
      {82, 20, 0.04},
      {6, 14.41, 0.02},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(physics::relative_uncertainty(row.z, {row.keV}), row.relative)
        << row.z << " at " << row.keV;
  }
}

TEST(Uncertainty, OfAMaterialGoesByTheShareOfMu) {
  const auto rust = material("Fe2O3");
  const double u = relative_uncertainty(rust, {8.0});
  // Iron, 3 %, makes 97 % of mu at 8 keV; oxygen has 2 %.
  EXPECT_GT(u, 0.0295);
  EXPECT_LT(u, 0.0301);
  EXPECT_THROW(relative_uncertainty(rust, {0.5}), physics::OutsideTable);
}

TEST(Doubt, IsSaidWhereTablesDisagree) {
  const struct {
    int z;
    double keV;
    const char* begin;  // of the note
  } rows[] = {
      {75, 1.53, "rhenium, 1.53 to 2.36 keV: "}, {75, 2.37, ""},
      {76, 2.0, "osmium, 1.97 to 2.02 keV: "},   {76, 1.9, ""},
      {24, 6.4, "chromium, 6.2 to 15 keV: "},    {26, 7.2, ""},
  };
  for (const auto& row : rows) {
    const std::string note(physics::builtin().doubt(row.z, {row.keV}));
    EXPECT_EQ(note.substr(0, std::string(row.begin).size()), row.begin);
    EXPECT_EQ(note.empty(), row.begin[0] == '\0') << note;
  }
}

}  // namespace
