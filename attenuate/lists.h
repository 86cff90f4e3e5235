// What the command knows: materials, sources, edges, elements.

#ifndef ATTENUATE_LISTS_H_
#define ATTENUATE_LISTS_H_

#include <span>
#include <string_view>

#include "attenuate/output.h"

namespace attenuate {

// Each lists all, or those that its argument names or that contain it. In text,
// as --tsv, --csv or --json. They return the exit status and throw
// physics::InputError where nothing fits.
using Arguments = std::span<const std::string_view>;
int list_materials(Arguments arguments, Output& output);
int list_sources(Arguments arguments, Output& output);
int list_edges(Arguments arguments, Output& output);
int list_elements(Arguments arguments, Output& output);

}  // namespace attenuate

#endif  // ATTENUATE_LISTS_H_
