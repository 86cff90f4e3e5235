// What stands behind the handles of attenuate.h.

#ifndef LIBRARY_HANDLES_H_
#define LIBRARY_HANDLES_H_

#include <cstdint>
#include <vector>

#include "physics/arrays.h"
#include "physics/layers.h"
#include "physics/material.h"

namespace library {

// Told apart by their first bytes, which are gone once they are freed: so is a
// handle of the other kind, or memory that was never made one.
inline constexpr std::uint64_t kMaterial = 0x6d6174657269616c;
inline constexpr std::uint64_t kStack = 0x6c61796572732e2e;

}  // namespace library

struct attenuate_material {
  std::uint64_t kind = library::kMaterial;
  physics::Material material;
  physics::CurveSum mu_rho;
  physics::CurveSum mu_en_rho;
};

struct attenuate_stack {
  std::uint64_t kind = library::kStack;
  std::vector<physics::Layer> layers;
  physics::CurveSum mu_x;
};

#endif  // LIBRARY_HANDLES_H_
