// What a reader of the answer should know.

#ifndef ATTENUATE_NOTES_H_
#define ATTENUATE_NOTES_H_

#include "attenuate/question.h"
#include "physics/data.h"

namespace attenuate {

// Appends to the question's notes: absorption edges near its energies or in its
// ranges, and parts of the tables that are in doubt there.
void add_notes(Question& question, const physics::Data& data);

}  // namespace attenuate

#endif  // ATTENUATE_NOTES_H_
