#include "physics/errors.h"

#include <array>
#include <charconv>

namespace physics {

std::string short_number(double value) {
  std::array<char, 32> digits{};
  const auto [end, error] =
      std::to_chars(digits.data(), digits.data() + digits.size(), value,
                    std::chars_format::general, 6);
  return {digits.data(), end};
}

OutsideTable::OutsideTable(int z, Energy energy, Energy first, Energy last)
    : std::runtime_error(
          short_number(energy.keV) +
          " keV is outside the table of Z = " + std::to_string(z) + ", " +
          short_number(first.keV) + " to " + short_number(last.keV) + " keV"),
      z_(z),
      energy_(energy),
      first_(first),
      last_(last) {}

}  // namespace physics
