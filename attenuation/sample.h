// From an entry of the catalogue to a sample with known coefficients.

#ifndef ATTENUATION_SAMPLE_H_
#define ATTENUATION_SAMPLE_H_

#include "attenuation/catalogue.h"
#include "attenuation/elementlist.h"

namespace attenuation {

enum class Source {
  kSingleEnergy,
  kTwoLines,  // the gamma lines of 57Co
};

// A sample in its beam.
struct SampleInBeam {
  Source source = Source::kSingleEnergy;
  float density = 0.0F;  // g/cm3
  // Mass attenuation coefficients in cm2/g: at the single energy, or at the
  // lower and the upper line of the two-line source.
  float atc = 0.0F;
  float atc1 = 0.0F;
  float atc2 = 0.0F;
};

// Asks what the sample leaves open, finds its coefficients and reports them;
// those of the two-line source are not reported.
// Fatal: end of input; anything that cannot be looked up.
SampleInBeam set_up(const Sample& sample, const ElementList& elements);

// Asks for thicknesses and reports the transmission of each, until the answer
// to "new value for the thickness" is not yes.
// Fatal: end of input.
void thickness_loop(const SampleInBeam& sample);

}  // namespace attenuation

#endif  // ATTENUATION_SAMPLE_H_
