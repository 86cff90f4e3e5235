#include "physics/uncertainty.h"

#include <algorithm>

namespace physics {
namespace {

bool fits(const UncertaintyRow& row, double value) {
  return row.from <= value && value < row.to;
}

// Whether `shells`, separated by blanks, name `shell`: no shell is part of
// another's name.
bool names(std::string_view shells, std::string_view shell) {
  return shells.find(shell) != shells.npos;
}

// Below the first and above the last base row their own values hold on.
double base(Energy energy) {
  double relative = 0.0;
  for (const UncertaintyRow& row : uncertainty_rows()) {
    const bool is_base = row.shells.empty();
    if (is_base && (relative == 0.0 || row.from <= energy.keV)) {
      relative = row.relative;
    }
  }
  return relative;
}

}  // namespace

double relative_uncertainty(int z, Energy energy) {
  double relative = base(energy);
  // The tables begin at 1 keV, where edges below it have long faded.
  constexpr double kLeastEdge = 1.0;
  for (const Edge& edge : edges(z)) {
    if (edge.energy.keV <= kLeastEdge) break;
    const double ratio = energy.keV / edge.energy.keV;
    for (const UncertaintyRow& row : uncertainty_rows()) {
      if (fits(row, ratio) && names(row.shells, edge.shell)) {
        relative = std::max(relative, row.relative);
      }
    }
  }
  return relative;
}

}  // namespace physics
