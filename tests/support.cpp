#include "tests/support.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>

namespace tests {

base::FatalEnd fatal_end_of(const std::function<void()>& action) {
  try {
    action();
  } catch (const base::FatalEnd& end) {
    return end;
  }
  ADD_FAILURE() << "no fatal end";
  return base::FatalEnd("");
}

testing::AssertionResult has(const std::string& text, std::string_view part) {
  return (text.find(part) == text.npos ? testing::AssertionFailure()
                                       : testing::AssertionSuccess())
         << "'" << part << "' in '" << text << "'";
}

std::string TemporaryDirectory::write(const std::string& file,
                                      std::string_view content) const {
  std::ofstream(path(file), std::ios::binary) << content;
  return path(file);
}

std::string content_of(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string output_of(std::string_view input,
                      const std::function<void()>& action) {
  const TemporaryDirectory files;
  const auto replace = [](int fd, int other) {
    dup2(other, fd);
    close(other);
  };
  std::fflush(stdout);
  {
    const int in = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
    const int out = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    const std::shared_ptr<void> at_end(nullptr, [&](void*) {
      std::fflush(stdout);
      replace(STDIN_FILENO, in);
      replace(STDOUT_FILENO, out);
    });
    replace(STDIN_FILENO, open(files.write("in", input).c_str(), O_RDWR));
    replace(STDOUT_FILENO, open(files.write("out", "").c_str(), O_RDWR));
    action();
  }
  return content_of(files.path("out"));
}

}  // namespace tests
