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

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <system_error>
#include <utility>

#include "tests/support.h"

namespace tests {
namespace {

constexpr std::size_t kMostOutput = 4 << 20;
// Silence after which nothing more is expected of a program that sleeps.
constexpr std::chrono::milliseconds kCalm{400};

int checked(int result) {
  if (result >= 0) return result;
  throw std::system_error(errno, std::generic_category());
}

bool readable(int fd, int milliseconds) {
  pollfd request{fd, POLLIN, 0};
  return poll(&request, 1, milliseconds) > 0;
}

Size shown(Size size) {
  if (size.rows == 0) size.rows = 24;
  if (size.columns == 0) size.columns = 80;
  return size;
}

std::string process_file(pid_t pid, const std::string& name) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/" + name);
  std::string line;
  std::getline(file, line);
  return line;
}

bool in_state(pid_t pid, char state) {
  const std::string mark = std::string(") ") + state + ' ';
  return process_file(pid, "stat").find(mark) != std::string::npos;
}

// Whether the process sleeps in a read of standard input or, in the line
// editor, until that can be read.
bool awaits_input(pid_t pid) {
  const std::string call = process_file(pid, "syscall");
  return call.starts_with(std::to_string(SYS_read) + " 0x0 ") ||
         call.starts_with(std::to_string(SYS_pselect6) + " 0x1 ");
}

VTermScreenCell cell(VTermScreen* screen, int row, int column) {
  VTermScreenCell found{};
  vterm_screen_get_cell(screen, {row - 1, column - 1}, &found);
  return found;
}

// In the child: stands between terminal and program like a shell, and ends as
// the program does.
void become_job() {
  if (const pid_t job = fork(); job > 0) {
    int status = 0;
    waitpid(job, &status, 0);
    if (WIFSIGNALED(status)) raise(WTERMSIG(status));
    _exit(WEXITSTATUS(status));
  }
  setpgid(0, 0);
  std::signal(SIGTTOU, SIG_IGN);
  tcsetpgrp(STDIN_FILENO, getpid());
  std::signal(SIGTTOU, SIG_DFL);
}

// The words that start the program; its process is the one they begin in.
Program command(const Program& program, const Options& options) {
  const std::string start =
      "ulimit -c 0; ulimit -f 65536; exec env -i -C \"$0\" PATH=\"$PATH\""
      " TERM=xterm LC_ALL=C.UTF-8 INPUTRC=/dev/null HOME=/nonexistent \"$@\" ";
  Program words{"sh", "-c", start + options.redirect, options.directory};
  for (const auto& more : {options.environment, program}) {
    words.insert(words.end(), more.begin(), more.end());
  }
  return words;
}

}  // namespace

bool same_settings(const termios& a, const termios& b) {
  return a.c_iflag == b.c_iflag && a.c_oflag == b.c_oflag &&
         a.c_cflag == b.c_cflag && a.c_lflag == b.c_lflag &&
         a.c_line == b.c_line && std::ranges::equal(a.c_cc, b.c_cc) &&
         a.c_ispeed == b.c_ispeed && a.c_ospeed == b.c_ospeed;
}

Screen::Screen(const Program& program, Size size, Options options)
    : options_(std::move(options)),
      size_(shown(size)),
      vterm_(vterm_new(size_.rows, size_.columns), vterm_free),
      screen_(vterm_obtain_screen(vterm_.get())) {
  vterm_set_utf8(vterm_.get(), 1);
  vterm_screen_reset(screen_, 1);
  const winsize window{size.rows, size.columns, 0, 0};
  checked(openpty(&master_, &slave_, nullptr, nullptr, &window));
  for (const int fd : {master_, slave_}) fcntl(fd, F_SETFD, FD_CLOEXEC);
  fcntl(master_, F_SETFL, O_NONBLOCK);
  initial_settings_ = settings();
  Program words = command(program, options_);
  pid_ = checked(fork());
  if (pid_ > 0) return;
  for (int signal = 1; signal < NSIG; ++signal) std::signal(signal, SIG_DFL);
  login_tty(slave_);
  if (options_.job) become_job();
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

Screen::~Screen() {
  kill_program();
  if (!reaped_) waitpid(pid_, nullptr, 0);
  hang_up();
}

bool Screen::answer(int row, std::string_view prompt, std::string_view keys) {
  return eventually(
      prompt, [&] { return !reaped_ && this->row(row).starts_with(prompt); },
      keys);
}

bool Screen::answer(std::string_view prompt, std::string_view keys) {
  const auto asked = [&] {
    const auto edge = [this](int r) { return row(r).starts_with("---"); };
    const int last = cursor().first;
    int first = last - 1;
    if (edge(first)) {
      while (--first > 1 && !edge(first)) continue;
    }
    return !reaped_ && within(first, last, prompt);
  };
  return eventually(prompt, asked, keys);
}

bool Screen::shows(int row, std::string_view text) {
  return eventually(text, [&] { return within(row, row, text); });
}

bool Screen::shows(std::string_view text) {
  return eventually(text, [&] { return within(1, size_.rows, text); });
}

// Where the program rests at something else, nothing changes any more; the calm
// is for processes that it may have left behind.
bool Screen::eventually(std::string_view wanted,
                        const std::function<bool()>& so,
                        std::string_view keys) {
  const auto end = Clock::now() + options_.deadline;
  while (Clock::now() < end) {
    const bool rests = ended() || resting();
    drain(0);
    if (rests && so()) {
      type(keys);
      return true;
    }
    if (rests && calm()) break;
    drain(1);
  }
  unmet_ = wanted;
  return false;
}

// To poll the program's side hands on what was typed and then tells whether any
// of it is unread, so what the screen shows cannot be of an earlier state.
bool Screen::resting() {
  if (readable(slave_, 0)) return false;
  if (awaits_input(program()) || stopped()) return true;
  if (!in_state(program(), 'S')) last_activity_ = Clock::now();
  return calm();
}

bool Screen::stopped() const { return in_state(program(), 'T'); }

bool Screen::calm() const { return Clock::now() - last_activity_ > kCalm; }

bool Screen::ended() {
  int status = 0;
  if (!reaped_ && waitpid(pid_, &status, WNOHANG) == pid_) {
    reaped_ = true;
    if (WIFEXITED(status)) outcome_.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) outcome_.signal = WTERMSIG(status);
  }
  return reaped_;
}

// Takes the output there is, waiting so long for the first of it. The bound is
// twice what a terminal holds back.
void Screen::drain(int milliseconds) {
  std::array<char, 4096> bytes{};
  for (int i = 0; i < 32 && readable(master_, i == 0 ? milliseconds : 0); ++i) {
    const auto got = read(master_, bytes.data(), bytes.size());
    if (got <= 0) return;
    last_activity_ = Clock::now();
    raw_.append(bytes.data(), static_cast<std::size_t>(got));
    vterm_input_write(vterm_.get(), bytes.data(),
                      static_cast<std::size_t>(got));
  }
  if (raw_.size() > kMostOutput && !reaped_) {
    outcome_.killed = true;
    kill_program();
  }
}

// The process group in the foreground is the program's, also behind a job's
// shell.
pid_t Screen::program() const {
  const pid_t group = master_ < 0 ? -1 : tcgetpgrp(master_);
  return group > 0 ? group : pid_;
}

void Screen::kill_program() {
  if (ended()) return;
  kill(program(), SIGKILL);
  kill(pid_, SIGKILL);
}

void Screen::type(std::string_view keys) {
  const auto end = Clock::now() + options_.deadline;
  while (!keys.empty() && Clock::now() < end) {
    const ssize_t typed = write(master_, keys.data(), keys.size());
    keys.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(typed, 0)));
    drain(keys.empty() ? 0 : 1);
  }
  last_activity_ = Clock::now();
}

bool Screen::within(int first, int last, std::string_view text) const {
  for (int r = first; r <= last; ++r) {
    if (row(r).find(text) != std::string::npos) return true;
  }
  return false;
}

std::string Screen::row(int row) const {
  if (row < 1 || row > size_.rows) return {};
  std::string text(static_cast<std::size_t>(size_.columns) * 24, ' ');
  text.resize(vterm_screen_get_text(screen_, text.data(), text.size(),
                                    {row - 1, row, 0, size_.columns}));
  text.resize(text.find_last_not_of(' ') + 1);
  return text;
}

std::pair<int, int> Screen::cursor() const {
  VTermPos position{};
  vterm_state_get_cursorpos(vterm_obtain_state(vterm_.get()), &position);
  return {position.row + 1, position.col + 1};
}

bool Screen::red(int row, int column) const {
  const VTermColor color = cell(screen_, row, column).fg;
  return VTERM_COLOR_IS_INDEXED(&color) && color.indexed.idx == 1;
}

bool Screen::bold(int row, int column) const {
  return cell(screen_, row, column).attrs.bold != 0;
}

std::string Screen::dump() const {
  std::string text = unmet_.empty() ? "" : "not shown: '" + unmet_ + "'; ";
  text += "cursor at " + std::to_string(cursor().first) + "," +
          std::to_string(cursor().second);
  if (reaped_) text += "; ended, status " + std::to_string(outcome_.status);
  for (int r = 1; r <= size_.rows; ++r) {
    if (row(r).empty()) continue;
    text += "\n" + std::to_string(r) + (r < 10 ? " |" : "|") + row(r);
  }
  return text + "\n";
}

void Screen::resize(Size size) {
  const winsize window{size.rows, size.columns, 0, 0};
  ioctl(master_, TIOCSWINSZ, &window);
  size_ = shown(size);
  vterm_set_size(vterm_.get(), size_.rows, size_.columns);
}

void Screen::signal(int signal) {
  if (!ended()) kill(program(), signal);
  last_activity_ = Clock::now();
}

void Screen::hang_up() {
  for (int* const fd : {&master_, &slave_}) {
    if (*fd >= 0) close(*fd);
    *fd = -1;
  }
}

Outcome Screen::wait() {
  const auto since = Clock::now();
  while (!ended()) {
    if (Clock::now() - since > options_.deadline) {
      outcome_.killed = true;
      kill_program();
    }
    drain(1);
  }
  drain(0);
  outcome_.elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
      Clock::now() - since);
  return outcome_;
}

termios Screen::settings() const {
  termios found{};
  checked(tcgetattr(slave_, &found));
  return found;
}

RunResult run_piped(const Program& program, const std::string& directory,
                    const std::vector<std::string>& environment,
                    std::string_view input) {
  const TemporaryDirectory files;
  std::array<int, 2> ends{};
  checked(pipe(ends.data()));
  fcntl(ends[1], F_SETFD, FD_CLOEXEC);
  // With room for all of the input no one has to wait for the reader.
  const int room = std::max(65536, static_cast<int>(input.size()));
  checked(fcntl(ends[1], F_SETPIPE_SZ, room));
  checked(static_cast<int>(write(ends[1], input.data(), input.size())));
  close(ends[1]);
  const std::string redirect = "</proc/self/fd/" + std::to_string(ends[0]) +
                               " >" + files.path("out") + " 2>" +
                               files.path("err");
  Screen screen(program, {24, 80}, {directory, environment, redirect});
  close(ends[0]);
  return {screen.wait(), content_of(files.path("out")),
          content_of(files.path("err"))};
}

}  // namespace tests
