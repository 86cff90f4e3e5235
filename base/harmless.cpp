#include "base/harmless.h"

#include <cstddef>

namespace base {
namespace {

unsigned byte_at(std::string_view text, std::size_t i) {
  return static_cast<unsigned char>(text[i]);
}

// Length of the character above U+009F that `text` begins with in UTF-8; 0 if
// it begins with none. Overlong forms and surrogates are not told apart:
// a terminal shows them as replacement characters.
std::size_t printable_utf8(std::string_view text) {
  const unsigned lead = byte_at(text, 0);
  std::size_t length = 0;
  if (0xC2 <= lead && lead <= 0xDF) length = 2;
  if (0xE0 <= lead && lead <= 0xEF) length = 3;
  if (0xF0 <= lead && lead <= 0xF4) length = 4;
  if (length == 0 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte_at(text, i) & 0xC0) != 0x80) return 0;
  }
  // U+0080..U+009F, the second set of control characters.
  if (lead == 0xC2 && byte_at(text, 1) < 0xA0) return 0;
  return length;
}

}  // namespace

std::string harmless(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const unsigned byte = byte_at(text, 0);
    std::size_t length = 1;
    if (byte == '\t') {
      shown += ' ';
    } else if (0x20 <= byte && byte < 0x7F) {
      shown += text.front();
    } else if (const std::size_t utf8 = printable_utf8(text); utf8 > 0) {
      length = utf8;
      shown += text.substr(0, length);
    } else {
      shown += '?';
    }
    text.remove_prefix(length);
  }
  return shown;
}

}  // namespace base
