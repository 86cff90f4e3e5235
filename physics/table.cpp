#include "physics/table.h"

#include <cmath>

namespace physics {
namespace {

// `curve`, if it holds `energy`.
const Curve& holding(const Curve& curve, const Table& table, Energy energy) {
  // False for NaN too.
  if (curve.holds(energy)) return curve;
  throw OutsideTable(table.z, energy, curve.first(), curve.last());
}

}  // namespace

MassAttenuation mass_attenuation(const Table& table, Energy energy) {
  return {std::exp(holding(table.total, table, energy).ln(energy))};
}

MassAttenuation mass_attenuation_below(const Table& table, Energy energy) {
  return {std::exp(holding(table.total, table, energy).ln_below(energy))};
}

MassAttenuation energy_absorption(const Table& table, Energy energy) {
  return {std::exp(holding(table.absorption, table, energy).ln(energy))};
}

double interpolation_uncertainty(const Table& table, Energy energy) {
  const Curve& curve = holding(table.total, table, energy);
  return std::abs(std::expm1(curve.ln_straight(energy) - curve.ln(energy))) / 2;
}

Energy first_energy(const Table& table) { return table.total.first(); }
Energy last_energy(const Table& table) { return table.total.last(); }

}  // namespace physics
