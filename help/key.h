// The pages of the help file that the program's own questions open.

#ifndef HELP_KEY_H_
#define HELP_KEY_H_

#include <array>
#include <stdexcept>
#include <string_view>

namespace help {

inline constexpr std::array<std::string_view, 14> kKeys = {
    "read/element", "read/mylar",
    "read/teflon",  "read/sodiumnitrop",
    "read/fas",     "read/compound",
    "read/bgco57",  "read/density",
    "read/energy",  "read/modification",
    "read/mgcm2",   "read/thickness",
    "read/repeat",  "zoxu/script/alteration",
};

// One of them. Another, or a misspelt one, does not compile.
class Key {
 public:
  // NOLINTNEXTLINE(google-explicit-constructor): a key is written as a text.
  consteval Key(const char* text) : text_(text) {
    for (const std::string_view known : kKeys) {
      if (known == text_) return;
    }
    throw std::invalid_argument("no such help key");
  }
  // NOLINTNEXTLINE(google-explicit-constructor)
  constexpr operator std::string_view() const { return text_; }

 private:
  std::string_view text_;
};

}  // namespace help

#endif  // HELP_KEY_H_
