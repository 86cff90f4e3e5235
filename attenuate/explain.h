// The sum by hand.

#ifndef ATTENUATE_EXPLAIN_H_
#define ATTENUATE_EXPLAIN_H_

#include "attenuate/answer.h"
#include "attenuate/output.h"
#include "attenuate/settings.h"

namespace attenuate {

// Writes how the numbers of `row` come about: each element's coefficient and
// share, mu/rho, areal mass and exponent of each layer, transmission.
void explain(const Question& question, const Row& row, const Settings& settings,
             Output& output);

}  // namespace attenuate

#endif  // ATTENUATE_EXPLAIN_H_
