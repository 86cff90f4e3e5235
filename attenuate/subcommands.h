// What the first word can be instead of a question.

#ifndef ATTENUATE_SUBCOMMANDS_H_
#define ATTENUATE_SUBCOMMANDS_H_

#include <span>
#include <string_view>

#include "attenuate/output.h"

namespace attenuate {

struct Subcommand {
  std::string_view name;
  std::string_view usage;    // behind the name: "[TEXT]"
  std::string_view summary;  // one line
  // Takes the arguments behind the name, returns the exit status. Throws
  // physics::InputError, whose column counts in these, joined by blanks.
  int (*run)(std::span<const std::string_view> arguments, Output& output);
  std::string_view options = {};  // of its own, for completion
};

std::span<const Subcommand> subcommands();

// Nothing if `word` is none.
const Subcommand* subcommand(std::string_view word);

}  // namespace attenuate

#endif  // ATTENUATE_SUBCOMMANDS_H_
