// The element list of the dialogue.

#ifndef ATTENUATION_ELEMENTLIST_H_
#define ATTENUATION_ELEMENTLIST_H_

#include "physics/elementlist.h"

namespace attenuation {

// Reads "elements.dat" in the current directory through unit 1.
// Fatal: the file is missing or has less than 82 records.
physics::ElementList read_element_list();

// The name of an element of the list.
// Fatal: its record has none.
const base::Text<12>& name_of(const physics::ElementNames& ename, int index);

}  // namespace attenuation

#endif  // ATTENUATION_ELEMENTLIST_H_
