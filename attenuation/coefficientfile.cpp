#include "attenuation/coefficientfile.h"

#include "attenuation/attenuation.h"

namespace attenuation {

float attenuation_of(const base::Text<12>& name, float energy) {
  float atc = 0.0F;
  base::with_advice([&] { attenuation(energy, atc); },
                    [&name](const base::FatalEnd& end) {
                      return std::string(name.trimmed()) + ": " + end.advice();
                    });
  return atc;
}

}  // namespace attenuation
