// Words for energies.

#ifndef ATTENUATE_ENERGIES_H_
#define ATTENUATE_ENERGIES_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "attenuate/question.h"

namespace attenuate {

// Whether `word`, which does not begin with a number, is one for energies: a
// source or an edge.
bool names_energies(std::string_view word);

// The source whose name is next to `word`; blank where none is near.
std::string nearest_source(std::string_view word);

// Throws physics::InputError where `word`, which is no source, names an
// isotope: "57Fe".
void refuse_isotope(std::string_view word);

// Reads "14.41,122.06", "5:30:0.5", "57Co", "Fe:K+50eV" and appends to `beams`,
// whose places count from `at`. Throws physics::InputError with the column in
// `word`.
void read_energies(std::string_view word, std::size_t at,
                   std::vector<Beam>& beams, std::vector<std::string>& notes);

}  // namespace attenuate

#endif  // ATTENUATE_ENERGIES_H_
