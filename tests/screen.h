// The program as its user sees it: on a terminal of a given size, whose screen
// a terminal emulator library draws.
//
// Nothing sleeps for a fixed time: the states of the process and of its
// terminal tell when the program has read all that was typed and waits for
// more. Only then the screen is looked at and the next keys are typed.

#ifndef TESTS_SCREEN_H_
#define TESTS_SCREEN_H_

#include <sys/types.h>
#include <termios.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct VTerm;
struct VTermScreen;

namespace tests {

inline constexpr std::string_view kReturn = "\r";
inline constexpr std::string_view kUp = "\x1b[A", kDown = "\x1b[B";
inline constexpr std::string_view kRight = "\x1b[C", kLeft = "\x1b[D";

using Program = std::vector<std::string>;  // file or name in PATH; arguments

struct Size {
  unsigned short rows, columns;
};

struct Options {
  std::string directory = ".";
  // "NAME=value", on top of TERM=xterm, LC_ALL=C.UTF-8, INPUTRC=/dev/null,
  // HOME=/nonexistent and the tester's PATH.
  std::vector<std::string> environment{};
  std::string redirect{};  // in shell notation: "</dev/null 2>&-"
  bool job = false;        // of a shell; only such a program stops on SIGTSTP
  std::chrono::milliseconds deadline{10'000};  // of every wait
};

struct Outcome {
  int status = -1;      // exit status; -1 after a signal
  int signal = 0;       // that ended the program; 0 if none
  bool killed = false;  // over the deadline, or for endless output
  std::chrono::milliseconds elapsed{};  // time waited for the end
};

bool same_settings(const termios& a, const termios& b);

// Rows and columns count from 1. To a size of 0 belongs a screen of 24 x 80.
class Screen {
 public:
  Screen(const Program& program, Size size, Options options = {});
  ~Screen();

  // Types `keys` when the program waits for input at the prompt: in a row that
  // begins with it or, without a row, in the last question (the cursor's row
  // and the one above, or the whole menu whose lower edge is above). False
  // when the program waits at another prompt, is gone, or at the deadline.
  bool answer(int row, std::string_view prompt, std::string_view keys);
  bool answer(std::string_view prompt, std::string_view keys);

  // Whether the text stands in that row, or in any, when the program waits for
  // input, has been stopped or has ended. shows("") only waits for that.
  bool shows(int row, std::string_view text);
  bool shows(std::string_view text);

  // The state at the last of these waits.
  std::string row(int row) const;      // without trailing blanks
  std::pair<int, int> cursor() const;  // row, column
  bool red(int row, int column) const;
  bool bold(int row, int column) const;
  const std::string& raw() const { return raw_; }  // all output so far
  std::string dump() const;  // the screen, and what was waited for in vain

  void type(std::string_view keys);  // whether awaited or not
  void resize(Size size);
  void signal(int signal);
  bool stopped() const;
  void hang_up();  // the terminal goes away; settings() must not follow
  Outcome wait();  // for the end

  termios settings() const;  // of the terminal, also after the end
  const termios& initial_settings() const { return initial_settings_; }

 private:
  using Clock = std::chrono::steady_clock;

  bool eventually(std::string_view wanted, const std::function<bool()>& so,
                  std::string_view keys = {});
  bool resting();
  bool ended();
  bool calm() const;
  void drain(int milliseconds);
  void kill_program();
  pid_t program() const;
  bool within(int first, int last, std::string_view text) const;

  const Options options_;
  Size size_{};
  std::unique_ptr<VTerm, void (*)(VTerm*)> vterm_;
  VTermScreen* screen_;  // belongs to the emulator
  int master_ = -1;      // the tester's side of the terminal
  int slave_ = -1;       // the program's side
  termios initial_settings_{};
  pid_t pid_ = -1;
  bool reaped_ = false;
  Outcome outcome_;
  Clock::time_point last_activity_ = Clock::now();
  std::string raw_;
  std::string unmet_;
};

struct RunResult : Outcome {
  std::string out, err;
};

// Runs a program to its end with `input`, at most 1 MB, coming through a pipe.
RunResult run_piped(const Program& program, const std::string& directory,
                    const std::vector<std::string>& environment,
                    std::string_view input);

}  // namespace tests

#endif  // TESTS_SCREEN_H_
