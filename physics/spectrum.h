// Beams of many energies: spectra from files, and what an absorber does to
// them.

#ifndef PHYSICS_SPECTRUM_H_
#define PHYSICS_SPECTRUM_H_

#include <cstddef>
#include <istream>
#include <span>
#include <vector>

#include "physics/data.h"
#include "physics/layers.h"
#include "physics/material.h"
#include "physics/quantities.h"

namespace physics {

inline constexpr std::size_t kMaxBins = 100'000;

// Reads a line per bin: energy in keV and photons, separated by blanks, a tab,
// a comma or a semicolon. Energies rise. Further columns, blank lines and those
// that begin with "#" do not count, nor does a first line that begins with a
// letter or a quote: a heading. Bins without photons are left out.
// Throws InputError, its message beginning with "line N: ": anything else, more
// than kMaxBins bins, or no photons at all.
std::vector<Line> read_spectrum(std::istream& in);

// mu/rho at each bin, evaluated once.
struct Bin {
  double weight = 0.0;  // photons, or photons times keV; above 0
  double keV = 0.0;
  double mu_rho = 0.0;  // cm2/g
};
using Bins = std::vector<Bin>;

// The beam in front of a material, with the layers before it taken into account
// but for a common factor, so that it cannot vanish.
// Throws OutsideTable; InputError: no lines.
Bins bins(const Material& material, std::span<const Line> lines,
          std::span<const Layer> before = {},
          Weighting weighting = Weighting::kPhotons, Rule rule = Rule::kPchip,
          const Data& data = builtin());

// -ln of the transmission, which itself may be too small for a number.
double exponent(const Bins& bins, AreaMass d);

// The effective mu/rho of the beam at this thickness: exponent / d; at 0 the
// weighted mean, which is its limit.
MassAttenuation effective(const Bins& bins, AreaMass d);

// Behind that thickness; 0 for in front.
Energy mean_energy(const Bins& bins, AreaMass d = {});

// The thickness that transmits `wanted`, above 0 and at most 1.
AreaMass thickness_for(const Bins& bins, double wanted);

}  // namespace physics

#endif  // PHYSICS_SPECTRUM_H_
