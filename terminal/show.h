// The screen as one door: what was read from a file or typed passes it
// harmless.

#ifndef TERMINAL_SHOW_H_
#define TERMINAL_SHOW_H_

#include <string_view>

namespace terminal {

// Writes a line on unit `nwr`, where no character of it steers the terminal
// (see base::harmless). For all text from files, the keyboard and the
// environment; the program's own sequences (ansi.h) are written around it.
void show(std::string_view line, int nwr);

// Gets the screen ready for the report of a fatal end: normal attributes and a
// fresh line, if standard output is a terminal. Returns how many columns there
// are for it.
int begin_report();

}  // namespace terminal

#endif  // TERMINAL_SHOW_H_
