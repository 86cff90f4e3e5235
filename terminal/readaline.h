// Line input with editing and history.

#ifndef TERMINAL_READALINE_H_
#define TERMINAL_READALINE_H_

#include <string>

#include "base/array.h"
#include "base/text.h"

namespace terminal {

// Shows `prompt` and returns the line that is typed behind it.
// Fatal: end of input, which a line that has not ended after 1 MiB counts as.
std::string edited_line(const char* prompt);

// The same into k(1..length), each byte as a signed number, and returns the
// length. A longer line is cut at 132; an empty one leaves `k` as it was.
int readaline(base::Array<int, base::kLine>& k, const char* prompt);

// Adds the zero-terminated text `s` to the history, duplicates included.
void addhist(const char* s);

// Forgets the history.
void clearhist();

}  // namespace terminal

#endif  // TERMINAL_READALINE_H_
