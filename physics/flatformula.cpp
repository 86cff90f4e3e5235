#include "physics/flatformula.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace physics {
namespace {

using base::Text;

std::string_view without_leading_blanks(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  return first == text.npos ? std::string_view{} : text.substr(first);
}

struct CountedSymbol {
  Text<2> symbol;
  int count = 0;
  int next = 0;  // column where the rest begins
};

// What `rest` begins with. A digit is any value of 0 to 9 that a character's
// distance from "0" gives.
CountedSymbol first_symbol(const Text<132>& rest) {
  const auto value = [&rest](int column) {
    return static_cast<unsigned char>(rest.at(column, "ch132")) - '0';
  };
  const auto is_digit = [](int v) { return 0 <= v && v <= 9; };

  const bool one_letter = rest.columns<2, 2>() == "_";
  CountedSymbol first;
  first.symbol = one_letter ? rest.columns<1, 1>() : rest.columns<1, 2>();
  const int l = one_letter ? 3 : 4;
  const int m = l + 1;
  // Two-letter symbols read their second digit twice.
  const int mu = one_letter ? l + 2 : l + 1;
  first.count = value(l);
  first.next = l + 1;
  if (is_digit(value(m))) {
    first.count = 10 * first.count + value(m);
    first.next = l + 2;
  }
  if (is_digit(value(mu))) {
    first.count = 10 * first.count + value(mu);
    first.next = l + 3;
  }
  return first;
}

}  // namespace

FlatFormulaError::FlatFormulaError(const base::RangeError& cause,
                                   std::string rest, bool too_long)
    : base::RangeError(cause), rest_(std::move(rest)), too_long_(too_long) {}

Components flat_formula(const Text<132>& text, const Symbols& es) {
  Components components;
  Text<132> rest = without_leading_blanks(text.full());
  Text<132> start;
  bool symbol_known = false;
  try {
    do {
      start = rest;
      symbol_known = false;
      const CountedSymbol first = first_symbol(rest);
      rest = Text<132>(rest.columns(first.next, 132, "ch132"));
      const int index = index_of_symbol(es, first.symbol);
      symbol_known = true;
      components.add({index, first.count});
    } while (!rest.blank());
  } catch (const base::RangeError& cause) {
    throw FlatFormulaError(cause, std::string(start.trimmed()), symbol_known);
  }
  return components;
}

std::string flat_formula(const Components& components, const Symbols& es) {
  std::string text;
  for (const Component& component : components) {
    text.append(es(component.index).trimmed()).append("_");
    text += std::to_string(component.count);
  }
  return text;
}

float mass_attenuation(const Components& components,
                       const MolarWeights& weights,
                       std::span<const float> coefficients) {
  float molar_mass = 0.0F;
  for (const auto& [index, count] : components) {
    molar_mass = weights(index) * static_cast<float>(count) + molar_mass;
  }
  float sum = 0.0F;
  std::size_t i = 0;
  for (const auto& [index, count] : components) {
    sum =
        coefficients[i++] * (static_cast<float>(count) * weights(index)) + sum;
  }
  return sum / molar_mass;
}

}  // namespace physics
