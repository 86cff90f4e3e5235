// Coefficients of one element, by the monotone cubic.
//
// ln(mu/rho) is interpolated over ln(E), each segment between two edges for
// itself (physics/curve.h); at an edge's own energy the upper side is taken.
// mu_en/rho goes through the rows that have it.

#ifndef PHYSICS_TABLE_H_
#define PHYSICS_TABLE_H_

#include "physics/curve.h"
#include "physics/data.h"
#include "physics/errors.h"
#include "physics/quantities.h"

namespace physics {

struct Table {
  int z = 0;
  Curve total;       // mu/rho, with coherent scattering
  Curve absorption;  // mu_en/rho
};

// `curve` of the element `z`, which must hold `energy`. Throws OutsideTable.
[[noreturn]] void throw_outside(const Curve& curve, int z, Energy energy);
inline const Curve& holding(const Curve& curve, int z, Energy energy) {
  // False for NaN too.
  if (!curve.holds(energy)) throw_outside(curve, z, energy);
  return curve;
}

// mu/rho of the element, total with coherent scattering.
// Throws OutsideTable.
MassAttenuation mass_attenuation(const Table& table, Energy energy);

// The same on the lower side where `energy` is an edge's own.
MassAttenuation mass_attenuation_below(const Table& table, Energy energy);

// mu_en/rho of the element. Throws OutsideTable.
MassAttenuation energy_absorption(const Table& table, Energy energy);

// Half the difference between the cubic and the straight line in ln mu over
// ln E, relative: what the interpolation adds to the uncertainty of mu/rho.
// Throws OutsideTable.
double interpolation_uncertainty(const Table& table, Energy energy);

// The range that the table can answer, both ends included.
Energy first_energy(const Table& table);
Energy last_energy(const Table& table);

}  // namespace physics

#endif  // PHYSICS_TABLE_H_
