// Moessbauer absorbers: how thick a sample measures a line in the shortest
// time.
//
// S. J. Long, T. E. Cranshaw and G. Longworth, Moessbauer Eff. Ref. Data J. 6
// (1983) 42, weigh the depth of a line against the counts that the sample takes
// away; D. G. Rancourt et al., Am. Mineral. 78 (1993) 1, do it for minerals.
// The depth of a thick absorber is that of S. Margulies and J. R. Ehrman, Nucl.
// Instr. Meth. 12 (1961) 131.

#ifndef PHYSICS_ABSORBER_H_
#define PHYSICS_ABSORBER_H_

#include <optional>
#include <string_view>

#include "physics/data.h"
#include "physics/material.h"
#include "physics/quantities.h"

namespace physics {

// The transition that "57Fe" stands for, or of several of one isotope
// "155Gd@105.3", the one within 1 % of that energy; without energy the first.
// Throws InputError.
const Transition& transition(std::string_view typed);

// Cross-section of the nucleus at the centre of the line, cm2:
// 2 pi (hbar c / E)^2 (2 Ie + 1) / (2 Ig + 1) / (1 + alpha).
double resonance_cross_section(const Transition& transition);

// eps(t) = 1 - exp(-t/2) I0(t/2): the part of the recoil-free photons that a
// line of effective thickness `t` (at least 0) takes out at its centre, where
// lines of source and absorber are equally wide. Relative error below 1e-14 for
// every t; t/2 for thin absorbers, 1 - 1/sqrt(pi t) for thick ones.
double resonant_absorption(double t);

// What a gram of the material does to the resonant photons.
struct Resonance {
  double element_fraction = 0.0;  // by mass
  double share = 0.0;             // of the element's atoms that are the isotope
  double nuclei_per_g = 0.0;      // resonant ones
  MassAttenuation mu_rho;         // by electrons, at the energy of the line
};

// enriched  percent of the element's atoms that are the isotope; without it
//           what the formula says (^57Fe), or the natural abundance
// The mass of the element follows its isotopes, the attenuation per atom does
// not.
// Throws InputError: the material is without the element, says itself which
// isotopes it holds, or `enriched` is not above 0 and at most 100;
// OutsideTable.
Resonance resonance(const Material& material, const Transition& transition,
                    std::optional<double> enriched = {},
                    Rule rule = Rule::kPchip, const Data& data = builtin());

// A line of an absorber in a beam.
struct Absorber {
  MassAttenuation mu_rho;
  double t_per_g_cm2 = 0.0;  // effective thickness of the line, above 0
  // Counts in the window that are not the line, per count of the line without
  // absorber; may be infinite.
  double background = 0.0;
};

// Q = eps^2 exp(-2 x) / (exp(-x) + b), times a factor of the absorber that
// keeps it a number for hardly any resonant nuclei and for an infinite
// background. The counting time for a given relative error of the depth goes as
// 1/Q.
double merit(const Absorber& absorber, AreaMass d);

struct BestThickness {
  AreaMass best;
  // Between these the time is at most `margin` longer.
  AreaMass thinnest, thickest;
};

BestThickness best_thickness(const Absorber& absorber, double margin = 0.10);

}  // namespace physics

#endif  // PHYSICS_ABSORBER_H_
