#include "attenuate/tables.h"

#include <algorithm>

#include "attenuate/number.h"
#include "physics/table.h"

namespace attenuate {

using physics::Energy;

std::string outside_in_words(const physics::OutsideTable& outside,
                             const physics::Data& data) {
  Energy first = outside.first();
  Energy last = outside.last();
  const Energy energy = outside.energy();
  Energy any_first = first;
  Energy any_last = last;
  for (const auto& element : data.elements()) {
    any_first = std::min(any_first, first_energy(data.table(element.z)));
    any_last = std::max(any_last, last_energy(data.table(element.z)));
  }
  std::string message = energy_in_words(energy.keV) + " is " +
                        (energy < first ? "below" : "above") + " the ";
  if (energy < any_first || any_last < energy) {
    first = any_first;
    last = any_last;
    message += "tables";
  } else {
    const auto index = static_cast<std::size_t>(outside.z()) - 1;
    message += "table of " + std::string(data.elements()[index].name);
  }
  return message + " (" + energy_in_words(first.keV) + " to " +
         energy_in_words(last.keV) + ")";
}

}  // namespace attenuate
