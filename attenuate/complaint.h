// Errors as the person at the keyboard sees them.

#ifndef ATTENUATE_COMPLAINT_H_
#define ATTENUATE_COMPLAINT_H_

#include <string>
#include <string_view>

#include "physics/errors.h"

namespace attenuate {

inline constexpr int kSomeFailed = 1;  // of the lines of a batch
inline constexpr int kRefused = 2;     // usage or input

// The lines of an error: "error: " with `where` and the message, the input, a
// caret under the place, "hint: ". Long inputs are shown around the place only,
// and no input steers a terminal.
std::string complaint(const physics::InputError& error, std::string_view typed,
                      std::string_view where = {});

// Writes a complaint to standard error, "error: " in red where that is a
// terminal and NO_COLOR is not set.
void complain(const std::string& complaint);

}  // namespace attenuate

#endif  // ATTENUATE_COMPLAINT_H_
