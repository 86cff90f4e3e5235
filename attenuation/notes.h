// Notes on standard error: what was taken otherwise than it looks, and numbers
// that are no answer. The run goes on, and standard output is the same with
// and without them. The manual lists them all.

#ifndef ATTENUATION_NOTES_H_
#define ATTENUATION_NOTES_H_

#include <optional>
#include <string>
#include <string_view>

#include "base/text.h"
#include "physics/elementlist.h"
#include "physics/flatformula.h"

namespace attenuation {

// `typed`, a formula as chemists write it, in the notation of the dialogue:
// "Fe_2O_3" for "Fe2O3", "Fe_9Fe_3" for "Fe_12". Nothing if it is no formula,
// or one that the notation cannot hold.
std::optional<std::string> in_notation(std::string_view typed);

// A formula that is read otherwise than it looks.
void note_reading(const base::Text<132>& typed, const physics::Components& read,
                  const physics::Symbols& es);

// A formula without atoms, or elements that have no molar weight.
void note_weights(const physics::Components& components,
                  const physics::ElementList& elements);

// An answer of which only the first two characters count as a symbol; `element`
// is the index of the one they name.
void note_symbol(const base::Text<132>& typed, int element,
                 const physics::ElementList& elements);

// A density or an areal mass that no sample has.
void note_density(float density);
void note_areal_mass(float thick);

// A value that shows as stars because its field is too narrow.
void note_too_wide(std::string_view name, float value, std::string_view unit);

}  // namespace attenuation

#endif  // ATTENUATION_NOTES_H_
