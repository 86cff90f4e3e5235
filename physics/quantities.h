// Quantities that could be taken for one another, each with its unit in its
// name, and the products that make physical sense.

#ifndef PHYSICS_QUANTITIES_H_
#define PHYSICS_QUANTITIES_H_

#include <compare>

namespace physics {

struct Energy {
  double keV = 0.0;
  friend constexpr auto operator<=>(const Energy&, const Energy&) = default;
};

struct Length {
  double cm = 0.0;
  friend constexpr auto operator<=>(const Length&, const Length&) = default;
};

// Mass per area, the thickness of an absorber regardless of its density.
struct AreaMass {
  double g_cm2 = 0.0;
  friend constexpr auto operator<=>(const AreaMass&, const AreaMass&) = default;
};

struct Density {
  double g_cm3 = 0.0;
  friend constexpr auto operator<=>(const Density&, const Density&) = default;
};

// mu/rho, or mu_en/rho.
struct MassAttenuation {
  double cm2_g = 0.0;
  friend constexpr auto operator<=>(const MassAttenuation&,
                                    const MassAttenuation&) = default;
};

// mu.
struct LinearAttenuation {
  double per_cm = 0.0;
  friend constexpr auto operator<=>(const LinearAttenuation&,
                                    const LinearAttenuation&) = default;
};

constexpr AreaMass operator*(Density rho, Length x) {
  return {rho.g_cm3 * x.cm};
}
constexpr Length operator/(AreaMass d, Density rho) {
  return {d.g_cm2 / rho.g_cm3};
}
constexpr LinearAttenuation operator*(MassAttenuation mu_rho, Density rho) {
  return {mu_rho.cm2_g * rho.g_cm3};
}
// The exponent mu x of the transmission exp(-mu x), a bare number.
constexpr double operator*(MassAttenuation mu_rho, AreaMass d) {
  return mu_rho.cm2_g * d.g_cm2;
}

}  // namespace physics

#endif  // PHYSICS_QUANTITIES_H_
