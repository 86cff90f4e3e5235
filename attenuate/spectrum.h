// attenuate MATERIAL [THICKNESS] --spectrum FILE: a beam of many energies.

#ifndef ATTENUATE_SPECTRUM_H_
#define ATTENUATE_SPECTRUM_H_

#include "attenuate/options.h"
#include "attenuate/output.h"

namespace attenuate {

// Answers the request, whose spectrum is a file ("-": standard input). Returns
// the exit status.
int answer_spectrum(const Request& request, Output& output);

}  // namespace attenuate

#endif  // ATTENUATE_SPECTRUM_H_
