// Completion of words by shells.

#ifndef ATTENUATE_COMPLETION_H_
#define ATTENUATE_COMPLETION_H_

#include <span>
#include <string_view>

#include "attenuate/output.h"

namespace attenuate {

// Prints the script for "bash", "zsh" or "fish".
// Throws physics::InputError: another shell.
int print_completion(std::span<const std::string_view> arguments,
                     Output& output);

}  // namespace attenuate

#endif  // ATTENUATE_COMPLETION_H_
