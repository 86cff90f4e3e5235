#include "terminal/key.h"

#include <signal.h>
#include <termios.h>
#include <unctrl.h>
#include <unistd.h>

#include <array>
#include <cctype>
#include <cerrno>
#include <cstddef>

#include "base/unit.h"

namespace terminal {
namespace {

// The user's own settings, while single-key mode is on.
termios stored_settings;
termios keypress_settings;
bool single_key_mode = false;

// Signals that would leave the terminal in single-key mode.
constexpr std::array<int, 6> kSignals{SIGINT,  SIGTERM, SIGHUP,
                                      SIGQUIT, SIGTSTP, SIGCONT};
std::array<struct sigaction, kSignals.size()> stored_actions;

// Ends or stops the program by `signal` as if it had never been caught.
// Returns when the program is continued.
void deliver_by_default(int signal) {
  struct sigaction by_default {};
  struct sigaction caught {};
  by_default.sa_handler = SIG_DFL;
  sigaction(signal, &by_default, &caught);
  sigset_t only{};
  sigemptyset(&only);
  sigaddset(&only, signal);
  static_cast<void>(raise(signal));
  sigprocmask(SIG_UNBLOCK, &only, nullptr);
  sigprocmask(SIG_BLOCK, &only, nullptr);
  sigaction(signal, &caught, nullptr);
}

// In the background the terminal is the shell's, whose settings must stay.
// Back in the foreground, another SIGCONT follows.
void set_terminal_if_ours(const termios& settings) {
  const pid_t foreground = tcgetpgrp(STDIN_FILENO);
  if (foreground >= 0 && foreground != getpgrp()) return;
  tcsetattr(STDIN_FILENO, TCSANOW, &settings);
}

// Calls only what is safe in a signal handler.
void on_signal(int signal) {
  const int error = errno;
  if (signal != SIGCONT) {
    set_terminal_if_ours(stored_settings);
    deliver_by_default(signal);
  }
  set_terminal_if_ours(keypress_settings);
  errno = error;
}

void catch_signals() {
  struct sigaction action {};
  action.sa_handler = on_signal;
  action.sa_flags = SA_RESTART;
  sigfillset(&action.sa_mask);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], nullptr, &stored_actions[i]);
    // A signal that the user had ignored stays ignored.
    if (stored_actions[i].sa_handler == SIG_DFL) {
      sigaction(kSignals[i], &action, nullptr);
    }
  }
}

void release_signals() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], &stored_actions[i], nullptr);
  }
}

class SingleKeyMode {
 public:
  SingleKeyMode() { set_keypress(); }
  ~SingleKeyMode() { reset_keypress(); }
  SingleKeyMode(const SingleKeyMode&) = delete;
  SingleKeyMode& operator=(const SingleKeyMode&) = delete;
};

}  // namespace

void set_keypress() {
  if (tcgetattr(STDIN_FILENO, &stored_settings) != 0) return;
  keypress_settings = stored_settings;
  keypress_settings.c_lflag &= ~static_cast<tcflag_t>(ICANON);
  keypress_settings.c_cc[VTIME] = 0;
  keypress_settings.c_cc[VMIN] = 1;
  keypress_settings.c_cc[VINTR] = '#';
  single_key_mode = true;
  catch_signals();
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
