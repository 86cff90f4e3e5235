// Gives the terminal back when a signal ends or stops the program.

#ifndef TERMINAL_SIGNALS_H_
#define TERMINAL_SIGNALS_H_

struct termios;

namespace terminal {

// Until release_signals(), a signal that ends the program first puts the
// settings `own` back on standard input. With `meanwhile` so does a stop, and
// those settings are taken up again once the program is in the foreground;
// without it stops are left to whoever else catches them. Signals that are
// ignored or caught already stay so.
void catch_signals(const termios& own, const termios* meanwhile);
void release_signals();

// Whether the terminal on standard input is the program's to set: not so while
// it is in the background, where the terminal is the shell's.
bool in_foreground();

}  // namespace terminal

#endif  // TERMINAL_SIGNALS_H_
