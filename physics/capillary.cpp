#include "physics/capillary.h"

#include <cmath>
#include <numbers>

namespace physics {

Cylinder cylinder(double mu_r) {
  // Integrals over the height y of a ray, 0 to 1 in units of R, by the
  // tanh-sinh rule: where mu R is large, all that passes does so in a thin rim
  // at y = 1, and the points crowd there faster than the integrand can rise.
  constexpr double kStep = 1.0 / 32.0;
  double width = 0.0;
  double section = 0.0;
  for (int i = -128; i <= 128; ++i) {
    const double u = kStep * i;
    const double s = std::numbers::pi / 2.0 * std::sinh(u);
    // 1 - y, not by subtraction.
    const double rim = 1.0 / (1.0 + std::exp(2.0 * s));
    const double weight = kStep * std::numbers::pi / 2.0 * std::cosh(u) /
                          (2.0 * std::cosh(s) * std::cosh(s));
    const double half_chord = std::sqrt(rim * (2.0 - rim));
    const double passed = weight * std::exp(-2.0 * mu_r * half_chord);
    width += passed;
    section += passed * half_chord;
  }
  return {std::exp(-2.0 * mu_r), section * 4.0 / std::numbers::pi, width};
}

}  // namespace physics
