// Coefficients of a material: sums over its elements (physics/material.h).

#include <algorithm>
#include <cmath>
#include <string>

#include "physics/errors.h"
#include "physics/material.h"
#include "physics/parabola.h"
#include "physics/table.h"
#include "physics/uncertainty.h"

namespace physics {
namespace {

// Sum of `curve` of each element's table, by weight. The logarithm of the
// energy is the same for all.
template <typename Member>
MassAttenuation sum(const Material& material, Energy energy, Member curve,
                    const Data& data) {
  const double log2_keV = binary_log(energy.keV);
  double sum = 0.0;
  for (const Constituent& constituent : material.constituents) {
    const Table& table = data.table(constituent.z);
    sum += constituent.weight *
           holding(table.*curve, table.z, energy).at(energy, log2_keV);
  }
  return {sum};
}

float parabola_of(int z, Energy energy, const Data& data) {
  const auto block = data.block(z);
  if (!block) {
    const Element& element = data.elements()[static_cast<std::size_t>(z - 1)];
    throw InputError("the parabola has no rows for " +
                         std::string(element.name) +
                         " (Z = " + std::to_string(z) + ")",
                     0, "--rule pchip");
  }
  try {
    return parabola(*block, static_cast<float>(energy.keV));
  } catch (const OutsideBlock& outside) {
    throw OutsideTable(z, energy, outside.first(), outside.last());
  }
}

// The dialogue's sum, in single precision: an element as it is, compounds by
// atoms and weights from the first element on. What has no formula, and what
// holds isotopes, goes by the shares, which the dialogue does not know.
float parabola_sum(const Material& material, Energy energy, const Data& data) {
  const auto& constituents = material.constituents;
  if (constituents.size() == 1 && constituents[0].weight == 1.0) {
    return parabola_of(constituents[0].z, energy, data);
  }
  float sum = 0.0F, all = 0.0F;
  const auto add = [&](int z, float share) {
    sum = parabola_of(z, energy, data) * share + sum;
    all = share + all;
  };
  const bool atoms =
      material.composition &&
      std::all_of(material.composition->begin(), material.composition->end(),
                  [](const Part& part) { return part.mass_number == 0; });
  if (!atoms) {
    for (const Constituent& one : constituents) {
      add(one.z, static_cast<float>(one.weight));
    }
    return sum;
  }
  for (const Part& part : *material.composition) {
    const double weight =
        data.elements()[static_cast<std::size_t>(part.z - 1)].weight;
    add(part.z, static_cast<float>(part.atoms) * static_cast<float>(weight));
  }
  return sum / all;
}

}  // namespace

MassAttenuation mass_attenuation(const Material& material, Energy energy,
                                 Rule rule, const Data& data) {
  if (rule == Rule::kParabola)
    return {static_cast<double>(parabola_sum(material, energy, data))};
  return sum(material, energy, &Table::total, data);
}

MassAttenuation energy_absorption(const Material& material, Energy energy,
                                  const Data& data) {
  return sum(material, energy, &Table::absorption, data);
}

double relative_uncertainty(const Material& material, Energy energy,
                            const Data& data) {
  double mu = 0.0;
  double of_table = 0.0;
  double of_interpolation = 0.0;
  for (const Constituent& constituent : material.constituents) {
    const Table& table = data.table(constituent.z);
    const double share =
        constituent.weight * mass_attenuation(table, energy).cm2_g;
    mu += share;
    of_table += share * relative_uncertainty(constituent.z, energy);
    of_interpolation += share * interpolation_uncertainty(table, energy);
  }
  return std::hypot(of_table, of_interpolation) / mu;
}

}  // namespace physics
