// What tests and fuzz targets share, GoogleTest included: files that go again,
// captured dialogue, fatal ends.

#ifndef TESTS_SUPPORT_H_
#define TESTS_SUPPORT_H_

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/fatal.h"

namespace tests {

// The fatal end that `action` must come to.
base::FatalEnd fatal_end_of(const std::function<void()>& action);
#define EXPECT_CAUSE(action, text) \
  EXPECT_EQ(tests::fatal_end_of([&] { action; }).cause(), text)

testing::AssertionResult has(const std::string& text, std::string_view part);

using Words = std::vector<std::string>;
// Of what a file or a program holds, its lines or fields.
Words split(const std::string& text, char separator);

std::string content_of(const std::string& file);

// The current directory while it lives: an empty one that goes with it, or
// `directory`.
class WorkingDirectory {
 public:
  WorkingDirectory();
  explicit WorkingDirectory(const char* directory) {
    std::filesystem::current_path(directory);
  }
  ~WorkingDirectory();

 private:
  const std::filesystem::path before_ = std::filesystem::current_path();
  std::string own_;
};

void write(const std::string& file, std::string_view content);

// Runs `action` with `input` as standard input and returns what it wrote to
// standard output. Behind it, data files are closed and the history is empty.
std::string output_of(std::string_view input,
                      const std::function<void()>& action);

}  // namespace tests

#endif  // TESTS_SUPPORT_H_
