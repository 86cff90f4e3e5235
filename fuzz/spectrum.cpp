// Files of spectra: a beam that can be used, or a refusal.

#include "physics/spectrum.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "physics/errors.h"

namespace {

void require(bool so) {
  if (!so) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  try {
    const auto lines = physics::read_spectrum(in);
    require(!lines.empty());
    double before = 0.0;
    double largest = 0.0;
    for (const physics::Line& line : lines) {
      require(line.energy.keV > before && std::isfinite(line.energy.keV));
      require(line.weight > 0.0 && std::isfinite(line.weight));
      before = line.energy.keV;
      largest = std::max(largest, line.weight);
    }
    // As in a material that absorbs soft lines more.
    physics::Bins bins;
    for (const physics::Line& line : lines) {
      const double keV = line.energy.keV;
      bins.push_back({line.weight / largest, keV, 1.0 + 1.0 / (1.0 + keV)});
    }
    const physics::AreaMass half = physics::thickness_for(bins, 0.5);
    require(half.g_cm2 > 0.3 && half.g_cm2 < 0.7);
    require(std::abs(physics::exponent(bins, half) - std::log(2.0)) < 1e-9);
  } catch (const physics::InputError& error) {
    require(!error.message().empty());
  }
  return 0;
}
