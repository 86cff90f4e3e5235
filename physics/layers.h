// Beam and layers: what passes, and how thick a layer must be.

#ifndef PHYSICS_LAYERS_H_
#define PHYSICS_LAYERS_H_

#include <cstddef>
#include <span>

#include "physics/data.h"
#include "physics/material.h"
#include "physics/quantities.h"

namespace physics {

struct Layer {
  Material material;
  AreaMass d;
};

// A line of the beam. Weights count relative to each other.
struct Line {
  Energy energy;
  double weight = 1.0;
};

// How lines are summed up.
enum class Weighting {
  kPhotons,  // each line by its weight
  kEnergy,   // each line by weight times energy
};

// What a line counts with in a sum.
// Throws InputError: that is negative or no number.
double weight_of(const Line& line, Weighting weighting);

// The exponent: the sum of mu/rho times areal mass over the layers.
// Throws OutsideTable.
double mu_x(std::span<const Layer> layers, Energy energy,
            Rule rule = Rule::kPchip, const Data& data = builtin());

// exp(-mu_x): narrow beam, no build-up.
double transmission(std::span<const Layer> layers, Energy energy,
                    Rule rule = Rule::kPchip, const Data& data = builtin());

// Transmission of a beam of several lines, weighted; lines without weight are
// left out.
// Throws OutsideTable; InputError: weights that are negative, no numbers or
// all 0.
double transmission(std::span<const Layer> layers, std::span<const Line> lines,
                    Weighting weighting = Weighting::kPhotons,
                    Rule rule = Rule::kPchip, const Data& data = builtin());

// How much is to pass: a transmission T, or the mu x that stands for it, -ln T,
// which keeps its digits where T is almost 1.
struct Wanted {
  enum class As { kTransmission, kMuX };
  double value = 1.0;
  As as = As::kTransmission;

  double mu_x() const;
  double transmission() const;
};

// The areal mass of layer `unknown` (0 to layers.size() - 1, whose own is not
// read) with which the whole lets `wanted` of the lines through. One line has a
// closed answer; for several ln T falls with the thickness at least by the
// smallest and at most by the largest mu/rho of the lines, which brackets the
// root, and bisection goes on until neighbouring doubles. So the search can
// neither miss nor stop early.
// Throws InputError: a transmission that is not above 0 and at most 1, a mu x
// that is no number from 0 on, the other layers alone let less through, weights
// as above; OutsideTable.
AreaMass thickness_for(std::span<const Layer> layers, std::size_t unknown,
                       Wanted wanted, std::span<const Line> lines,
                       Weighting weighting = Weighting::kPhotons,
                       Rule rule = Rule::kPchip, const Data& data = builtin());

}  // namespace physics

#endif  // PHYSICS_LAYERS_H_
