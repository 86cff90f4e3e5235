#include "attenuation/atcoefficient.h"

#include "attenuation/coefficientfile.h"
#include "base/text.h"
#include "base/unit.h"
#include "help/key.h"
#include "prompts/askvalue.h"

namespace attenuation {

void atcoefficient(int nrd, int nwr, int j, const Composition& indx,
                   const Composition& mult, const ElementNames& ename,
                   const MolarWeights& emolweight, float& value, float& atc) {
  constexpr int kColumns = 80;  // whatever the terminal has
  base::Text<132> querytype = "Photon energy in keV";
  base::Text<7> form = "f8.2";
  base::Text<132> chcom = std::string_view(help::Key("read/energy"));
  toolkit::askvalue(querytype, form, value, chcom, kColumns, nrd, nwr);
  const float energy = value;

  base::Array<float, kComponents> atcoef{"atcoef"};
  for (int i = 1; i <= j; ++i) {
    const base::Text<12>& name = ename(indx(i));
    const base::UnitCloser closer(base::unit(1));
    base::Text<12> element;
    find_element(name, element);
    attenuation_of(name, energy, atc);
    atcoef(i) = atc;
  }

  const auto atoms = [&mult](int i) { return static_cast<float>(mult(i)); };
  float hmol = 0.0F;
  for (int i = 1; i <= j; ++i) {
    hmol = emolweight(indx(i)) * atoms(i) + hmol;
  }
  atc = 0.0F;
  for (int i = 1; i <= j; ++i) {
    atc = atcoef(i) * (atoms(i) * emolweight(indx(i))) + atc;
  }
  atc = atc / hmol;
}

}  // namespace attenuation
