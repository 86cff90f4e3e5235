#include "base/edit.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <system_error>

namespace base {
namespace {

std::string right_justified(const std::string& text, int width) {
  const auto room = static_cast<std::size_t>(std::max(width, 0));
  if (text.size() > room) return std::string(room, '*');
  return std::string(room - text.size(), ' ') + text;
}

// The characters of a numeric field, blanks passed over.
class Field {
 public:
  explicit Field(std::string_view text)
      : next_(text.data()), end_(text.data() + text.size()) {
    skip_blanks();
  }

  bool at_end() const { return next_ == end_; }
  bool at_digit() const { return !at_end() && '0' <= *next_ && *next_ <= '9'; }
  bool at_sign() const { return at('+') || at('-'); }
  bool at(char c) const { return !at_end() && *next_ == c; }
  bool at_exponent_letter() const {
    constexpr std::string_view kLetters = "eEdDqQ";
    return !at_end() && kLetters.find(*next_) != kLetters.npos;
  }
  char take() {
    const char c = *next_++;
    skip_blanks();
    return c;
  }

 private:
  void skip_blanks() {
    while (next_ != end_ && *next_ == ' ') ++next_;
  }

  const char* next_;
  const char* end_;
};

// A mantissa as an integer, without its point.
struct Mantissa {
  bool sign = false;
  bool negative = false;
  bool point = false;
  int digits = 0;
  int decimals = 0;  // how many of the digits stand behind the point
  std::uint64_t value = 0;
};

constexpr int kMostDigits = 18;  // that fit an integer of 64 bits

Mantissa take_mantissa(Field& field) {
  Mantissa m;
  m.sign = field.at_sign();
  if (m.sign) m.negative = field.take() == '-';
  while (m.digits <= kMostDigits) {
    if (field.at_digit()) {
      m.value = 10 * m.value + static_cast<std::uint64_t>(field.take() - '0');
      ++m.digits;
      if (m.point) ++m.decimals;
    } else if (!m.point && field.at('.')) {
      field.take();
      m.point = true;
    } else {
      break;
    }
  }
  return m;
}

// The exponent that the rest of the field must be: a letter, a sign, or both,
// and digits.
std::optional<int> take_exponent(Field& field) {
  constexpr int kLargest = 99999;
  const bool letter = field.at_exponent_letter();
  if (letter) field.take();
  const bool sign = field.at_sign();
  const bool negative = sign && field.take() == '-';
  if (!(letter || sign) || !field.at_digit()) return std::nullopt;
  int value = 0;
  while (field.at_digit() && value <= kLargest) {
    value = 10 * value + (field.take() - '0');
  }
  if (!field.at_end() || value > kLargest) return std::nullopt;
  return negative ? -value : value;
}

// digits x 10^power, rounded once; nothing beyond double precision.
std::optional<double> scaled(std::uint64_t digits, int power) {
  constexpr std::array<double, 23> kPowers{
      1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
      1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  constexpr std::uint64_t kExact = std::uint64_t{1} << 53;
  if (digits <= kExact && std::abs(power) <= 22) {
    // Both factors are exact, so one operation rounds once.
    const auto whole = static_cast<double>(digits);
    const double ten = kPowers[static_cast<std::size_t>(std::abs(power))];
    return power < 0 ? whole / ten : whole * ten;
  }
  const std::string text = std::to_string(digits) + "e" + std::to_string(power);
  double value = 0;
  const auto [last, error] =
      std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc{}) return value;
  if (power < 0) return 0.0;  // too small for double precision
  return std::nullopt;
}

}  // namespace

std::string fixed_field(float value, int width, int decimals) {
  if (std::isnan(value)) return right_justified("NaN", width);
  if (std::isinf(value)) {
    const std::string sign = value < 0 ? "-" : "";
    const std::string word = sign + "Infinity";
    const bool fits = width >= static_cast<int>(word.size());
    return right_justified(fits ? word : sign + "Inf", width);
  }
  // The largest single-precision value has 39 digits before the point.
  std::array<char, 192> digits{};
  const auto [end, error] = std::to_chars(
      digits.data(), digits.data() + digits.size(), static_cast<double>(value),
      std::chars_format::fixed, decimals);
  if (error != std::errc{})
    return right_justified(std::string(200, '*'), width);
  std::string text(digits.data(), end);
  if (decimals == 0) text += '.';
  const std::size_t zero = text.find_first_of("0123456789");
  const bool zero_may_go = text[zero] == '0' && decimals > 0;
  if (zero_may_go && static_cast<int>(text.size()) > width) text.erase(zero, 1);
  return right_justified(text, width);
}

std::optional<double> read_e(std::string_view text, int decimals) {
  Field field(text);
  const Mantissa mantissa = take_mantissa(field);
  int power = mantissa.point ? -mantissa.decimals : -decimals;
  if (!field.at_end()) {
    const bool second_sign =
        mantissa.sign && mantissa.digits == 0 && !mantissa.point;
    if (second_sign && field.at_sign()) return std::nullopt;
    const std::optional<int> exponent = take_exponent(field);
    if (!exponent) return std::nullopt;
    power += *exponent;
  }
  if (mantissa.digits > kMostDigits) return std::nullopt;
  std::optional<double> number = scaled(mantissa.value, power);
  if (number && mantissa.negative) number = -*number;
  return number;
}

}  // namespace base
