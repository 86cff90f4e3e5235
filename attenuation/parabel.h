// The parabola through neighbouring table points.

#ifndef ATTENUATION_PARABEL_H_
#define ATTENUATION_PARABEL_H_

#include "base/array.h"

namespace attenuation {

using FitPoints = base::Array<double, 4>;

// Evaluates a parabola through `ns` points at the energy `us`.
//
// ns   4: exactly through points 2 and 3, with the curvature that fits points
//      1 and 4 best (least squares); 3: exactly through points 1, 2 and 3; any
//      other leaves `att` as it was
// xs   energies in MeV, rising; all four come back in keV, used or not
// ys   coefficients in cm2/g
// us   energy in MeV
// att  receives the coefficient in cm2/g
//
// The fit is one of the values themselves, not of their logarithms, with
// energies in keV. Two equal energies among three points give whatever single
// precision makes of a singular matrix.
void parabel(int ns, FitPoints& xs, const FitPoints& ys, double us, float& att);

}  // namespace attenuation

#endif  // ATTENUATION_PARABEL_H_
