#include "physics/xafs.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "physics/errors.h"
#include "physics/table.h"

namespace physics {

const Edge& table_edge(int z, std::string_view shell) {
  std::string known;
  for (const Edge& edge : edges(z)) {
    if (!edge.in_table) continue;
    if (edge.shell == shell) return edge;
    known += (known.empty() ? "" : ", ") + std::string(edge.shell);
  }
  const std::string symbol(
      builtin().elements()[static_cast<std::size_t>(z - 1)].symbol);
  throw InputError(
      "the tables have no edge " + symbol + ":" + std::string(shell), 0,
      known.empty() ? "no edge of " + symbol + " lies above 1 keV"
                    : symbol + " has " + known);
}

EdgeStep edge_step(const Material& material, const Edge& edge, Energy offset,
                   const Data& data) {
  if (!(offset.keV > 0.0)) {
    throw InputError("an edge step is taken above the edge, not below it", 0,
                     "the default is 50 eV above");
  }
  const auto element = std::find_if(
      material.constituents.begin(), material.constituents.end(),
      [&](const Constituent& constituent) { return constituent.z == edge.z; });
  if (element == material.constituents.end()) {
    throw InputError(
        material.read + " holds no " +
            std::string(
                data.elements()[static_cast<std::size_t>(edge.z - 1)].name),
        0, "an edge of an element that is in the sample");
  }
  const Table& table = data.table(edge.z);

  EdgeStep step;
  step.energy.keV = edge.energy.keV + offset.keV;
  // The reach of the line from below: a tenth of the energy, or what there is
  // above the next lower edge.
  double low = std::max(0.9 * edge.energy.keV, first_energy(table).keV);
  bool at_next = false;
  for (const Edge& other : edges(edge.z)) {
    if (!other.in_table) continue;
    const double keV = other.energy.keV;
    if (keV < edge.energy.keV) low = std::max(low, keV);
    if (keV > edge.energy.keV && keV <= step.energy.keV) {
      step.energy = other.energy;
      at_next = true;
    }
  }
  const double above = at_next
                           ? mass_attenuation_below(table, step.energy).cm2_g
                           : mass_attenuation(table, step.energy).cm2_g;
  const double foot = mass_attenuation_below(table, edge.energy).cm2_g;
  const double slope =
      low < edge.energy.keV
          ? std::log(foot / mass_attenuation(table, {low}).cm2_g) /
                std::log(edge.energy.keV / low)
          : 0.0;
  const double below =
      foot * std::pow(step.energy.keV / edge.energy.keV, slope);

  double others = 0.0;
  for (const Constituent& constituent : material.constituents) {
    if (constituent.z == edge.z) continue;
    others += constituent.weight *
              mass_attenuation(data.table(constituent.z), step.energy).cm2_g;
  }
  step.above.cm2_g = others + element->weight * above;
  step.below.cm2_g = others + element->weight * below;
  return step;
}

XafsSample xafs_sample(const EdgeStep& step, double mux,
                       MassAttenuation diluent, double ratio) {
  // Per gram of sample, its diluent included.
  const double mu = step.above.cm2_g + ratio * diluent.cm2_g;
  const double jump = step.above.cm2_g - step.below.cm2_g;
  XafsSample sample;
  sample.total_absorption.g_cm2 = mux / mu;
  sample.unit_step.g_cm2 = 1.0 / jump;
  sample.step = jump * sample.total_absorption.g_cm2;
  sample.mux = mu * sample.unit_step.g_cm2;
  return sample;
}

}  // namespace physics
