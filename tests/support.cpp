#include "tests/support.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

namespace tests {
namespace {

base::FatalEnd fatal_end_of(const std::function<void()>& action) {
  try {
    action();
  } catch (const base::FatalEnd& end) {
    return end;
  }
  ADD_FAILURE() << "no fatal end";
  return base::FatalEnd("");
}

// A descriptor that is another file for a while.
class Redirected {
 public:
  Redirected(int fd, std::FILE* file) : fd_(fd), before_(dup(fd)) {
    dup2(fileno(file), fd);
  }
  ~Redirected() {
    dup2(before_, fd_);
    close(before_);
  }
  Redirected(const Redirected&) = delete;
  Redirected& operator=(const Redirected&) = delete;

 private:
  int fd_;
  int before_;
};

}  // namespace

std::string cause_of(const std::function<void()>& action) {
  return fatal_end_of(action).cause();
}

std::string advice_of(const std::function<void()>& action) {
  return fatal_end_of(action).advice();
}

TemporaryDirectory::TemporaryDirectory() {
  path_ = std::filesystem::temp_directory_path() / "attenuation-XXXXXX";
  if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("mkdtemp");
}

TemporaryDirectory::~TemporaryDirectory() {
  std::filesystem::remove_all(path_);
}

std::string TemporaryDirectory::path(std::string_view file) const {
  return path_ + "/" + std::string(file);
}

void TemporaryDirectory::write(std::string_view file,
                               std::string_view content) const {
  std::ofstream(path(file), std::ios::binary) << content;
}

std::string content_of(const std::string& file) {
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return content.str();
}

WorkingDirectory::WorkingDirectory(const std::string& directory)
    : before_(std::filesystem::current_path()) {
  std::filesystem::current_path(directory);
}

WorkingDirectory::~WorkingDirectory() {
  std::filesystem::current_path(before_);
}

std::string output_of(std::string_view input,
                      const std::function<void()>& action) {
  const std::unique_ptr<std::FILE, decltype(&std::fclose)> in(std::tmpfile(),
                                                              &std::fclose);
  const std::unique_ptr<std::FILE, decltype(&std::fclose)> out(std::tmpfile(),
                                                               &std::fclose);
  std::fwrite(input.data(), 1, input.size(), in.get());
  std::rewind(in.get());
  std::fflush(stdout);
  {
    const Redirected standard_input(STDIN_FILENO, in.get());
    const Redirected standard_output(STDOUT_FILENO, out.get());
    action();
    std::fflush(stdout);
  }
  std::string written;
  std::rewind(out.get());
  for (int c = std::fgetc(out.get()); c != EOF; c = std::fgetc(out.get())) {
    written += static_cast<char>(c);
  }
  return written;
}

}  // namespace tests
