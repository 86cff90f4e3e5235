#include "attenuation/elementlist.h"

#include "base/fatal.h"
#include "base/unit.h"
#include "text/trlch.h"

namespace attenuation {

void read_element_list(ElementList& elements) {
  base::Unit& file = base::unit(1);
  file.open("elements.dat");
  const base::UnitCloser closer(file);
  for (int i = 1; i <= kElements; ++i) {
    base::Text<80> record;
    file.read(record);
    elements.es(i) = record.columns<9, 10>();
    elements.ename(i) = record.columns<17, 28>();
    int iout = 0;
    base::Array<float, 32> out{"out"};
    toolkit::trlch(20, record.columns<30, 80>(), iout, out);
    elements.emolweight(i) = out(1);
  }
}

int element_with_symbol(const Symbols& es, const base::Text<2>& symbol) {
  int i = 1;
  try {
    while (es(i) != symbol) ++i;
  } catch (base::RangeError& error) {
    error.advise("unknown element symbol \"" + std::string(symbol.trimmed()) +
                 "\": symbols are case-sensitive, for example Cu or N");
    throw;
  }
  return i;
}

}  // namespace attenuation
