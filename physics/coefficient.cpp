// Coefficients of a material: sums over its elements (physics/material.h).

#include <cmath>
#include <optional>
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
  const double ln_keV = std::log(energy.keV);
  double sum = 0.0;
  for (const Constituent& constituent : material.constituents) {
    const Table& table = data.table(constituent.z);
    sum += constituent.weight *
           std::exp(holding(table.*curve, table.z, energy).at(energy, ln_keV));
  }
  return {sum};
}

// The same with the parabola, whose own coefficients are single precision.
MassAttenuation sum_of_parabolas(const Material& material, Energy energy,
                                 const Data& data) {
  double sum = 0.0;
  for (const auto& [z, mass_fraction, weight] : material.constituents) {
    const std::optional<Block> block = data.block(z);
    if (!block) {
      throw InputError("the parabola has no rows for Z = " + std::to_string(z),
                       0, "they end with lead; the other rule goes to uranium");
    }
    try {
      const auto keV = static_cast<float>(energy.keV);
      sum += weight * static_cast<double>(parabola(*block, keV));
    } catch (const OutsideBlock& outside) {
      throw OutsideTable(z, energy, outside.first(), outside.last());
    }
  }
  return {sum};
}

}  // namespace

MassAttenuation mass_attenuation(const Material& material, Energy energy,
                                 Rule rule, const Data& data) {
  if (rule == Rule::kParabola) return sum_of_parabolas(material, energy, data);
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
