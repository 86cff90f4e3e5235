// The numbers of a row by name, the same in every format for programs.

#ifndef ATTENUATE_COLUMNS_H_
#define ATTENUATE_COLUMNS_H_

#include <optional>
#include <span>
#include <string_view>

#include "attenuate/answer.h"
#include "attenuate/settings.h"

namespace attenuate {

struct Column {
  std::string_view name;  // with its unit
  std::optional<double> (*value)(const Row&);
};

// In the order of output. mu_en/rho, when not asked for, is left out.
std::span<const Column> columns(const Settings& settings);

// Digits that tell the energies of a fine range apart.
inline constexpr int kEnergyDigits = 10;

// Digits of column `i`: the energy has its own.
inline int digits_of(std::size_t column, const Settings& settings) {
  return column == 0 && settings.digits < kEnergyDigits ? kEnergyDigits
                                                        : settings.digits;
}

// What the row is for: "Fe K alpha1", or "sum" over the lines; blank without a
// source.
std::string_view line_name(const Row& row);
std::string_view source_name(const Row& row);

}  // namespace attenuate

#endif  // ATTENUATE_COLUMNS_H_
