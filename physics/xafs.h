// X-ray absorption spectroscopy in transmission: how much powder shows an edge
// best.

#ifndef PHYSICS_XAFS_H_
#define PHYSICS_XAFS_H_

#include <string_view>

#include "physics/data.h"
#include "physics/material.h"
#include "physics/quantities.h"

namespace physics {

// The mu x above the edge with the best signal to noise where the photons of
// both chambers count: 2 y of 1 + exp(-y) = y. docs/xafs.md derives it.
inline constexpr double kBestMux = 2.556929085522148;

// The edge "K", "L1", ... of element `z`.
// Throws InputError: the element has no such edge in the tables.
const Edge& table_edge(int z, std::string_view shell);

// Both sides of an edge at one energy above it.
struct EdgeStep {
  Energy energy;
  MassAttenuation above;  // of the material
  // What the material would have without the edge: the coefficient of its
  // element extrapolated from below as a power of the energy, the others as
  // they are.
  MassAttenuation below;
};

// offset  of the energy above the edge; where another edge of the element lies
//         nearer, that edge's lower side is taken, so that the step stays that
//         of one edge
// Throws InputError: `offset` is not above 0, or the element is not in the
// material; OutsideTable.
EdgeStep edge_step(const Material& material, const Edge& edge,
                   Energy offset = {0.05}, const Data& data = builtin());

// A sample, alone or with a diluent.
struct XafsSample {
  AreaMass total_absorption;  // with the wanted mu x above the edge
  AreaMass unit_step;         // with an edge step of 1
  double step = 0.0;          // edge step of the first
  double mux = 0.0;           // mu x of the second
  // The smaller of both is the mass to take.
  bool absorption_binds() const { return total_absorption < unit_step; }
};

// mux      wanted mu x above the edge, above 0; the areal masses are those of
//          the sample without its diluent
// diluent  mu/rho at the energy of the step; ratio  grams of it per gram of
//          sample, 0 for none
XafsSample xafs_sample(const EdgeStep& step, double mux,
                       MassAttenuation diluent = {}, double ratio = 0.0);

}  // namespace physics

#endif  // PHYSICS_XAFS_H_
