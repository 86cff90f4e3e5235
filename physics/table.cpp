#include "physics/table.h"

#include <cmath>

namespace physics {

void throw_outside(const Curve& curve, int z, Energy energy) {
  throw OutsideTable(z, energy, curve.first(), curve.last());
}

MassAttenuation mass_attenuation(const Table& table, Energy energy) {
  return {holding(table.total, table.z, energy)(energy)};
}

MassAttenuation mass_attenuation_below(const Table& table, Energy energy) {
  return {holding(table.total, table.z, energy).below(energy)};
}

MassAttenuation energy_absorption(const Table& table, Energy energy) {
  return {holding(table.absorption, table.z, energy)(energy)};
}

double interpolation_uncertainty(const Table& table, Energy energy) {
  const Curve& curve = holding(table.total, table.z, energy);
  return std::abs(curve.straight(energy) / curve(energy) - 1) / 2;
}

Energy first_energy(const Table& table) { return table.total.first(); }
Energy last_energy(const Table& table) { return table.total.last(); }

}  // namespace physics
