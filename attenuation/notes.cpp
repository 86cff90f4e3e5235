#include "attenuation/notes.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "base/edit.h"
#include "base/fatal.h"
#include "physics/data.h"
#include "physics/material.h"

namespace attenuation {
namespace {

using base::Text;

std::string text_of(std::string_view text) { return std::string(text); }

std::string lowered(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  return lower;
}

}  // namespace

std::optional<std::string> in_notation(std::string_view typed) {
  try {
    return physics::flat_notation(physics::formula(base::trimmed(typed)));
  } catch (const physics::FormulaError&) {
    return std::nullopt;
  }
}

void note_reading(const Text<132>& typed, const physics::Components& read,
                  const physics::Symbols& es) {
  const std::string as_read = physics::flat_formula(read, es);
  if (typed == as_read) return;
  const auto meant = in_notation(typed.trimmed());
  if (meant == as_read) return;
  const std::string formula = text_of(typed.trimmed());
  base::note(meant ? "this is not " + formula + " but " + as_read +
                         ": stop (Ctrl-C) and type " + *meant
                   : "the formula " + formula + " is read as " + as_read +
                         ": if it is not meant, stop (Ctrl-C)");
}

void note_weights(const physics::Components& components,
                  const physics::ElementList& elements) {
  bool atoms = false;
  for (const auto& [index, count] : components) {
    atoms = atoms || count != 0;
    const float weight = elements.emolweight(index);
    if (weight > 0.0F && std::isfinite(weight)) continue;
    base::note("elements.dat:" + std::to_string(index) +
               ": no molar weight for " +
               text_of(elements.es(index).trimmed()) +
               ", so the coefficient is wrong");
  }
  if (!atoms) base::note("no atoms are counted, so there is no coefficient");
}

void note_symbol(const Text<132>& typed, int element,
                 const physics::ElementList& elements) {
  if (typed.length() <= 2) return;
  const std::string answer = text_of(typed.trimmed());
  std::string advice;
  if (const auto* meant = physics::element_with_name(lowered(answer))) {
    advice = ": stop (Ctrl-C) and type " + text_of(meant->symbol);
  }
  base::note("of " + answer + " only " +
             text_of(elements.es(element).trimmed()) + " counts, " +
             lowered(elements.ename(element).trimmed()) + advice);
}

void note_density(float density) {
  if (density < 0.0F) base::note("no sample has a negative density");
}

void note_areal_mass(float thick) {
  if (thick < 0.0F) base::note("no sample has a negative areal mass");
}

void note_too_wide(std::string_view name, float value, std::string_view unit) {
  constexpr int kRoom = 48;  // for every single-precision value
  std::string shown = base::fixed_field(value, kRoom, 2);
  shown.erase(0, shown.find_first_not_of(' '));
  base::note(text_of(name) + " = " + shown + (unit.empty() ? "" : " ") +
             text_of(unit) + " is too wide for its field");
}

}  // namespace attenuation
