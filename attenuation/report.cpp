#include "attenuation/report.h"

#include <string_view>

#include "base/edit.h"
#include "base/unit.h"
#include "physics/beam.h"

namespace attenuation {
namespace {

void write(std::string_view line) {
  base::unit(base::kTerminalOutput).write(line);
}

}  // namespace

void report_coefficient(float atc, float density, int width) {
  const auto field = [width](float value) {
    return base::fixed_field(value, width, 3);
  };
  write(" mue/rho=" + field(atc) + " [cm^2/g]  density=" + field(density) +
        " [g/cm^3]  mu_e=" + field(physics::linear_attenuation(atc, density)) +
        " [mm^-1]");
  write("");
}

void report_areal_mass(float thick) {
  write("");
  write("");
  write("       mg/cm2=" + base::fixed_field(thick * 1000.0F, 10, 2));
}

void report_exponents(float lower, float upper) {
  write("122keV:" + base::fixed_field(lower, 12, 4) +
        " 136keV:" + base::fixed_field(upper, 12, 4));
}

void report_transmission(float trm) {
  write(" transmission=" + base::fixed_field(trm, 10, 4));
  write("");
}

}  // namespace attenuation
