// mu/rho at random energies from 1 to 700 keV: of one element, of a compound of
// five that is parsed once, and beside each the same by xraylib, where that is
// installed. Take the quotients of one run; no machine is quiet enough for two.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "physics/arrays.h"
#include "physics/layers.h"
#include "physics/material.h"
#include "physics/table.h"

#ifdef HAS_XRAYLIB
#include <xraylib.h>
#endif

namespace {

constexpr int kIron = 26;
constexpr const char* kMica = "KAl3Si3O12H2";

const std::vector<double>& energies() {
  static const std::vector<double> list = [] {
    std::mt19937_64 random(2024);
    std::uniform_real_distribution<double> ln(0.0, std::log(700.0));
    std::vector<double> keV(4096);
    for (double& e : keV) e = std::exp(ln(random));
    return keV;
  }();
  return list;
}

// Runs `coefficient` for one energy after the other.
template <typename Coefficient>
void run(benchmark::State& state, Coefficient coefficient) {
  const std::vector<double>& list = energies();
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(coefficient(list[i]));
    i = i + 1 < list.size() ? i + 1 : 0;
  }
  state.SetItemsProcessed(state.iterations());
}

void element(benchmark::State& state) {
  const physics::Table& table = physics::builtin().table(kIron);
  run(state, [&](double e) { return mass_attenuation(table, {e}).cm2_g; });
}

void compound(benchmark::State& state) {
  const physics::Material mica = physics::material(kMica);
  run(state, [&](double e) { return mass_attenuation(mica, {e}).cm2_g; });
}

// All energies at once; the time is that of one.
void arrays(benchmark::State& state, const char* text) {
  physics::CurveSum curves;
  curves.add(physics::material(text), 1.0);
  const std::vector<double>& list = energies();
  std::vector<double> values(list.size());
  while (state.KeepRunningBatch(static_cast<std::int64_t>(list.size()))) {
    curves.evaluate(list, values);
    benchmark::DoNotOptimize(values.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations());
}

void element_in_arrays(benchmark::State& state) { arrays(state, "Fe"); }
void compound_in_arrays(benchmark::State& state) { arrays(state, kMica); }

void uncertainty_of_compound(benchmark::State& state) {
  const physics::Material mica = physics::material(kMica);
  run(state, [&](double e) { return relative_uncertainty(mica, {e}); });
}

void thickness_for_57Co(benchmark::State& state) {
  const physics::Layer layer{physics::material("Fe"), {}};
  std::vector<physics::Line> lines;
  for (const auto& line : physics::source("57Co")->lines) {
    lines.push_back({line.energy, line.intensity});
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(thickness_for({&layer, 1}, 0, {0.3}, lines));
  }
}

BENCHMARK(element);
BENCHMARK(compound);
BENCHMARK(element_in_arrays);
BENCHMARK(compound_in_arrays);
BENCHMARK(uncertainty_of_compound);
BENCHMARK(thickness_for_57Co);

#ifdef HAS_XRAYLIB
void element_by_xraylib(benchmark::State& state) {
  run(state, [](double e) { return CS_Total(kIron, e, nullptr); });
}

void compound_by_xraylib(benchmark::State& state) {
  run(state, [](double e) { return CS_Total_CP(kMica, e, nullptr); });
}

BENCHMARK(element_by_xraylib);
BENCHMARK(compound_by_xraylib);
#endif

}  // namespace
