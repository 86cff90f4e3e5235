#include "physics/elementlist.h"

#include <string>

#include "base/fatal.h"
#include "physics/freetext.h"

namespace physics {

ListedElement element_in(const base::Text<80>& record) {
  constexpr int kWeightColumns = 20;
  return {record.columns<9, 10>(), record.columns<17, 28>(),
          first_number(record.columns<30, 80>(), kWeightColumns)};
}

ElementList read_element_list(base::Unit& file) {
  ElementList elements;
  for (int i = 1; i <= kListedElements; ++i) {
    base::Text<80> record;
    file.read(record);
    const ListedElement element = element_in(record);
    elements.es(i) = element.symbol;
    elements.ename(i) = element.name;
    elements.emolweight(i) = element.weight.value_or(0.0F);
  }
  return elements;
}

int index_of_symbol(const Symbols& es, const base::Text<2>& symbol) {
  return base::with_advice<base::RangeError>(
      [&] {
        int i = 1;
        while (es(i) != symbol) ++i;
        return i;
      },
      [&] {
        return "unknown element symbol \"" + std::string(symbol.trimmed()) +
               "\": symbols are case-sensitive, for example Cu or N";
      });
}

bool heads_block(std::string_view record, const base::Text<12>& name) {
  return !name.blank() && !record.empty() &&
         record.substr(1).starts_with(name.trimmed());
}

int atomic_number_in(const base::Text<16>& record) {
  return whole_number(record.columns<4, 11>());
}

}  // namespace physics
