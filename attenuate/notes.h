// What a reader of the answer should know.

#ifndef ATTENUATE_NOTES_H_
#define ATTENUATE_NOTES_H_

#include <span>
#include <string>
#include <vector>

#include "attenuate/question.h"
#include "attenuate/settings.h"
#include "physics/data.h"
#include "physics/layers.h"

namespace attenuate {

// Appends to the question's notes: absorption edges near its energies or in its
// ranges, and parts of the tables that are in doubt there.
void add_notes(Question& question, const physics::Data& data);

// The same for `lines`, whose energies rise, in place of the question's.
void add_notes(Question& question, std::span<const physics::Line> lines,
               const physics::Data& data);

// Doubts alone, at one energy.
void add_doubts(Question& question, physics::Energy energy,
                const physics::Data& data);

// Throws physics::InputError: there is a note, and `settings` want none.
void check_strict(const std::vector<std::string>& notes,
                  const Settings& settings);

}  // namespace attenuate

#endif  // ATTENUATE_NOTES_H_
