// The reach of the tables, in words.

#ifndef ATTENUATE_TABLES_H_
#define ATTENUATE_TABLES_H_

#include <string>

#include "physics/data.h"
#include "physics/errors.h"

namespace attenuate {

// "0.5 keV is below the tables (1 keV to 20 MeV)"; where other elements reach
// further, "1.2 keV is below the table of xenon (1.5 keV to 20 MeV)".
std::string outside_in_words(const physics::OutsideTable& outside,
                             const physics::Data& data);

}  // namespace attenuate

#endif  // ATTENUATE_TABLES_H_
