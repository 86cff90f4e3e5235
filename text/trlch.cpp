#include "text/trlch.h"

#include <algorithm>
#include <cmath>

namespace toolkit {
namespace {

bool is_digit(char c) { return '0' <= c && c <= '9'; }

enum class Exponent { kNone, kMarked, kReading };

class Scanner {
 public:
  Scanner(int n_ch, const base::Text<132>& text, int& iout,
          base::Array<float, 32>& out)
      : text_(text), last_(std::min(n_ch, 132)), iout_(iout), out_(out) {}

  void scan() {
    for (k_ = 1; k_ <= last_ && !full_; ++k_) {
      const char c = text_.at(k_, "chin");
      if (is_digit(c)) {
        digit(c - '0');
      } else if (c == 'e' || c == 'E') {
        exponent_mark(c);
      } else {
        separator(c);
      }
    }
  }

 private:
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
    while (column > 0 && is_digit(text_.at(column, "chin"))) --column;
    if (column == 0) {
      separator(c);
    } else if (text_.at(column, "chin") == '.') {
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
      out_(iout_) *= std::pow(10.0F, number_);
      nex_ = Exponent::kNone;
    } else if (iout_ == 32) {
      full_ = true;
    } else {
      out_(++iout_) = number_;
      if (nex_ == Exponent::kMarked) nex_ = Exponent::kReading;
    }
    number_ = 0.0F;
    k1_ = k2_ = 0;
  }

  const base::Text<132>& text_;
  const int last_;
  int& iout_;
  base::Array<float, 32>& out_;

  int k_ = 0;            // column being read
  float number_ = 0.0F;  // the number being built
  float nsig_ = 1.0F;    // its sign
  float pt_ = 1.0F;      // weight of the next decimal; 1 before the point
  bool seen_ = false;    // a digit of the number has been seen
  bool full_ = false;    // 32 numbers are stored and one more was found
  int k1_ = 0, k2_ = 0;  // columns of a pending minus and of a second one
  Exponent nex_ = Exponent::kNone;
  int mark_column_ = -1;  // where the last exponent mark stood
};

}  // namespace

void trlch(int n_ch, const base::Text<132>& chin, int& iout,
           base::Array<float, 32>& out) {
  iout = 0;
  out.fill(0.0F);
  Scanner(n_ch, chin, iout, out).scan();
}

}  // namespace toolkit
