#include "attenuation/atcoefficient.h"

#include <vector>

#include "attenuation/coefficientfile.h"
#include "attenuation/elementlist.h"
#include "base/text.h"
#include "base/unit.h"
#include "help/key.h"
#include "prompts/askvalue.h"

namespace attenuation {

float asked_energy(float value, int nrd, int nwr) {
  constexpr int kColumns = 80;
  base::Text<132> querytype = "Photon energy in keV";
  base::Text<7> form = "f8.2";
  base::Text<132> chcom = std::string_view(help::Key("read/energy"));
  toolkit::askvalue(querytype, form, value, chcom, kColumns, nrd, nwr);
  return value;
}

float coefficient_of(const physics::Components& components,
                     const physics::ElementNames& ename,
                     const physics::MolarWeights& emolweight, float energy) {
  constexpr int kRecord = 12;
  std::vector<float> coefficients;
  for (const physics::Component& component : components) {
    const base::UnitCloser closer(base::unit(1));
    const base::Text<12>& name = name_of(ename, component.index);
    find_element<kRecord>(name);
    coefficients.push_back(attenuation_of(name, energy));
  }
  return physics::mass_attenuation(components, emolweight, coefficients);
}

void atcoefficient(int nrd, int nwr, int j, const PerComponent& indx,
                   const PerComponent& mult, const physics::ElementNames& ename,
                   const physics::MolarWeights& emolweight, float& value,
                   float& atc) {
  physics::Components components;
  for (int i = 1; i <= j; ++i) components.add({indx(i), mult(i)});
  value = asked_energy(value, nrd, nwr);
  atc = coefficient_of(components, ename, emolweight, value);
}

}  // namespace attenuation
