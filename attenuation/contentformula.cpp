#include "attenuation/contentformula.h"

#include <string>

#include "attenuation/notes.h"
#include "base/fatal.h"

namespace attenuation {
namespace {

std::string advice_on(const base::Text<132>& formula,
                      const physics::FlatFormulaError& error) {
  const std::string place = "cannot read the formula \"" +
                            std::string(formula.trimmed()) + "\" at \"" +
                            error.rest() + "\": ";
  if (error.too_long()) {
    return place + "a formula has at most " +
           std::to_string(physics::kMostComponents) + " components";
  }
  // What the question gives when it is left with "q" or "*".
  if (error.rest() == "*") {
    return place + "the question for it was left without an answer";
  }
  if (const auto meant = in_notation(formula.trimmed())) {
    return place + "type " + *meant;
  }
  return place + error.advice() +
         "; write symbol, underscore and count of each element, as in"
         " Cu_1S_1O_4H_10O_5";
}

}  // namespace

physics::Components read_formula(const base::Text<132>& formula,
                                 const physics::Symbols& es) {
  return base::with_advice<physics::FlatFormulaError>(
      [&] { return physics::flat_formula(formula, es); },
      [&formula](const physics::FlatFormulaError& error) {
        return advice_on(formula, error);
      });
}

void contentformula(const base::Text<132>& formula, const physics::Symbols& es,
                    int& j, PerComponent& indx, PerComponent& mult) {
  j = 0;
  for (const auto& [index, count] : read_formula(formula, es)) {
    indx(++j) = index;
    mult(j) = count;
  }
}

}  // namespace attenuation
