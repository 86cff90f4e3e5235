#include "text/trlch.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace toolkit {
namespace {

bool is_digit(char c) { return '0' <= c && c <= '9'; }

enum class Exponent { kNone, kMarked, kReading };

class Scanner {
 public:
  explicit Scanner(std::string_view text)
      : text_(text), last_(static_cast<int>(text.size())) {}

  std::vector<float> numbers() {
    for (k_ = 1; k_ <= last_ && !full_; ++k_) {
      const char c = at(k_);
      if (is_digit(c)) {
        digit(c - '0');
      } else if (c == 'e' || c == 'E') {
        exponent_mark(c);
      } else {
        separator(c);
      }
    }
    return std::move(numbers_);
  }

 private:
  char at(int column) const {
    return text_[static_cast<std::size_t>(column - 1)];
  }

  void digit(int value) {
    seen_ = true;
    const auto d = static_cast<float>(value);
    if (pt_ == 1.0F) {
      number_ = number_ * 10.0F + d;
    } else {
      number_ = number_ + d * pt_;
      pt_ = pt_ / 10.0F;
    }
    if (k_ == last_) end_number();
  }

  void exponent_mark(char c) {
    if (nex_ == Exponent::kReading) {
      end_number();
      return;
    }
    int column = k_ - 1;
    while (column > 0 && is_digit(at(column))) --column;
    if (column == 0) {
      separator(c);
    } else if (at(column) == '.') {
      nex_ = Exponent::kMarked;
      mark_column_ = k_;
      end_number();
    }
  }

  void separator(char c) {
    if (pt_ < 1.0F) {
      // The fraction ends before this character, which is then read again.
      --k_;
      end_number();
      return;
    }
    if (c == '.') {
      pt_ = 0.1F;
      return;
    }
    if (c == '-') {
      (nsig_ > 0.0F ? k1_ : k2_) = k_;
      nsig_ = -1.0F;
    }
    if (seen_) {
      end_number();
    } else if (c == ' ' && k_ == mark_column_ + 1) {
      nex_ = Exponent::kNone;
    }
  }

  void end_number() {
    if (k1_ < k_) {
      number_ *= nsig_;
      if (k2_ < k1_) nsig_ = 1.0F;
    }
    seen_ = false;
    pt_ = 1.0F;
    if (nex_ == Exponent::kReading) {
      numbers_.back() *= std::pow(10.0F, number_);
      nex_ = Exponent::kNone;
    } else if (numbers_.size() == kMostNumbers) {
      full_ = true;
    } else {
      numbers_.push_back(number_);
      if (nex_ == Exponent::kMarked) nex_ = Exponent::kReading;
    }
    number_ = 0.0F;
    k1_ = k2_ = 0;
  }

  const std::string_view text_;
  const int last_;
  std::vector<float> numbers_;

  int k_ = 0;            // column being read
  float number_ = 0.0F;  // the number being built
  float nsig_ = 1.0F;    // its sign
  float pt_ = 1.0F;      // weight of the next decimal; 1 before the point
  bool seen_ = false;    // a digit of the number has been seen
  bool full_ = false;    // all that fit are stored and one more was found
  int k1_ = 0, k2_ = 0;  // columns of a pending minus and of a second one
  Exponent nex_ = Exponent::kNone;
  int mark_column_ = -1;  // where the last exponent mark stood
};

}  // namespace

std::vector<float> numbers_in(std::string_view text) {
  return Scanner(text).numbers();
}

void trlch(int n_ch, const base::Line& chin, int& iout,
           base::Array<float, kMostNumbers>& out) {
  const std::vector<float> numbers =
      numbers_in(chin.columns(1, std::min(n_ch, base::kLine), "chin"));
  iout = static_cast<int>(numbers.size());
  out.fill(0.0F);
  for (int i = 1; i <= iout; ++i) {
    out(i) = numbers[static_cast<std::size_t>(i - 1)];
  }
}

}  // namespace toolkit
