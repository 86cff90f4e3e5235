#include "tests/screen.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>
#include <vterm.h>

#include <csignal>
#include <cstdlib>
#include <cstring>

#include "tests/support.h"

namespace tests {
namespace {

constexpr std::chrono::seconds kDeadline{10};  // of every wait
// Silence after which nothing more is expected of a program that sleeps.
constexpr std::chrono::milliseconds kCalm{400};

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

}  // namespace

std::string settings_of(int terminal) {
  termios now;
  std::memset(&now, 0, sizeof now);  // also between the members
  EXPECT_EQ(tcgetattr(terminal, &now), 0);
  return {reinterpret_cast<const char*>(&now), sizeof now};
}

Screen::Screen(Size size, const Options& options)
    : vterm_(vterm_new(24, 80), vterm_free) {
  vterm_set_utf8(vterm_.get(), 1);
  vterm_screen_reset(vterm_obtain_screen(vterm_.get()), 1);
  EXPECT_EQ(openpty(&master_, &slave_, nullptr, nullptr, nullptr), 0);
  for (const int fd : {master_, slave_}) fcntl(fd, F_SETFD, FD_CLOEXEC);
  fcntl(master_, F_SETFL, O_NONBLOCK);
  resize(size);
  initial_settings_ = settings();
  const std::string line = command(options);
  pid_ = fork();
  if (pid_ < 0) std::abort();
  if (pid_ > 0) return;
  login_tty(slave_);
  if (options.job) {
    // Between terminal and program stands a process like a shell.
    if (fork() > 0) _exit(::wait(nullptr) < 0 ? 1 : 0);
    setpgid(0, 0);
    std::signal(SIGTTOU, SIG_IGN);
    tcsetpgrp(STDIN_FILENO, getpid());
  }
  for (int signal = 1; signal < NSIG; ++signal) std::signal(signal, SIG_DFL);
  execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
  _exit(127);
}

// To poll the program's side hands on what was typed and then tells whether any
// of it is unread, so what the screen shows cannot be of an earlier state. The
// calm is for processes that the program may have left behind.
bool Screen::awaited(std::string_view text, bool in_question) {
  // Of standard input, or until the line editor can read it.
  const std::string reads = std::to_string(SYS_read) + " 0x0 ";
  const std::string selects = std::to_string(SYS_pselect6) + " 0x1 ";
  const auto end = Clock::now() + kDeadline;
  for (; Clock::now() < end; drain(1)) {
    const bool over = ended(), unread = readable(slave_);
    const std::string call = program_file("syscall");
    const bool asks =
        call.starts_with(reads) || call.starts_with(selects) || stopped();
    if (call.starts_with("running")) last_activity_ = Clock::now();
    drain(0);
    const bool calm = Clock::now() - last_activity_ > kCalm;
    if (!over && (unread || !(asks || calm))) continue;
    const auto edge = [this](int r) { return row(r).starts_with("---"); };
    int r = in_question ? cursor().first - 1 : 1;
    const bool menu = in_question && edge(r);
    while (menu && --r > 1 && !edge(r)) continue;
    const int last = in_question ? cursor().first : rows_;
    while (r <= last && row(r).find(text) == std::string::npos) ++r;
    if (r <= last && !(in_question && over)) return true;
    if (calm) return false;
  }
  return false;
}

bool Screen::ended() {
  int status = 0;
  if (!reaped_ && waitpid(pid_, &status, WNOHANG) == pid_) {
    reaped_ = true;
    if (WIFEXITED(status)) outcome_.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) outcome_.signal = WTERMSIG(status);
  }
  return reaped_;
}

// Takes the output there is, at most twice what a terminal holds back, waiting
// so long for the first of it.
void Screen::drain(int milliseconds) {
  std::string bytes(4096, ' ');
  for (int i = 0; i < 32 && readable(master_, i == 0 ? milliseconds : 0); ++i) {
    const auto got = read(master_, bytes.data(), bytes.size());
    if (got <= 0) return;
    last_activity_ = Clock::now();
    raw_.append(bytes, 0, static_cast<std::size_t>(got));
    vterm_input_write(vterm_.get(), bytes.data(), static_cast<size_t>(got));
  }
}

// The process group in the foreground, also behind a job's shell.
pid_t Screen::program() const {
  const pid_t group = master_ < 0 ? -1 : tcgetpgrp(master_);
  return group > 0 ? group : pid_;
}

std::string Screen::program_file(const std::string& name) const {
  return content_of("/proc/" + std::to_string(program()) + "/" + name);
}

void Screen::type(std::string_view keys) {
  EXPECT_GE(write(master_, keys.data(), keys.size()), 0);
  last_activity_ = Clock::now();
}

std::string Screen::row(int row) const {
  if (row < 1 || row > rows_) return {};
  std::string text(static_cast<std::size_t>(columns_) * 24, ' ');
  const VTermScreen* const screen = vterm_obtain_screen(vterm_.get());
  text.resize(vterm_screen_get_text(screen, text.data(), text.size(),
                                    {row - 1, row, 0, columns_}));
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::pair<int, int> Screen::cursor() const {
  VTermPos position{};
  vterm_state_get_cursorpos(vterm_obtain_state(vterm_.get()), &position);
  return {position.row + 1, position.col + 1};
}

std::string Screen::dump() const {
  std::string text = "ended with " + std::to_string(outcome_.status) + "\n";
  for (int r = 1; r <= rows_; ++r) text += row(r) + "\n";
  return text;
}

void Screen::resize(Size size) {
  const winsize window{size.rows, size.columns, 0, 0};
  EXPECT_EQ(ioctl(master_, TIOCSWINSZ, &window), 0);
  rows_ = size.rows == 0 ? 24 : size.rows;
  columns_ = size.columns == 0 ? 80 : size.columns;
  vterm_set_size(vterm_.get(), rows_, columns_);
}

void Screen::signal(int signal) {
  if (!ended()) kill(program(), signal);
  last_activity_ = Clock::now();
}

Outcome Screen::wait() {
  for (const auto end = Clock::now() + kDeadline; !ended(); drain(1)) {
    if (Clock::now() > end) signal(SIGKILL);
  }
  drain(0);
  return outcome_;
}

// The command is a file because no single argument may be longer than 128 KiB.
Outcome run_piped(std::string_view input, const Options& options) {
  const TemporaryDirectory files;
  files.write("in", input);
  files.write("run", command(options));
  const std::string in = "cd '" + files.path("") + "' && cat in | ";
  const int status =
      std::system((in + "timeout -s KILL 10 sh run >out 2>err").c_str());
  return {WEXITSTATUS(status), 0, content_of(files.path("out")),
          content_of(files.path("err"))};
}

}  // namespace tests
