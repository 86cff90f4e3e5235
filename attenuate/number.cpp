#include "attenuate/number.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace attenuate {
namespace {

// Powers of ten that a double holds exactly.
constexpr std::array kPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kLargest = static_cast<int>(kPowers.size()) - 1;

double scaled(double value, int power) {
  return power >= 0 ? value * kPowers[static_cast<std::size_t>(power)]
                    : value / kPowers[static_cast<std::size_t>(-power)];
}

struct Decimal {
  std::uint64_t digits = 0;  // as many as wanted
  int exponent = 0;          // of the first digit
  bool known = false;
};

// The exponent of the first digit, or one less: log10(2) below the power of
// two.
int least_exponent(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int binary = static_cast<int>(bits >> 52) - 1023;
  return static_cast<int>(std::floor(binary * 0.3010299956639812));
}

// The digits of `value` > 0. One multiplication or division by an exact power
// is off by at most half a unit of the 53rd bit, less than 2e-6 of the last of
// ten digits. So the rounding is known unless the rest lies next to one half.
Decimal decimal(double value, int digits) {
  if (digits > 10 || !(value >= 1e-11) || value > 1e21) return {};
  const double limit = kPowers[static_cast<std::size_t>(digits)];
  int exponent = least_exponent(value);
  if (std::abs(digits - 1 - exponent) > kLargest) return {};
  double shifted = scaled(value, digits - 1 - exponent);
  if (shifted >= limit) shifted = scaled(value, digits - 1 - ++exponent);
  auto whole = static_cast<std::uint64_t>(shifted);
  const double rest = shifted - static_cast<double>(whole);
  if (std::fabs(rest - 0.5) < 1e-4) return {};
  if (rest > 0.5) ++whole;
  const auto most = static_cast<std::uint64_t>(limit);
  if (whole < most / 10 || whole > most) return {};
  if (whole == most) {
    whole /= 10;
    ++exponent;
  }
  return {whole, exponent, true};
}

char* put(char* to, const char* from, int count) {
  std::memcpy(to, from, static_cast<std::size_t>(count));
  return to + count;
}

// `text` holds `count` digits, the first of them worth 10^exponent.
char* with_point(char* to, const char* text, int count, int exponent) {
  if (exponent < 0) {
    to = put(to, "0.000", 1 - exponent);
    return put(to, text, count);
  }
  if (count <= exponent + 1) {
    to = put(to, text, count);
    return std::fill_n(to, exponent + 1 - count, '0');
  }
  to = put(to, text, exponent + 1);
  *to++ = '.';
  return put(to, text + exponent + 1, count - exponent - 1);
}

char* with_exponent(char* to, const char* text, int count, int exponent) {
  *to++ = text[0];
  if (count > 1) {
    *to++ = '.';
    to = put(to, text + 1, count - 1);
  }
  *to++ = 'e';
  *to++ = exponent < 0 ? '-' : '+';
  const int size = std::abs(exponent);
  *to++ = static_cast<char>('0' + size / 10);
  *to++ = static_cast<char>('0' + size % 10);
  return to;
}

std::string with_unit(double value, int digits, const char* unit) {
  return number(value, digits) + " " + unit;
}

}  // namespace

char* append_number(char* to, double value, int digits) {
  const Decimal found = decimal(value, digits);
  if (!found.known) {
    return std::to_chars(to, to + kNumberSize, value,
                         std::chars_format::general, digits)
        .ptr;
  }
  std::array<char, 20> text{};
  std::uint64_t left = found.digits;
  int count = digits;
  while (count > 1 && left % 10 == 0) {
    left /= 10;
    --count;
  }
  for (int i = count; i > 0; --i, left /= 10) {
    text[static_cast<std::size_t>(i - 1)] = static_cast<char>('0' + left % 10);
  }
  return -4 <= found.exponent && found.exponent < digits
             ? with_point(to, text.data(), count, found.exponent)
             : with_exponent(to, text.data(), count, found.exponent);
}

std::string number(double value, int digits) {
  std::array<char, kNumberSize> text{};
  return {text.data(), append_number(text.data(), value, digits)};
}

std::string percent(double fraction) {
  return number(100 * fraction, 2) + " %";
}

std::string energy_in_words(double keV) {
  if (keV >= 1000) return with_unit(keV / 1000, 10, "MeV");
  return with_unit(keV, 10, "keV");
}

std::string length_in_words(double cm, int digits) {
  const struct {
    double below;
    double factor;
    const char* unit;
  } units[] = {{1e-5, 1e7, "nm"},
               {0.1, 1e4, "um"},
               {10, 10, "mm"},
               {1000, 1, "cm"},
               {1e5, 0.01, "m"}};
  const auto* unit =
      std::find_if(std::begin(units), std::end(units) - 1,
                   [cm](const auto& row) { return cm < row.below; });
  return with_unit(cm * unit->factor, digits, unit->unit);
}

std::string area_mass_in_words(double g_cm2, int digits) {
  if (g_cm2 < 1e-3) return with_unit(g_cm2 * 1e6, digits, "ug/cm2");
  if (g_cm2 < 1) return with_unit(g_cm2 * 1e3, digits, "mg/cm2");
  return with_unit(g_cm2, digits, "g/cm2");
}

}  // namespace attenuate
