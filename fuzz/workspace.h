// Where a fuzz target runs: a directory of its own with the program's data
// files, keys on standard input, and nobody looking at standard output.

#ifndef FUZZ_WORKSPACE_H_
#define FUZZ_WORKSPACE_H_

#include <functional>
#include <string_view>

namespace fuzz {

// A finding unless `so`.
void require(bool so);

// Puts `content` into `file` of the workspace.
void provide(const char* file, std::string_view content);

// Runs `action` with `keys` on standard input, to its end or a fatal one.
void run(std::string_view keys, const std::function<void()>& action);

}  // namespace fuzz

#endif  // FUZZ_WORKSPACE_H_
