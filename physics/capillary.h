// A round sample in a beam: powder in a capillary.

#ifndef PHYSICS_CAPILLARY_H_
#define PHYSICS_CAPILLARY_H_

#include "physics/quantities.h"

namespace physics {

// Transmission of a cylinder across a parallel beam, by mu R.
struct Cylinder {
  double axis = 0.0;  // along the diameter
  // Of the rays that go through the sample, each counted by its path: what is
  // left in forward scattering from the whole cross-section.
  double cross_section = 0.0;
  // Of a beam as wide as the sample: what a detector behind it sees.
  double width = 0.0;
};

// mu_r  radius times linear attenuation, at least 0. Relative error below
//       1e-9 up to mu R of 1e4.
Cylinder cylinder(double mu_r);

}  // namespace physics

#endif  // PHYSICS_CAPILLARY_H_
