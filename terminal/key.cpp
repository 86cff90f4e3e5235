#include "terminal/key.h"

#include <signal.h>
#include <termios.h>
#include <unctrl.h>
#include <unistd.h>

#include <cctype>

#include "base/unit.h"
#include "terminal/signals.h"

namespace terminal {
namespace {

// The user's own settings, while single-key mode is on.
termios stored_settings;
bool single_key_mode = false;

class SingleKeyMode {
 public:
  SingleKeyMode() { set_keypress(); }
  ~SingleKeyMode() { reset_keypress(); }
  SingleKeyMode(const SingleKeyMode&) = delete;
  SingleKeyMode& operator=(const SingleKeyMode&) = delete;
};

}  // namespace

void set_keypress() {
  // Started in the background, the program waits for its turn: until then the
  // settings are the shell's, which must not be taken for the user's.
  if (!in_foreground()) kill(0, SIGTTIN);
  if (tcgetattr(STDIN_FILENO, &stored_settings) != 0) return;
  termios keypress_settings = stored_settings;
  keypress_settings.c_lflag &= ~static_cast<tcflag_t>(ICANON);
  keypress_settings.c_cc[VTIME] = 0;
  keypress_settings.c_cc[VMIN] = 1;
  keypress_settings.c_cc[VINTR] = '#';
  single_key_mode = true;
  catch_signals(stored_settings, &keypress_settings);
  tcsetattr(STDIN_FILENO, TCSANOW, &keypress_settings);
}

void reset_keypress() {
  if (!single_key_mode) return;
  // A SIGCONT in between would take single-key mode up again, for good.
  sigset_t all{};
  sigset_t before{};
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, &before);
  tcsetattr(STDIN_FILENO, TCSANOW, &stored_settings);
  single_key_mode = false;
  release_signals();
  sigprocmask(SIG_SETMASK, &before, nullptr);
}

int key() {
  const SingleKeyMode mode;
  base::Unit& input = base::unit(base::kTerminalInput);
  const int c = input.read_byte();
  if (c < 0) return kEndOfInput;
  // unctrl() writes a control key as "^" and a letter, any other key as itself.
  const char shown = c == '\n' ? '@' : *unctrl(static_cast<chtype>(c));
  if (shown == '@') return kReturnKey;
  if (std::iscntrl(c) != 0) {
    if (input.read_byte() < 0) return kEndOfInput;
    const int second = input.read_byte();
    return second < 0 ? kEndOfInput : -second;
  }
  return c;
}

}  // namespace terminal
