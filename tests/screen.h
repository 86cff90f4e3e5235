// The program as its user sees it: on a terminal whose screen a terminal
// emulator library draws. Nothing sleeps for a fixed time: the screen is looked
// at and keys are typed when the states of the process and of its terminal tell
// that the program has read all that was typed and waits for more.

#ifndef TESTS_SCREEN_H_
#define TESTS_SCREEN_H_

#include <csignal>
#include <memory>
#include <utility>

#include "tests/support.h"

struct VTerm;

namespace tests {

struct Size {
  unsigned short rows, columns;
};

// None with an apostrophe, but for `rest`.
struct Options {
  std::string directory = DATA_DIR;
  Words environment{};      // "NAME=value", on top of what is fixed
  std::string rest{};       // of the command in shell notation: "--help 2>&-"
  bool background = false;  // as with "&" behind the command
};

// What a user does and sees next: one of three.
struct Step {
  // Waits for this prompt, types the keys and RET, and RET again to confirm
  // them; without keys RET alone. Sought in the last question only: the row of
  // the cursor and the one above, or the whole menu whose lower edge is above.
  std::string prompt{}, keys{};
  // What any row must show when the program waits, has stopped or has ended.
  std::string shows{};
  // Keys to type at once.
  std::string types{};
};

// Rows count from 1. To a size of 0 belongs a screen of 24 x 80.
class Screen {
 public:
  explicit Screen(Size size = {24, 80}, const Options& options = {});
  ~Screen();

  // Takes the steps one after the other. Fails, with the screen, when a wait
  // takes 10 s.
  testing::AssertionResult walk(const std::vector<Step>& steps);

  // The screen at the last of these waits, without trailing blanks.
  std::string rows(int first, int last) const;     // each with its line end
  const std::string& raw() const { return raw_; }  // all output so far

  void type(std::string_view keys);  // whether awaited or not
  void resize(Size size);
  void signal(int signal) const { kill(program(), signal); }
  // The terminal goes away; settings must not be asked after.
  void hang_up();
  // Waits for the program to stop and the shell to have the terminal, which may
  // then edit its own line, until it gives the terminal back to the program.
  void await_stop();
  void edit_in_shell();
  void continue_in_foreground();
  void await_settings(const std::string& wanted);
  // For the end, which may be by the SIGKILL that follows after 10 s. The exit
  // status as a shell has it: 128 + the signal, if one ended the program.
  int wait();
  bool stopped() const { return file("status").find("State:\tT") < 9999; }
  std::string settings() const;  // all of the terminal's
  bool restored() const { return settings() == users_; }

 private:
  bool awaited(std::string_view text, bool in_question);
  bool ended();
  void drain(int milliseconds);
  pid_t program() const;
  std::string file(const std::string& name) const;  // of its /proc directory

  const std::unique_ptr<VTerm, void (*)(VTerm*)> vterm_;
  int rows_ = 0, columns_ = 0;
  int master_ = -1, slave_ = -1;  // the tester's and the program's side
  pid_t shell_ = -1;
  int status_ = -1;
  std::string users_, raw_;  // the user's own settings; all output
};

struct Outcome {
  int status;
  std::string out, err;
};

// Runs the program to its end with `input` coming through a pipe, and its
// output going to files.
Outcome run_piped(std::string_view input, const Options& options = {});

}  // namespace tests

#endif  // TESTS_SCREEN_H_
