#include "physics/beam.h"

#include <cmath>

namespace physics {

float transmission(std::span<const BeamLine> lines, float areal_mass) {
  float sum = 0.0F;
  for (const BeamLine& line : lines) {
    sum = sum + line.share * std::exp(-exponent(line, areal_mass));
  }
  return sum;
}

}  // namespace physics
