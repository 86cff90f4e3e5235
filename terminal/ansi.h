// The sequences that steer a terminal; nothing else does (see harmless).

#ifndef TERMINAL_ANSI_H_
#define TERMINAL_ANSI_H_

namespace terminal {

inline constexpr const char* kNormal = "\x1b[0m";
inline constexpr const char* kBold = "\x1b[1m";
inline constexpr const char* kUnderlined = "\x1b[4m";
inline constexpr const char* kRed = "\x1b[31m";
inline constexpr const char* kBlue = "\x1b[34m";
// Cursor up by one, two, three lines. The line end of the record that holds one
// brings the cursor down again by one, to its first column.
inline constexpr const char* kUp1 = "\x1b[1A";
inline constexpr const char* kUp2 = "\x1b[2A";
inline constexpr const char* kUp3 = "\x1b[3A";

}  // namespace terminal

#endif  // TERMINAL_ANSI_H_
