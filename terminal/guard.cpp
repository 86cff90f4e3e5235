#include "terminal/guard.h"

#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>

namespace terminal {
namespace {

// What the handler sets, and what signals did before. Written while none is
// caught.
termios own_settings;
termios changed_settings;
struct Stored {
  bool caught = false;
  struct sigaction action {};
};
std::array<Stored, NSIG> stored;

bool is_stop(int signal) { return signal == SIGTSTP || signal == SIGCONT; }

// Whether `signal` by default ends the program.
bool is_deadly(int signal) {
  switch (signal) {
    case SIGKILL:
    case SIGSTOP:
    case SIGTSTP:
    case SIGTTIN:
    case SIGTTOU:
    case SIGCONT:
    case SIGCHLD:
    case SIGURG:
    case SIGWINCH:
      return false;
    default:
      return true;
  }
}

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

// Whether the terminal is the program's to set: not so in the background, where
// it is the shell's.
bool in_foreground() {
  const pid_t foreground = tcgetpgrp(STDIN_FILENO);
  return foreground < 0 || foreground == getpgrp();
}

// Back in the foreground, another SIGCONT follows.
void set_terminal_if_ours(const termios& settings) {
  if (in_foreground()) tcsetattr(STDIN_FILENO, TCSANOW, &settings);
}

// Calls only what is safe in a signal handler.
void on_signal(int signal) {
  const int error = errno;
  if (signal != SIGCONT) {
    set_terminal_if_ours(own_settings);
    deliver_by_default(signal);
  }
  set_terminal_if_ours(changed_settings);
  errno = error;
}

void catch_signals(bool stops_too) {
  struct sigaction action {};
  action.sa_handler = on_signal;
  action.sa_flags = SA_RESTART;
  sigfillset(&action.sa_mask);
  for (int signal = 1; signal < NSIG; ++signal) {
    auto& [caught, before] = stored.at(static_cast<std::size_t>(signal));
    caught = (is_deadly(signal) || (stops_too && is_stop(signal))) &&
             sigaction(signal, nullptr, &before) == 0 &&
             before.sa_handler == SIG_DFL;
    if (caught) sigaction(signal, &action, nullptr);
  }
}

void release_signals() {
  for (int signal = 1; signal < NSIG; ++signal) {
    const auto& [caught, before] = stored.at(static_cast<std::size_t>(signal));
    if (caught) sigaction(signal, &before, nullptr);
  }
}

}  // namespace

Guard::Guard() : guards_(tcgetattr(STDIN_FILENO, &own_settings) == 0) {
  if (guards_) catch_signals(false);
}

Guard::Guard(void (*change)(termios& settings)) {
  // Until it is the program's turn the settings are the shell's, which must not
  // be taken for the user's.
  if (!in_foreground()) kill(0, SIGTTIN);
  guards_ = changed_ = tcgetattr(STDIN_FILENO, &own_settings) == 0;
  if (!guards_) return;
  changed_settings = own_settings;
  change(changed_settings);
  catch_signals(true);
  tcsetattr(STDIN_FILENO, TCSANOW, &changed_settings);
}

Guard::~Guard() {
  if (!guards_) return;
  // A SIGCONT in between would take the changed settings up again, for good.
  sigset_t all{};
  sigset_t before{};
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, &before);
  if (changed_) tcsetattr(STDIN_FILENO, TCSANOW, &own_settings);
  release_signals();
  sigprocmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace terminal
