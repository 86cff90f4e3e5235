#include "tests/screen.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>
#include <vterm.h>

#include <chrono>
#include <cstdlib>
#include <cstring>

namespace tests {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kDeadline{10};  // of every wait

bool readable(int fd, int milliseconds = 0) {
  pollfd request{fd, POLLIN, 0};
  return poll(&request, 1, milliseconds) > 0;
}

// The program as a shell starts it.
std::string command(const Options& options) {
  std::string line =
      "ulimit -c 0; ulimit -f 65536; exec env -i -C '" + options.directory +
      "' PATH=\"$PATH\" TERM=xterm LC_ALL=C.UTF-8 INPUTRC=/dev/null "
      "HOME=/nonexistent";
  for (const auto& word : options.environment) line += " '" + word + "'";
  return line + " '" PROGRAM "' " + options.rest;
}

int exit_status(int wait_status) {
  return WIFSIGNALED(wait_status) ? 128 + WTERMSIG(wait_status)
                                  : WEXITSTATUS(wait_status);
}

// Runs `line` as a job of a shell, which alone can be stopped and continued.
// When it has stopped, the shell takes the terminal, and gives it back on
// SIGUSR1.
[[noreturn]] void run_job(const std::string& line, bool background) {
  for (const int signal : {SIGHUP, SIGTTOU}) std::signal(signal, SIG_IGN);
  sigset_t resume{};
  sigaddset(&resume, SIGUSR1);
  sigprocmask(SIG_BLOCK, &resume, nullptr);
  const pid_t job = fork();
  if (job == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0);
    if (!background) tcsetpgrp(STDIN_FILENO, getpid());
    for (int signal = 1; signal < NSIG; ++signal) std::signal(signal, SIG_DFL);
    sigprocmask(SIG_UNBLOCK, &resume, nullptr);
    execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
    _exit(127);
  }
  for (int status = 0;;) {
    waitpid(job, &status, WUNTRACED);
    if (!WIFSTOPPED(status)) _exit(exit_status(status));
    tcsetpgrp(STDIN_FILENO, getpid());
    sigwaitinfo(&resume, nullptr);
    tcsetpgrp(STDIN_FILENO, job);
    kill(-job, SIGCONT);
  }
}

}  // namespace

Screen::Screen(Size size, const Options& options)
    : vterm_(vterm_new(24, 80), vterm_free) {
  vterm_set_utf8(vterm_.get(), 1);
  vterm_screen_reset(vterm_obtain_screen(vterm_.get()), 1);
  EXPECT_EQ(openpty(&master_, &slave_, nullptr, nullptr, nullptr), 0);
  for (const int fd : {master_, slave_}) fcntl(fd, F_SETFD, FD_CLOEXEC);
  fcntl(master_, F_SETFL, O_NONBLOCK);
  resize(size);
  users_ = settings();
  if (options.background) edit_in_shell();
  const std::string line = command(options);
  shell_ = fork();
  if (shell_ < 0) std::abort();
  if (shell_ > 0) return;
  close(master_);
  login_tty(slave_);
  run_job(line, options.background);
}

Screen::~Screen() {
  if (!ended()) kill(shell_, SIGKILL);
  wait();
  hang_up();
}

testing::AssertionResult Screen::walk(const std::vector<Step>& steps) {
  for (const Step& step : steps) {
    bool passed = true;
    if (!step.types.empty()) {
      type(step.types);
    } else if (!step.shows.empty()) {
      passed = awaited(step.shows, false);
    } else if ((passed = awaited(step.prompt, true))) {
      type(step.keys + "\r");
      if (!step.keys.empty() && (passed = awaited("", true))) type("\r");
    }
    if (!passed) {
      return testing::AssertionFailure()
             << "not on the screen: '" << step.prompt << step.shows << "'\n"
             << rows(1, rows_);
    }
  }
  return testing::AssertionSuccess();
}

// To poll the program's side hands on what was typed and then tells whether any
// of it is unread, so what the screen shows cannot be of an earlier state.
bool Screen::awaited(std::string_view text, bool in_question) {
  // Of standard input, or until the line editor can read it.
  const std::string reads = std::to_string(SYS_read) + " 0x0 ";
  const std::string selects = std::to_string(SYS_pselect6) + " 0x1 ";
  const auto edge = [this](int r) { return rows(r, r).starts_with("---"); };
  for (const auto end = Clock::now() + kDeadline; Clock::now() < end;
       drain(1)) {
    const bool over = ended(), unread = readable(slave_);
    const std::string call = file("syscall");
    const bool asks = call.starts_with(reads) || call.starts_with(selects);
    drain(0);
    if (!over && (unread || !(asks || stopped()))) continue;
    VTermPos cursor{};  // from 0
    vterm_state_get_cursorpos(vterm_obtain_state(vterm_.get()), &cursor);
    const int last = in_question ? cursor.row + 1 : rows_;
    int first = in_question ? cursor.row : 1;
    if (in_question && edge(first)) {
      while (--first > 1 && !edge(first)) continue;
    }
    if (rows(first, last).find(text) != std::string::npos) {
      return !(in_question && over);
    }
  }
  return false;
}

bool Screen::ended() {
  int status = 0;
  if (status_ < 0 && waitpid(shell_, &status, WNOHANG) == shell_) {
    status_ = exit_status(status);
  }
  return status_ >= 0;
}

// Takes the output there is, at most twice what a terminal holds back, waiting
// so long for the first of it.
void Screen::drain(int milliseconds) {
  std::string bytes(4096, ' ');
  for (int i = 0; i < 32 && readable(master_, i == 0 ? milliseconds : 0); ++i) {
    const auto got = read(master_, bytes.data(), bytes.size());
    if (got <= 0) return;
    raw_.append(bytes, 0, static_cast<std::size_t>(got));
    vterm_input_write(vterm_.get(), bytes.data(), static_cast<size_t>(got));
  }
}

// The shell's only child; the shell itself before there is one.
pid_t Screen::program() const {
  const std::string shell = std::to_string(shell_);
  const std::string child =
      content_of("/proc/" + shell + "/task/" + shell + "/children");
  return child.empty() ? shell_ : std::stoi(child);
}

std::string Screen::file(const std::string& name) const {
  return content_of("/proc/" + std::to_string(program()) + "/" + name);
}

std::string Screen::rows(int first, int last) const {
  const VTermScreen* const screen = vterm_obtain_screen(vterm_.get());
  std::string text;
  for (int r = std::max(first, 1); r <= std::min(last, rows_); ++r) {
    std::string row(static_cast<std::size_t>(columns_) * 24, ' ');
    row.resize(vterm_screen_get_text(screen, row.data(), row.size(),
                                     {r - 1, r, 0, columns_}));
    text += row.substr(0, row.find_last_not_of(' ') + 1) + "\n";
  }
  return text;
}

std::string Screen::settings() const {
  termios now;
  std::memset(&now, 0, sizeof now);  // also between the members
  EXPECT_EQ(tcgetattr(slave_, &now), 0);
  return {reinterpret_cast<const char*>(&now), sizeof now};
}

void Screen::await_settings(const std::string& wanted) {
  for (const auto end = Clock::now() + kDeadline;
       settings() != wanted && Clock::now() < end;) {
    drain(1);
  }
  EXPECT_TRUE(settings() == wanted);
}

void Screen::await_stop() {
  const auto ours = [this] { return tcgetpgrp(master_) == shell_; };
  for (const auto end = Clock::now() + kDeadline;
       !(stopped() && ours()) && Clock::now() < end;) {
    drain(1);
  }
  EXPECT_TRUE(stopped() && ours());
}

void Screen::edit_in_shell() {
  termios own;
  std::memcpy(&own, users_.data(), sizeof own);
  own.c_lflag &= ~static_cast<tcflag_t>(ECHO | ICANON);
  tcsetattr(slave_, TCSANOW, &own);
}

void Screen::continue_in_foreground() {
  termios users;
  std::memcpy(&users, users_.data(), sizeof users);
  tcsetattr(slave_, TCSANOW, &users);
  kill(shell_, SIGUSR1);
}

void Screen::type(std::string_view keys) {
  EXPECT_GE(::write(master_, keys.data(), keys.size()), 0);
}

void Screen::resize(Size size) {
  const winsize window{size.rows, size.columns, 0, 0};
  EXPECT_EQ(ioctl(master_, TIOCSWINSZ, &window), 0);
  rows_ = size.rows == 0 ? 24 : size.rows;
  columns_ = size.columns == 0 ? 80 : size.columns;
  vterm_set_size(vterm_.get(), rows_, columns_);
}

void Screen::hang_up() {
  for (int* const side : {&master_, &slave_}) close(std::exchange(*side, -1));
}

int Screen::wait() {
  for (const auto end = Clock::now() + kDeadline; !ended(); drain(1)) {
    if (Clock::now() > end) kill(shell_, SIGKILL);
  }
  drain(0);
  return status_;
}

// The command is a file because no single argument may be longer than 128 KiB.
Outcome run_piped(std::string_view input, const Options& options) {
  const WorkingDirectory files;
  tests::write("in", input);
  tests::write("run", command(options));
  const int status =
      std::system("cat in | timeout -s KILL 10 sh run >out 2>err");
  return {exit_status(status), content_of("out"), content_of("err")};
}

}  // namespace tests
