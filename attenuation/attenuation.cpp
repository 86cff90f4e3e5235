#include "attenuation/attenuation.h"

#include "base/unit.h"
#include "physics/parabola.h"

namespace attenuation {

void attenuation(float energy, float& atc) {
  const physics::Block block = physics::read_block(base::unit(1));
  atc = physics::parabola(block, energy);
}

}  // namespace attenuation
