// Arrays with a name and declared bounds, checked in every build: several
// table searches of the program have the range error as their only stop.

#ifndef BASE_ARRAY_H_
#define BASE_ARRAY_H_

#include <array>
#include <string>

#include "base/fatal.h"
#include "base/source_position.h"

namespace base {

// N elements with the subscripts Lower..Lower+N-1 (by default 1..N).
template <typename T, int N, int Lower = 1>
class Array {
  static_assert(N > 0);

 public:
  static constexpr int kLower = Lower;
  static constexpr int kUpper = Lower + N - 1;

  // name  what a range error calls the array
  explicit constexpr Array(const char* name) : name_(name) {}

  // The element with subscript `i`; a range error outside the bounds.
  constexpr T& operator()(int i,
                          SourcePosition at = SourcePosition::current()) {
    return items_[checked(i, at)];
  }
  constexpr const T& operator()(
      int i, SourcePosition at = SourcePosition::current()) const {
    return items_[checked(i, at)];
  }

  constexpr void fill(const T& value) { items_.fill(value); }

 private:
  constexpr std::size_t checked(int i, SourcePosition at) const {
    if (i < kLower) out_of_bounds(i, "below lower bound of ", kLower, at);
    if (i > kUpper) out_of_bounds(i, "above upper bound of ", kUpper, at);
    return static_cast<std::size_t>(i - kLower);
  }
  [[noreturn]] void out_of_bounds(int i, const char* how, int bound,
                                  SourcePosition at) const {
    throw RangeError("Index '" + std::to_string(i) +
                         "' of dimension 1 of array '" + name_ + "' " + how +
                         std::to_string(bound),
                     {}, at);
  }

  std::array<T, N> items_{};
  const char* name_;
};

}  // namespace base

#endif  // BASE_ARRAY_H_
