// Formulas, names and mixtures: any bytes are either understood, and then the
// same once more from their echo, or refused with a place inside them.

#include "physics/material.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "physics/formula.h"

namespace {

// A finding unless `so`.
void require(bool so) {
  if (!so) std::abort();
}

void require_place(const physics::InputError& error, std::string_view text) {
  require(!error.message().empty());
  require(0 <= error.column() &&
          error.column() <= physics::column_of(text, text.size()) + 1);
}

// Counts of the echo are rounded nowhere, but added up in another order.
void require_same(const physics::Composition& a,
                  const physics::Composition& b) {
  require(a.size() == b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    require(a[i].z == b[i].z && a[i].mass_number == b[i].mass_number);
    require(std::abs(a[i].atoms - b[i].atoms) <= 1e-9 * a[i].atoms);
  }
}

void formula(std::string_view text) {
  try {
    physics::check_text(text);
    const auto read = physics::read_formula(text);
    require(!read.composition.empty());
    if (read.echo.size() > physics::kLongestFormula) return;
    require_same(read.composition, physics::formula(read.echo));
  } catch (const physics::FormulaError& error) {
    require_place(error, text);
  }
}

void material(std::string_view text) {
  try {
    const physics::Material read = physics::material(text);
    double sum = 0.0;
    for (const auto& one : read.constituents) {
      require(one.mass_fraction > 0.0 && one.weight > 0.0);
      sum += one.mass_fraction;
    }
    require(std::abs(sum - 1.0) < 1e-9);
    require(!read.density || read.density->g_cm3 > 0.0);
    require(!physics::density_advice(read).empty());
    if (read.composition) physics::flat_notation(*read.composition);
  } catch (const physics::FormulaError& error) {
    require_place(error, text);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  formula(text);
  material(text);
  return 0;
}
