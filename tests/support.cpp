#include "tests/support.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "base/unit.h"
#include "terminal/readaline.h"

namespace tests {
namespace {

// A file in place of standard input or output, in the life of its owner.
class Channel {
 public:
  Channel(int fd, std::string_view content)
      : fd_(fd), before_(fcntl(fd, F_DUPFD_CLOEXEC, 3)) {
    const int file = memfd_create("channel", MFD_CLOEXEC);
    EXPECT_EQ(pwrite(file, content.data(), content.size(), 0),
              static_cast<ssize_t>(content.size()));
    replace_by(file);
  }
  ~Channel() { replace_by(before_); }
  Channel(const Channel&) = delete;

  std::string content() const {
    return content_of("/dev/fd/" + std::to_string(fd_));
  }

 private:
  void replace_by(int other) const {
    std::fflush(stdout);
    dup2(other, fd_);
    close(other);
  }

  const int fd_, before_;
};

}  // namespace

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

std::vector<Words> table(const std::string& text) {
  std::vector<Words> rows;
  for (const auto& row : split(text, '|')) rows.push_back(split(row, ','));
  return rows;
}

std::string typed(std::string keys) {
  std::replace(keys.begin(), keys.end(), '/', '\n');
  return keys;
}

std::string content_of(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
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
  const Channel in(STDIN_FILENO, input), out(STDOUT_FILENO, "");
  const base::UnitCloser one(base::unit(1)), two(base::unit(2));
  terminal::clearhist();
  action();
  std::fflush(stdout);
  return out.content();
}

}  // namespace tests
