// Figures of plain questions: --plot and --svg.

#ifndef ATTENUATE_FIGURES_H_
#define ATTENUATE_FIGURES_H_

#include "attenuate/options.h"
#include "attenuate/output.h"
#include "attenuate/question.h"

namespace attenuate {

// Draws what the request asks: mu/rho over energy where no thickness is given,
// transmission over energy for a range, and over the thickness of the last (or
// unknown) layer for single energies and lines. `--beside` adds curves. True:
// nothing else is to be written.
// `question` receives what was typed. Throws physics::InputError with the
// column in it.
bool draw_question(const Request& request, Question& question, Output& output);

}  // namespace attenuate

#endif  // ATTENUATE_FIGURES_H_
