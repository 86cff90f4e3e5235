// Where a fuzz target runs: a directory of its own with the program's data
// files, keys on standard input, and nobody looking at standard output.

#ifndef FUZZ_WORKSPACE_H_
#define FUZZ_WORKSPACE_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

namespace fuzz {

// The input as text.
std::string_view text_of(const std::uint8_t* data, std::size_t size);

// The input before and after its first byte of code 0: a file and keys.
std::pair<std::string_view, std::string_view> file_and_keys(
    std::string_view input);

// Puts `content` into `file` of the workspace.
void provide(const char* file, std::string_view content);

// Runs `action` with `keys` on standard input. A fatal end is as good as any;
// it must only be one that the program reports.
void run(std::string_view keys, const std::function<void()>& action);

}  // namespace fuzz

#endif  // FUZZ_WORKSPACE_H_
