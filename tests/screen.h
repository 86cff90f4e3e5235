// The program as its user sees it: on a terminal whose screen a terminal
// emulator library draws. Nothing sleeps for a fixed time: the screen is looked
// at and keys are typed when the states of the process and of its terminal tell
// that the program has read all that was typed and waits for more.

#ifndef TESTS_SCREEN_H_
#define TESTS_SCREEN_H_

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct VTerm;

namespace tests {

using Words = std::vector<std::string>;

struct Size {
  unsigned short rows, columns;
};

// None with an apostrophe, but for `rest`.
struct Options {
  std::string directory = DATA_DIR;
  Words environment{};  // "NAME=value", on top of what is fixed
  std::string rest{};   // of the command in shell notation: "--help 2>&-"
  bool job = false;     // of a shell; only such a program stops on SIGTSTP
};

struct Outcome {
  int status = -1;  // exit status; on a screen -1 after a signal
  int signal = 0;   // that ended the program, also SIGKILL at the deadline
  std::string out{}, err{};  // of run_piped only
};

// All settings of a terminal.
std::string settings_of(int terminal);

// Rows and columns count from 1. To a size of 0 belongs a screen of 24 x 80.
class Screen {
 public:
  explicit Screen(Size size = {24, 80}, const Options& options = {});
  ~Screen() {
    signal(SIGKILL);
    wait();
    hang_up();
  }

  // Types `keys` when the program waits with `prompt` in the last question: the
  // cursor's row and the one above, or the whole menu whose lower edge is
  // above. False when it waits at another prompt, is gone, or at the deadline.
  bool answer(std::string_view prompt, std::string_view keys) {
    const bool asked = awaited(prompt, true);
    if (asked) type(keys);
    return asked;
  }
  // Whether any row has `text` when it waits, has been stopped or has ended.
  bool shows(std::string_view text) { return awaited(text, false); }

  // The state at the last of these waits.
  std::string row(int row) const;  // without trailing blanks
  std::pair<int, int> cursor() const;
  const std::string& raw() const { return raw_; }  // all output so far
  std::string dump() const;                        // the screen

  void type(std::string_view keys);  // whether awaited or not
  void resize(Size size);
  void signal(int signal);
  bool stopped() const {
    return program_file("status").find("State:\tT") != std::string::npos;
  }
  // The terminal goes away; settings must not be asked after.
  void hang_up() {
    for (int* const side : {&master_, &slave_}) close(std::exchange(*side, -1));
  }
  Outcome wait();  // for the end
  std::string settings() const { return settings_of(slave_); }
  bool restored() const { return settings() == initial_settings_; }

 private:
  using Clock = std::chrono::steady_clock;

  bool awaited(std::string_view text, bool in_question);
  bool ended();
  void drain(int milliseconds);
  pid_t program() const;
  std::string program_file(const std::string& name) const;

  const std::unique_ptr<VTerm, void (*)(VTerm*)> vterm_;
  int rows_ = 0, columns_ = 0;
  int master_ = -1, slave_ = -1;  // the tester's and the program's side
  pid_t pid_ = -1;
  bool reaped_ = false;
  Outcome outcome_;
  Clock::time_point last_activity_ = Clock::now();
  std::string initial_settings_, raw_;
};

// Runs the program to its end with `input` coming through a pipe, and its
// output going to files.
Outcome run_piped(std::string_view input, const Options& options = {});

}  // namespace tests

#endif  // TESTS_SCREEN_H_
