// The parabola through neighbouring table points.

#ifndef ATTENUATION_PARABEL_H_
#define ATTENUATION_PARABEL_H_

#include "physics/parabola.h"

namespace attenuation {

// Evaluates a parabola through `ns` points at the energy `us`.
//
// ns   4: physics::four_point_fit; 3: physics::three_point_fit; any other
//      leaves `att` as it was
// xs   energies in MeV, rising; all four come back in keV, used or not
// ys   coefficients in cm2/g
// us   energy in MeV
// att  receives the coefficient in cm2/g
void parabel(int ns, physics::FitPoints& xs, const physics::FitPoints& ys,
             double us, float& att);

}  // namespace attenuation

#endif  // ATTENUATION_PARABEL_H_
