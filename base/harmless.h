// Texts from files and the environment, made safe to show on a terminal.

#ifndef BASE_HARMLESS_H_
#define BASE_HARMLESS_H_

#include <string>
#include <string_view>

namespace base {

// `text` with a blank for every tab and a "?" for every other byte that could
// steer a terminal: control characters, in UTF-8 too, and bytes that are no
// part of a UTF-8 character.
std::string harmless(std::string_view text);

}  // namespace base

#endif  // BASE_HARMLESS_H_
