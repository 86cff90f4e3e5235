// Gives the terminal back as the user has set it, however its use ends.

#ifndef TERMINAL_GUARD_H_
#define TERMINAL_GUARD_H_

struct termios;

namespace terminal {

// One at a time. While it lives, a signal that ends the program first puts back
// the settings that standard input had before. Signals that are ignored or
// caught already stay so. Without a terminal on standard input it does nothing.
class Guard {
 public:
  // For someone who changes the settings, puts them back and sees to stops
  // himself, as the line editor does.
  Guard();
  // Has the settings as `change` makes them, until its own end. After a stop
  // they are taken up again once the program is in the foreground.
  // Started in the background, the program waits here for its turn.
  explicit Guard(void (*change)(termios& settings));
  ~Guard();
  Guard(const Guard&) = delete;
  Guard& operator=(const Guard&) = delete;

 private:
  bool guards_;
  bool changed_ = false;
};

}  // namespace terminal

#endif  // TERMINAL_GUARD_H_
