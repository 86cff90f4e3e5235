// What passes through a sample, in single precision.

#ifndef PHYSICS_BEAM_H_
#define PHYSICS_BEAM_H_

#include <span>

namespace physics {

// A line of the beam as the sample meets it.
struct BeamLine {
  float share = 1.0F;   // of the photons of all lines
  float mu_rho = 0.0F;  // of the sample at its energy, cm2/g
};

// The areal mass in g/cm2 of a thickness in mm at a density in g/cm3.
constexpr float areal_mass(float mm, float density) {
  return mm * density / 10.0F;
}

// In mm-1, from mu/rho in cm2/g and the density in g/cm3.
constexpr float linear_attenuation(float mu_rho, float density) {
  return mu_rho * density / 10.0F;
}

// The exponent mu x of a line behind an areal mass in g/cm2.
constexpr float exponent(const BeamLine& line, float areal_mass) {
  return line.mu_rho * areal_mass;
}

// The part of the photons of all lines that has not interacted.
float transmission(std::span<const BeamLine> lines, float areal_mass);

}  // namespace physics

#endif  // PHYSICS_BEAM_H_
