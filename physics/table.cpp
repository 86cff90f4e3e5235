#include "physics/table.h"

#include <cmath>

namespace physics {

void throw_outside(const Curve& curve, int z, Energy energy) {
  throw OutsideTable(z, energy, curve.first(), curve.last());
}

MassAttenuation mass_attenuation(const Table& table, Energy energy) {
  return {std::exp(holding(table.total, table.z, energy).ln(energy))};
}

MassAttenuation mass_attenuation_below(const Table& table, Energy energy) {
  return {std::exp(holding(table.total, table.z, energy).ln_below(energy))};
}

MassAttenuation energy_absorption(const Table& table, Energy energy) {
  return {std::exp(holding(table.absorption, table.z, energy).ln(energy))};
}

double interpolation_uncertainty(const Table& table, Energy energy) {
  const Curve& curve = holding(table.total, table.z, energy);
  return std::abs(std::expm1(curve.ln_straight(energy) - curve.ln(energy))) / 2;
}

Energy first_energy(const Table& table) { return table.total.first(); }
Energy last_energy(const Table& table) { return table.total.last(); }

}  // namespace physics
