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

namespace {

// With all its digits where six are those of an end of the range.
std::string energy_outside(Energy energy, Energy first, Energy last) {
  std::string text = short_number(energy.keV);
  if (text != short_number(first.keV) && text != short_number(last.keV))
    return text;
  std::array<char, 32> digits{};
  const auto [end, error] =
      std::to_chars(digits.data(), digits.data() + digits.size(), energy.keV);
  return {digits.data(), end};
}

}  // namespace

OutsideTable::OutsideTable(int z, Energy energy, Energy first, Energy last)
    : std::runtime_error(
          energy_outside(energy, first, last) + " keV is outside the table" +
          (z == 0 ? "s" : " of Z = " + std::to_string(z)) + ", " +
          short_number(first.keV) + " to " + short_number(last.keV) + " keV"),
      z_(z),
      energy_(energy),
      first_(first),
      last_(last) {}

}  // namespace physics
