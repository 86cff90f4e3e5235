// What the tests share: temporary files, captured dialogue, fatal ends.

#ifndef TESTS_SUPPORT_H_
#define TESTS_SUPPORT_H_

#include <functional>
#include <string>
#include <string_view>

#include "base/fatal.h"

namespace tests {

// The cause, or the advice, of the fatal end that `action` must come to.
std::string cause_of(const std::function<void()>& action);
std::string advice_of(const std::function<void()>& action);

// A directory that goes with the test.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  std::string path(std::string_view file) const;
  void write(std::string_view file, std::string_view content) const;

 private:
  std::string path_;
};

std::string content_of(const std::string& file);

// Makes `directory` the current one for the time of a test.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& directory);
  ~WorkingDirectory();
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  std::string before_;
};

// Runs `action` with `input` as standard input and returns what it wrote to
// standard output.
std::string output_of(std::string_view input,
                      const std::function<void()>& action);

}  // namespace tests

#endif  // TESTS_SUPPORT_H_
