#include "attenuation/parabel.h"

namespace attenuation {

void parabel(int ns, physics::FitPoints& xs, const physics::FitPoints& ys,
             double us, float& att) {
  for (int i = 1; i <= 4; ++i) xs(i) *= 1000.0;
  if (ns == 4) att = physics::four_point_fit(xs, ys, us);
  if (ns == 3) att = physics::three_point_fit(xs, ys, us);
}

}  // namespace attenuation
