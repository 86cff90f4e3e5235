#include "terminal/signals.h"

#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>

namespace terminal {
namespace {

// What the handler sets. Written while no signal is caught.
termios own_settings;
termios meanwhile_settings;
bool stops_caught = false;

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
  set_terminal_if_ours(meanwhile_settings);
  errno = error;
}

}  // namespace

void catch_signals(const termios& own, const termios* meanwhile) {
  own_settings = own;
  stops_caught = meanwhile != nullptr;
  if (stops_caught) meanwhile_settings = *meanwhile;
  struct sigaction action {};
  action.sa_handler = on_signal;
  action.sa_flags = SA_RESTART;
  sigfillset(&action.sa_mask);
  for (int signal = 1; signal < NSIG; ++signal) {
    auto& [caught, before] = stored.at(static_cast<std::size_t>(signal));
    caught = (is_deadly(signal) || (stops_caught && is_stop(signal))) &&
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

bool in_foreground() {
  const pid_t foreground = tcgetpgrp(STDIN_FILENO);
  return foreground < 0 || foreground == getpgrp();
}

}  // namespace terminal
