#include "attenuation/elementlist.h"

#include <string>

#include "base/fatal.h"
#include "base/unit.h"

namespace attenuation {

physics::ElementList read_element_list() {
  base::Unit& file = base::unit(1);
  file.open("elements.dat");
  const base::UnitCloser closer(file);
  return physics::read_element_list(file);
}

const base::Text<12>& name_of(const physics::ElementNames& ename, int index) {
  const base::Text<12>& name = ename(index);
  if (name.blank()) {
    base::fatal("No element name in record " + std::to_string(index) +
                    " of 'elements.dat'",
                "columns 17-28 of this record must hold the name that heads"
                " the element's block of coefficients");
  }
  return name;
}

}  // namespace attenuation
