// Fixed-length text: blank-padded, trailing blanks never significant.

#ifndef BASE_TEXT_H_
#define BASE_TEXT_H_

#include <algorithm>
#include <array>
#include <concepts>
#include <string>
#include <string_view>

#include "base/fatal.h"
#include "base/source_position.h"

namespace base {

// `text` without its trailing blanks.
constexpr std::string_view trimmed(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

// A text of N characters. Columns count from 1. Assignment from a longer text
// cuts, from a shorter one pads with blanks.
template <int N>
class Text {
  static_assert(N > 0);

 public:
  constexpr Text() { chars_.fill(' '); }
  // NOLINTBEGIN(google-explicit-constructor): texts are assigned freely
  constexpr Text(std::string_view text) {
    const auto kept = text.copy(chars_.data(), chars_.size());
    std::fill(chars_.begin() + kept, chars_.end(), ' ');
  }
  constexpr Text(const char* text) : Text(std::string_view(text)) {}
  Text(const std::string& text) : Text(std::string_view(text)) {}
  template <int M>
  requires(M != N) constexpr Text(const Text<M>& other) : Text(other.full()) {}
  // NOLINTEND(google-explicit-constructor)

  // All N characters.
  constexpr std::string_view full() const {
    return {chars_.data(), chars_.size()};
  }
  // Without trailing blanks.
  constexpr std::string_view trimmed() const { return base::trimmed(full()); }
  // Column of the last non-blank character, 0 for a blank text.
  constexpr int length() const { return static_cast<int>(trimmed().size()); }
  constexpr bool blank() const { return length() == 0; }

  // Columns `First` to `Last`, known to lie inside when the program is built.
  template <int First, int Last>
  constexpr std::string_view columns() const {
    static_assert(1 <= First && First <= Last && Last <= N);
    return full().substr(First - 1, Last - First + 1);
  }

  // Columns `first` to `last`; none if `last` is before `first`. A range error
  // that names the text as `name` if any of them lies outside 1..N.
  constexpr std::string_view columns(
      int first, int last, const char* name,
      SourcePosition at = SourcePosition::current()) const {
    if (last < first) return {};
    check(first, last, name, at);
    return full().substr(static_cast<std::size_t>(first - 1),
                         static_cast<std::size_t>(last - first + 1));
  }

  // Puts `text` into columns `first` to `last`, cut or padded to fill them.
  constexpr void put(int first, int last, std::string_view text,
                     const char* name,
                     SourcePosition at = SourcePosition::current()) {
    if (last < first) return;
    check(first, last, name, at);
    for (int column = first; column <= last; ++column) {
      const auto from = static_cast<std::size_t>(column - first);
      slot(column) = from < text.size() ? text[from] : ' ';
    }
  }

  // The character in column `column`, 1..N.
  constexpr char& at(int column, const char* name,
                     SourcePosition where = SourcePosition::current()) {
    check(column, column, name, where);
    return slot(column);
  }
  constexpr char at(int column, const char* name,
                    SourcePosition where = SourcePosition::current()) const {
    check(column, column, name, where);
    return chars_[static_cast<std::size_t>(column - 1)];
  }

  friend constexpr bool operator==(const Text& a, const Text& b) {
    return a.chars_ == b.chars_;
  }
  template <std::convertible_to<std::string_view> String>
  friend constexpr bool operator==(const Text& a, const String& b) {
    return a.trimmed() == base::trimmed(b);
  }

 private:
  constexpr char& slot(int column) {
    return chars_[static_cast<std::size_t>(column - 1)];
  }

  static constexpr void check(int first, int last, const char* name,
                              SourcePosition at) {
    if (first < 1) out_of_bounds("lower", first, name, "is less than one", at);
    if (last > N) {
      out_of_bounds("upper", last, name,
                    "exceeds string length (" + std::to_string(N) + ")", at);
    }
  }
  [[noreturn]] static void out_of_bounds(const char* end, int column,
                                         const char* name,
                                         const std::string& how,
                                         SourcePosition at) {
    throw RangeError(std::string("Substring out of bounds: ") + end +
                         " bound (" + std::to_string(column) + ") of '" + name +
                         "' " + how,
                     {}, at);
  }

  std::array<char, N> chars_;
};

// A line of text as the routines of the dialogue pass it, column 132 being the
// one for flags.
inline constexpr int kLine = 132;
using Line = Text<kLine>;

}  // namespace base

#endif  // BASE_TEXT_H_
