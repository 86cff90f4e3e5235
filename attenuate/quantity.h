// Numbers with units, as the command's words hold them.

#ifndef ATTENUATE_QUANTITY_H_
#define ATTENUATE_QUANTITY_H_

#include "physics/typed_quantity.h"

namespace attenuate {

using physics::energy;
using physics::energy_unit;
using physics::is_unit_in_other_letters;
using physics::leading_number;
using physics::LengthOrAreaMass;
using physics::looks_like_thickness;
using physics::Number;
using physics::refuse_unit;
using physics::thickness;
using physics::Unit;

}  // namespace attenuate

#endif  // ATTENUATE_QUANTITY_H_
