// How well mu/rho of one element is known, and where a number deserves a note.

#ifndef PHYSICS_UNCERTAINTY_H_
#define PHYSICS_UNCERTAINTY_H_

#include "physics/data.h"
#include "physics/quantities.h"

namespace physics {

// Relative uncertainty (k = 1) of mu/rho of the element Z = 1 to 92, without
// that of the interpolation: the largest of the uncertainty rows that fit. Near
// an edge the chemical state of the atom moves mu by more than any table knows.
double relative_uncertainty(int z, Energy energy);

}  // namespace physics

#endif  // PHYSICS_UNCERTAINTY_H_
