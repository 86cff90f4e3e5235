// The one way out of a run that cannot go on.
//
// A fatal end is an exception, so that every guard on the way out (terminal
// settings, open files) does its work, and so that a caller who knows what the
// user was doing can add the line that helps. `run` catches it, reports and
// ends the program with status 2.

#ifndef BASE_FATAL_H_
#define BASE_FATAL_H_

#include <array>
#include <concepts>
#include <exception>
#include <string>
#include <type_traits>
#include <utility>

#include "base/source_position.h"

namespace base {

// Exit status of a program that ended fatally.
inline constexpr int kFatalStatus = 2;

class FatalEnd : public std::exception {
 public:
  // cause   what went wrong, in terms of the program
  // advice  what the user can do about it; blank where nobody knows
  explicit FatalEnd(std::string cause, std::string advice = {},
                    SourcePosition at = SourcePosition::current());

  const std::string& cause() const { return cause_; }
  const std::string& advice() const { return advice_; }
  const char* what() const noexcept override { return cause_.c_str(); }

  // Sets the line for the user; the outermost caller knows most and wins.
  void advise(std::string advice) { advice_ = std::move(advice); }

  // Lets the report be this one line: for an end that is no surprise.
  void be_brief(std::string line) { brief_ = std::move(line); }

  // What happened and what to do, then the source position and the program's
  // own calls, for standard error. The first lines are wrapped at words to
  // `columns` columns; the advice comes before a cause that speaks of the
  // program.
  // Calls without a name, which only a debugger can tell, are left out unless
  // the environment has ATTENUATION_TRACE=1.
  std::string report(int columns = 80) const;

 protected:
  // Whether the cause means something to a person who does not know the source.
  virtual bool plain_cause() const { return true; }

 private:
  std::string cause_;
  std::string advice_;
  SourcePosition at_;
  std::array<void*, 64> frames_{};
  int frame_count_ = 0;
  std::string brief_;
};

// A subscript or substring outside its bounds.
class RangeError : public FatalEnd {
  using FatalEnd::FatalEnd;
  bool plain_cause() const override { return false; }
};

// A file, or the input of the dialogue, ended where more was needed.
class EndOfFile : public FatalEnd {
  using FatalEnd::FatalEnd;
};

// Throws a FatalEnd. Where a caller tells them apart, throw a RangeError or an
// EndOfFile instead.
[[noreturn]] void fatal(std::string cause, std::string advice = {},
                        SourcePosition at = SourcePosition::current());

// Does `action` and returns what it returns. If it ends fatally in the way
// `End`, that end gets `advice` as its line for the user: a text, or a function
// that makes one, from nothing or from the end.
//
//   return with_advice<EndOfFile>([&] { return read_block(file); },
//                                 "the block has no end");
template <std::derived_from<FatalEnd> End = FatalEnd, typename Action,
          typename Advice>
decltype(auto) with_advice(const Action& action, const Advice& advice) {
  try {
    return action();
  } catch (End& end) {
    if constexpr (std::is_invocable_v<const Advice&, const End&>) {
      end.advise(advice(std::as_const(end)));
    } else if constexpr (std::is_invocable_v<const Advice&>) {
      end.advise(advice());
    } else {
      end.advise(advice);
    }
    throw;
  }
}

// Tells on standard error of what does not end the run, though its numbers may
// be others than the user takes them for. What standard output shows is the
// same with and without.
void note(const std::string& text);

// Runs `program` and returns the exit status: 0, or kFatalStatus after a fatal
// end, which is reported on standard error. By then the guards have put the
// terminal's settings back; `begin_report` may see to what is on its screen and
// returns the columns there are. Whatever a report names, it steers no
// terminal.
int run(void (*program)(), int (*begin_report)() = nullptr);

}  // namespace base

#endif  // BASE_FATAL_H_
