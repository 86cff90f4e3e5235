#include "attenuation/coefficientfile.h"

namespace attenuation {

void attenuation_of(const base::Text<12>& name, float energy, float& atc) {
  try {
    attenuation(energy, atc);
  } catch (base::FatalEnd& end) {
    end.advise(std::string(name.trimmed()) + ": " + end.advice());
    throw;
  }
}

}  // namespace attenuation
