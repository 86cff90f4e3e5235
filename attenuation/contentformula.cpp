#include "attenuation/contentformula.h"

#include <string>
#include <string_view>

#include "base/fatal.h"

namespace attenuation {
namespace {

using base::Text;

std::string_view without_leading_blanks(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  return first == text.npos ? std::string_view{} : text.substr(first);
}

struct Component {
  Text<2> symbol;
  int count = 0;
  int next = 0;  // column where the rest begins
};

// The component that `rest` begins with. A digit is any value of 0 to 9 that a
// character's distance from "0" gives.
Component first_component(const Text<132>& rest) {
  const auto value = [&rest](int column) {
    return static_cast<unsigned char>(rest.at(column, "ch132")) - '0';
  };
  const auto is_digit = [](int v) { return 0 <= v && v <= 9; };

  const bool one_letter = rest.columns<2, 2>() == "_";
  Component component;
  component.symbol = one_letter ? rest.columns<1, 1>() : rest.columns<1, 2>();
  const int l = one_letter ? 3 : 4;
  const int m = l + 1;
  // Two-letter symbols read their second digit twice.
  const int mu = one_letter ? l + 2 : l + 1;
  component.count = value(l);
  component.next = l + 1;
  if (is_digit(value(m))) {
    component.count = 10 * component.count + value(m);
    component.next = l + 2;
  }
  if (is_digit(value(mu))) {
    component.count = 10 * component.count + value(mu);
    component.next = l + 3;
  }
  return component;
}

}  // namespace

void contentformula(const Text<132>& formula, const Symbols& es, int& j,
                    Composition& indx, Composition& mult) {
  Text<132> ch132 = without_leading_blanks(formula.full());
  Text<132> component_start;
  j = 1;
  try {
    do {
      component_start = ch132;
      const Component component = first_component(ch132);
      ch132 = Text<132>(ch132.columns(component.next, 132, "ch132"));
      indx(j) = element_with_symbol(es, component.symbol);
      mult(j) = component.count;
      ++j;
    } while (!ch132.blank());
  } catch (base::RangeError& error) {
    std::string advice = "cannot read the formula \"" +
                         std::string(formula.trimmed()) + "\" at \"" +
                         std::string(component_start.trimmed()) + "\": ";
    if (j > kComponents) {
      advice += "a formula has at most 12 components";
    } else if (component_start == "*") {
      advice += "the question for it was left without an answer";
    } else {
      advice += error.advice() +
                "; write symbol, underscore and count of each element, as in"
                " Cu_1S_1O_4H_10O_5";
    }
    error.advise(advice);
    throw;
  }
  --j;
}

std::string written_out(const Symbols& es, int j, const Composition& indx,
                        const Composition& mult) {
  std::string formula;
  for (int i = 1; i <= j; ++i) {
    formula.append(es(indx(i)).trimmed()).append("_");
    formula += std::to_string(mult(i));
  }
  return formula;
}

}  // namespace attenuation
