// What tests and fuzz targets share: files that go again, captured dialogue,
// fatal ends.

#ifndef TESTS_SUPPORT_H_
#define TESTS_SUPPORT_H_

#include <gtest/gtest.h>

#include <cstdlib>
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
Words split(const std::string& text, char separator);
// Rows between "|", of fields between commas.
std::vector<Words> table(const std::string& text);
// Keys, in which "/" stands for RET.
std::string typed(std::string keys);

std::string content_of(const std::string& file);

// An empty directory that goes with its owner.
class TemporaryDirectory {
 public:
  TemporaryDirectory() { EXPECT_NE(mkdtemp(path_.data()), nullptr); }
  ~TemporaryDirectory() { std::filesystem::remove_all(path_); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;

  std::string path(const std::string& file) const { return path_ + "/" + file; }
  // Returns the path.
  std::string write(const std::string& file, std::string_view content) const;

 private:
  std::string path_ =
      std::filesystem::temp_directory_path() / "attenuation-XXXXXX";
};

// Makes `directory` the current one while it lives.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& directory) {
    std::filesystem::current_path(directory);
  }
  ~WorkingDirectory() { std::filesystem::current_path(before_); }

 private:
  const std::filesystem::path before_ = std::filesystem::current_path();
};

// Runs `action` with `input` as standard input and returns what it wrote to
// standard output. Behind it, data files are closed and the history is empty.
std::string output_of(std::string_view input,
                      const std::function<void()>& action);

}  // namespace tests

#endif  // TESTS_SUPPORT_H_
