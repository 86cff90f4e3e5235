#include "base/edit.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace base {
namespace {

std::string right_justified(const std::string& text, int width) {
  const auto room = static_cast<std::size_t>(std::max(width, 0));
  if (text.size() > room) return std::string(room, '*');
  return std::string(room - text.size(), ' ') + text;
}

bool is_digit(char c) { return '0' <= c && c <= '9'; }

// A mantissa as an integer: its digits without the point.
struct Mantissa {
  bool negative = false;
  std::string digits;
  bool point = false;
  int decimals = 0;  // how many of the digits stand behind the point
};

// Takes the mantissa off the front of `text`.
Mantissa take_mantissa(std::string_view& text) {
  Mantissa m;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    m.negative = text.front() == '-';
    text.remove_prefix(1);
  }
  for (; !text.empty(); text.remove_prefix(1)) {
    const char c = text.front();
    if (c == '.' && !m.point) {
      m.point = true;
    } else if (is_digit(c)) {
      m.digits += c;
      m.decimals += m.point ? 1 : 0;
    } else {
      break;
    }
  }
  return m;
}

// The exponent that all of `text` must be: a letter, a sign, or both, and
// digits.
std::optional<int> exponent(std::string_view text) {
  constexpr std::string_view kLetters = "eEdDqQ";
  const bool letter = kLetters.find(text.front()) != kLetters.npos;
  if (letter) text.remove_prefix(1);
  const bool sign = text.starts_with('+') || text.starts_with('-');
  const bool negative = text.starts_with('-');
  if (sign) text.remove_prefix(1);
  if (!(letter || sign) || text.empty() || !is_digit(text.front())) {
    return std::nullopt;
  }
  int value = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value);
  constexpr int kLargest = 99999;
  if (error != std::errc{} || last != end || value > kLargest) {
    return std::nullopt;
  }
  return negative ? -value : value;
}

}  // namespace

std::string f(float value, int width, int decimals) {
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

std::optional<double> read_e(std::string_view field, int decimals) {
  std::string packed(field);
  std::erase(packed, ' ');
  std::string_view rest = packed;
  const Mantissa mantissa = take_mantissa(rest);
  int power = mantissa.point ? -mantissa.decimals : -decimals;
  if (!rest.empty()) {
    const std::optional<int> written = exponent(rest);
    const bool second_sign = mantissa.digits.empty() && !mantissa.point &&
                             (rest.front() == '+' || rest.front() == '-');
    if (!written || second_sign) return std::nullopt;
    power += *written;
  }
  if (mantissa.digits.empty()) return mantissa.negative ? -0.0 : 0.0;

  const std::string number = (mantissa.negative ? "-" : "") + mantissa.digits +
                             "e" + std::to_string(power);
  double value = 0;
  const auto [last, error] =
      std::from_chars(number.data(), number.data() + number.size(), value);
  if (error == std::errc{}) return value;
  if (power < 0) return 0.0;  // too small for double precision
  return std::nullopt;
}

}  // namespace base
