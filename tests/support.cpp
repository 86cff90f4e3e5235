#include "tests/support.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

#include "base/unit.h"
#include "terminal/readaline.h"

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

Words split(const std::string& text, char separator) {
  std::istringstream in(text);
  Words parts;
  for (std::string s; std::getline(in, s, separator);) parts.push_back(s);
  return parts;
}

std::string content_of(const std::string& file) {
  // Ends quietly with the process that a file in /proc belongs to.
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return content.str();
}

WorkingDirectory::WorkingDirectory()
    : own_(std::filesystem::temp_directory_path() / "attenuation-XXXXXX") {
  EXPECT_NE(mkdtemp(own_.data()), nullptr);
  std::filesystem::current_path(own_);
}

WorkingDirectory::~WorkingDirectory() {
  std::filesystem::current_path(before_);
  std::filesystem::remove_all(own_);
}

void write(const std::string& file, std::string_view content) {
  std::ofstream(file, std::ios::binary) << content;
}

std::string output_of(std::string_view input,
                      const std::function<void()>& action) {
  // Both are replaced and put back at once.
  const auto put = [](const int* files) {
    std::fflush(stdout);
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO}) {
      dup2(files[fd], fd);
      close(files[fd]);
    }
  };
  const int before[] = {fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3),
                        fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3)};
  const std::shared_ptr<void> at_end(nullptr, [&](void*) { put(before); });
  const int files[] = {memfd_create("in", 0), memfd_create("out", 0)};
  EXPECT_EQ(pwrite(files[0], input.data(), input.size(), 0), std::ssize(input));
  put(files);
  const base::UnitCloser one(base::unit(1)), two(base::unit(2));
  terminal::clearhist();
  action();
  std::fflush(stdout);
  return content_of("/dev/fd/1");
}

}  // namespace tests
