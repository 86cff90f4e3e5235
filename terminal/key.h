// Single keys, read without waiting for RET.

#ifndef TERMINAL_KEY_H_
#define TERMINAL_KEY_H_

namespace terminal {

inline constexpr int kReturnKey = 64;
inline constexpr int kUpKey = -65;
inline constexpr int kDownKey = -66;
inline constexpr int kRightKey = -67;
inline constexpr int kLeftKey = -68;
inline constexpr int kEndKey = -70;
inline constexpr int kHomeKey = -72;
inline constexpr int kEndOfInput = -1;

// Reads one key. The terminal is in single-key mode for the time of the call
// only. Returns
//   64           RET, and "@" alike
//   its code     a printable character, a blank, or a byte above 127
//   -(code)      any other control character: it swallows the next two
//                characters, and the code is that of the second. So ESC [ A
//                (cursor up) is -65, and Tab waits for two more keys.
//   -1           end of input (or Ctrl-A as the second character swallowed)
// While a key is awaited, "#" interrupts the program and Ctrl-C is a control
// character like any other.
int key();

// Enters and leaves single-key mode on standard input: no waiting for a whole
// line, "#" in place of the interrupt character, all else as the user has it.
// A signal that ends the program in single-key mode first puts the settings
// back; after a stop, single-key mode is taken up again once the program is in
// the foreground. Without a terminal on standard input neither does anything.
void set_keypress();
void reset_keypress();

}  // namespace terminal

#endif  // TERMINAL_KEY_H_
