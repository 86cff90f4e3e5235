// The dialogue's interpolation: a parabola through neighbouring rows, partly in
// single precision, whose every rounding is part of the result.

#ifndef PHYSICS_PARABOLA_H_
#define PHYSICS_PARABOLA_H_

#include "base/array.h"

namespace physics {

// Rows of one element that the parabola can hold.
inline constexpr int kBlockRows = 64;

// The rows of one element: energies in MeV, mu/rho and mu_en/rho in cm2/g, each
// from subscript 1 to `points`. Slots beyond are 0.
struct Block {
  base::Array<double, kBlockRows> xi{"xi"};
  base::Array<double, kBlockRows> yi{"yi"};
  base::Array<double, kBlockRows> zi{"zi"};
  int points = 0;
};

}  // namespace physics

#endif  // PHYSICS_PARABOLA_H_
