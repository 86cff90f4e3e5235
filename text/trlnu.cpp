#include "text/trlnu.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>

#include "base/array.h"
#include "base/fatal.h"

namespace toolkit {
namespace {

constexpr int kFieldWidth = 24;

struct Format {
  bool forced_sign = false;
  char letter = ' ';  // as written
  int width = 0;
  int decimals = 0;

  char type() const {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  bool exponential() const { return type() == 'e' || type() == 'a'; }
};

Format read_format(const base::Text<7>& code) {
  std::size_t next = 0;
  const auto peek = [&] {
    return next < code.full().size() ? code.full()[next] : ' ';
  };
  const auto one_or_two_digits = [&] {
    int value = 0;
    for (int n = 0; n < 2 && '0' <= peek() && peek() <= '9'; ++n, ++next) {
      value = value * 10 + (peek() - '0');
    }
    return value;
  };

  Format format;
  while (next < code.full().size() && peek() == ' ') ++next;
  if (peek() == '+') {
    format.forced_sign = true;
    ++next;
  }
  format.letter = peek();
  ++next;
  format.width = one_or_two_digits();
  if (peek() == '.') {
    ++next;
    format.decimals = one_or_two_digits();
  }
  if (std::string("ifea").find(format.type()) == std::string::npos) {
    base::fatal("Format '" + std::string(code.trimmed()) +
                "' is none of i, f, e, a");
  }
  return format;
}

// The decimal digits of a number, each at its position: position 0 is the
// decade of the leading digit, -1 the spare one for a carry.
class Digits {
 public:
  // ax    the number, not negative
  // last  position of the last digit kept, -1 if it is left of the leading one
  Digits(float ax, int iex, int last) : iex_(iex), last_(last) {
    extract(ax);
    if (last_ >= -1) round();
  }

  bool carried() const { return digit_(-1) != 0; }

  // The kept digit of the decade 10^power as a character, "0" outside.
  char in_decade(int power) const { return at(iex_ - power); }
  // The kept digit at a position as a character, "0" outside.
  char at(int position) const {
    const bool kept = -1 <= position && position <= last_;
    return static_cast<char>('0' + (kept ? digit_(position) : 0));
  }

 private:
  void extract(float ax) {
    float e10 = std::pow(10.0F, static_cast<float>(iex_));
    for (int i = 0; i <= last_ + 1; ++i) {
      // Below the smallest single-precision value there are no digits.
      const int digit = e10 > 0.0F ? static_cast<int>(ax / e10 + 1e-6F) : 0;
      digit_(i) = digit;
      ax -= static_cast<float>(digit) * e10;
      e10 /= 10.0F;
    }
    // Single precision can leave a ten, or overshoot by a little and leave the
    // digits behind it negative. The rounding digit is no part of the number:
    // it takes nothing from the others.
    for (int i = last_; i >= 0; --i) {
      for (; digit_(i) > 9; digit_(i) -= 10) ++digit_(i - 1);
      for (; digit_(i) < 0; digit_(i) += 10) --digit_(i - 1);
    }
  }

  void round() {
    if (digit_(last_ + 1) <= 5) return;
    ++digit_(last_);
    for (int i = last_; i >= 0 && digit_(i) > 9; --i) {
      digit_(i) = 0;
      ++digit_(i - 1);
    }
  }

  int iex_;
  int last_;
  base::Array<int, 17, -1> digit_{"digit"};
};

// Decimal exponent of the leading digit. Just below a power of ten it is that
// of the power.
int leading_decade(float ax) {
  if (ax == 0.0F) return -1;
  const int iex = static_cast<int>(std::log10(ax) + 1e-5F);
  return ax < 1.0F ? iex - 1 : iex;
}

std::string integer_text(const Digits& digits, int iex) {
  std::string text;
  if (digits.carried()) text += digits.at(-1);
  for (int power = iex; power >= 0; --power) text += digits.in_decade(power);
  return text;
}

std::string fixed_text(const Digits& digits, int iex, int decimals) {
  std::string text = integer_text(digits, iex);
  const bool carried_to_one = iex == -1 && digits.carried();
  if (iex < 0 && !carried_to_one) text = "0";
  text += '.';
  for (int i = 1; i <= decimals; ++i) text += digits.in_decade(-i);
  return text;
}

std::string exponent_text(const Digits& digits, int iex, const Format& format) {
  // A carry out of the leading digit shifts all of them by one.
  const int first = digits.carried() ? -1 : 0;
  std::string text{digits.at(first), '.'};
  for (int i = 1; i <= format.decimals; ++i) text += digits.at(first + i);
  text += format.type() == 'a' ? "*10@u" : std::string(1, format.letter);
  const int exponent = iex - first;
  if (format.forced_sign && exponent >= 0) text += '+';
  text += std::to_string(exponent);
  if (format.type() == 'a') text += "@n";
  return text;
}

std::string number_text(const Format& format, float ax) {
  const int iex = leading_decade(ax);
  // Where even the rounding digit lies right of the leading one, nothing of
  // the number shows.
  const int last = format.exponential()   ? format.decimals
                   : format.type() == 'i' ? std::max(iex, -2)
                                          : std::max(format.decimals + iex, -2);
  const Digits digits(ax, iex, last);
  if (format.exponential()) return exponent_text(digits, iex, format);
  if (format.type() == 'f') return fixed_text(digits, iex, format.decimals);
  return integer_text(digits, iex);
}

}  // namespace

FormattedNumber formatted(base::Text<7> format_code, float value) {
  if (std::fabs(value) > 1e10F) format_code = "e15.5";
  const Format format = read_format(format_code);
  FormattedNumber number;
  number.format = format_code;
  number.width = format.width;
  if (format.width > kFieldWidth) {
    number.left = number.right = std::string(kFieldWidth, '*');
    return number;
  }
  if (!std::isfinite(value)) {
    number.left = number.right =
        std::string(static_cast<std::size_t>(format.width), '*');
    number.length = format.width;
    return number;
  }

  std::string text = number_text(format, std::fabs(value));
  if (text.empty()) {
    // An integer of magnitude below one that did not round up to it.
    number.left.at(format.width, "chl") = '0';
    number.right = number.left;
    number.length = format.width;
    return number;
  }
  if (value < 0.0F) {
    text.insert(0, "-");
  } else if (format.forced_sign) {
    text.insert(0, "+");
  }

  const int length = static_cast<int>(text.size());
  static_cast<void>(base::Text<16>(text).columns(1, length, "work"));  // fits
  number.length = length;
  if (length > format.width) {
    number.left = number.right = "***" + text + "***";
  } else {
    number.left = text;
    number.right.put(format.width - length + 1, format.width, text, "chr");
  }
  return number;
}

void trlnu(base::Text<7>& formatch, float rn, base::Text<24>& chr, int& nn,
           base::Text<24>& chl, int& im) {
  const FormattedNumber number = formatted(formatch, rn);
  formatch = number.format;
  chr = number.right;
  nn = number.width;
  chl = number.left;
  im = number.length.value_or(im);
}

}  // namespace toolkit
