#include "terminal/key.h"

#include <termios.h>
#include <unctrl.h>

#include <cctype>
#include <optional>

#include "terminal/guard.h"
#include "terminal/input.h"

namespace terminal {
namespace {

void take_single_keys(termios& settings) {
  settings.c_lflag &= ~static_cast<tcflag_t>(ICANON);
  settings.c_cc[VTIME] = 0;
  settings.c_cc[VMIN] = 1;
  settings.c_cc[VINTR] = '#';
}

std::optional<Guard> single_key_mode;

}  // namespace

void set_keypress() { single_key_mode.emplace(take_single_keys); }

void reset_keypress() { single_key_mode.reset(); }

int key() {
  const Guard single_keys(take_single_keys);
  base::ByteReader& typed = input().bytes();
  const int c = typed.byte();
  if (c < 0) return kEndOfInput;
  // unctrl() writes a control key as "^" and a letter, any other key as itself.
  const char shown = c == '\n' ? '@' : *unctrl(static_cast<chtype>(c));
  if (shown == '@') return kReturnKey;
  if (std::iscntrl(c) != 0) {
    if (typed.byte() < 0) return kEndOfInput;
    const int second = typed.byte();
    return second < 0 ? kEndOfInput : -second;
  }
  return c;
}

}  // namespace terminal
