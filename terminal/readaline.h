// Line input with editing and history.

#ifndef TERMINAL_READALINE_H_
#define TERMINAL_READALINE_H_

#include "base/array.h"

namespace terminal {

// Reads one line after showing `prompt` (a zero-terminated text) and returns
// its length. k(1..length) receives its characters, each byte as a signed
// number; an empty line leaves `k` as it was. A longer line is cut at 132; one
// that has not ended after 1 MiB counts as the end of input.
// Fatal: end of input.
int readaline(base::Array<int, 132>& k, const char* prompt);

// Adds the zero-terminated text `s` to the history, duplicates included.
void addhist(const char* s);

// Forgets the history.
void clearhist();

}  // namespace terminal

#endif  // TERMINAL_READALINE_H_
