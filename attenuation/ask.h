// The questions of the main dialogue, all in the terminal's width. A question
// has at most 132 characters. Fatal: end of input.

#ifndef ATTENUATION_ASK_H_
#define ATTENUATION_ASK_H_

#include <string_view>

#include "base/text.h"
#include "help/key.h"

namespace attenuation {

// Asks for a number; `form` is its format (see trlnu), of at most 7 characters.
// A quit keeps `value`.
float ask_value(std::string_view question, std::string_view form, float value,
                help::Key help_key);

// Asks for a text; a quit gives "*". Fatal: an answer of over 80 characters.
base::Text<132> ask_string(std::string_view question, std::string_view answer,
                           help::Key help_key);

// Asks a yes/no question with the default yes; a quit is a no.
bool ask_yes(std::string_view question, help::Key help_key);

}  // namespace attenuation

#endif  // ATTENUATION_ASK_H_
