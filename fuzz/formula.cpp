// Formulas: whatever is typed ends as a composition within its bounds.

#include <cstdlib>

#include "attenuation/contentformula.h"
#include "fuzz/workspace.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  static const attenuation::ElementList elements = [] {
    attenuation::ElementList list;
    fuzz::run("", [&list] { attenuation::read_element_list(list); });
    return list;
  }();
  const base::Text<132> formula = fuzz::text_of(data, size);
  fuzz::run("", [&] {
    int j = 0;
    attenuation::Composition indx{"indx"};
    attenuation::Composition mult{"mult"};
    attenuation::contentformula(formula, elements.es, j, indx, mult);
    if (j < 1 || j > 12) std::abort();
    for (int i = 1; i <= j; ++i) {
      if (indx(i) < 1 || indx(i) > 82) std::abort();
      // Plain formulas have plain counts, but for the doubled second digit.
      const bool plain = attenuation::counts_are_numbers(formula);
      if (plain && (mult(i) < 0 || mult(i) > 999)) std::abort();
    }
  });
  return 0;
}
