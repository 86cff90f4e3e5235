#include "attenuation/coefficientfile.h"

#include "toolkit/text/harmless.h"

namespace attenuation {

void attenuation_of(const base::Text<12>& name, float energy, float& atc) {
  try {
    attenuation(energy, atc);
  } catch (base::FatalEnd& end) {
    end.advise(toolkit::harmless(name.trimmed()) + ": " + end.advice());
    throw;
  }
}

}  // namespace attenuation
