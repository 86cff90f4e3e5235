// From an entry of the catalogue to a sample with known coefficients.

#ifndef ATTENUATION_SAMPLE_H_
#define ATTENUATION_SAMPLE_H_

#include <vector>

#include "attenuation/catalogue.h"
#include "physics/beam.h"
#include "physics/elementlist.h"

namespace attenuation {

// A sample in its beam: one line, or the two of a source.
struct SampleInBeam {
  float density = 0.0F;  // g/cm3
  std::vector<physics::BeamLine> lines;
};

// Asks what the sample leaves open, finds its coefficients and reports them;
// those of the two-line source are not reported.
// Fatal: end of input; anything that cannot be looked up.
SampleInBeam set_up(const Sample& sample, const physics::ElementList& elements);

// Asks for thicknesses and reports the transmission of each, until the answer
// to "new value for the thickness" is not yes.
// Fatal: end of input.
void thickness_loop(const SampleInBeam& sample);

}  // namespace attenuation

#endif  // ATTENUATION_SAMPLE_H_
