#include "base/unit.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "base/fatal.h"

namespace base {
namespace {

// Room for a whole data file in a few reads.
constexpr std::size_t kBufferSize = std::size_t{64} * 1024;

std::string working_directory() {
  std::array<char, 4096> path{};
  return getcwd(path.data(), path.size()) != nullptr ? path.data() : ".";
}

std::string where_looked(const std::string& file) {
  if (file.starts_with('/')) return {};
  return "looked in " + working_directory() +
         ": start the program in the directory that holds its data files";
}

int open_regular(const std::string& file) {
  // Without O_NONBLOCK a FIFO of that name would wait for a writer.
  const int fd = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return -1;
  struct stat status {};
  if (fstat(fd, &status) == 0 && S_ISREG(status.st_mode)) return fd;
  ::close(fd);
  errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  return -1;
}

void wait_until(int fd, short events) {
  pollfd request{fd, events, 0};
  ::poll(&request, 1, -1);
}

// While Readline reads, the terminal does not turn RET into a line end; what
// was typed ahead then arrives here as it was typed.
bool is_untranslated_return(int fd, char byte) {
  termios settings{};
  return byte == '\r' && tcgetattr(fd, &settings) == 0 &&
         (settings.c_iflag & ICRNL) != 0;
}

}  // namespace

Unit::Unit(int number, int fd) : number_(number), fd_(fd) {}

Unit::~Unit() { close(); }

void Unit::open(std::string_view file, SourcePosition at) {
  if (try_open(file)) return;
  const int error = errno;
  throw FatalEnd("Cannot open file '" + file_ + "': " + std::strerror(error),
                 where_looked(file_), at);
}

bool Unit::try_open(std::string_view file) {
  close();
  file_ = trimmed(file);
  fd_ = open_regular(file_);
  return fd_ >= 0;
}

void Unit::create(std::string_view file, SourcePosition at) {
  close();
  file_ = trimmed(file);
  fd_ = ::open(file_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (fd_ < 0) {
    throw FatalEnd("Cannot write file '" + file_ + "': " + std::strerror(errno),
                   {}, at);
  }
}

void Unit::rewind() {
  lseek(fd_, 0, SEEK_SET);
  begin_ = end_ = 0;
}

void Unit::close() {
  if (permanent() || fd_ < 0) return;
  ::close(fd_);
  fd_ = -1;
  begin_ = end_ = 0;
}

std::size_t Unit::read_some(char* into, std::size_t room) {
  for (;;) {
    const ssize_t got = ::read(fd_, into, room);
    if (got >= 0) return static_cast<std::size_t>(got);
    if (errno == EINTR) continue;
    if (errno == EAGAIN) {
      wait_until(fd_, POLLIN);
      continue;
    }
    // A terminal that is gone reads as an error; nothing more will come.
    if (permanent()) return 0;
    fatal("Cannot read file '" + file_ + "': " + std::strerror(errno));
  }
}

int Unit::read_byte() {
  char byte = 0;
  if (read_some(&byte, 1) == 0) return -1;
  if (is_untranslated_return(fd_, byte)) return '\n';
  return static_cast<unsigned char>(byte);
}

bool Unit::refill() {
  if (buffer_.empty()) buffer_.resize(kBufferSize);
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  const std::size_t got =
      read_some(buffer_.data() + end_, buffer_.size() - end_);
  end_ += got;
  return got > 0;
}

std::optional<std::string_view> Unit::next_line() {
  return number_ == kTerminalInput ? next_typed_line() : next_buffered_line();
}

std::optional<std::string_view> Unit::next_buffered_line() {
  std::size_t searched = 0;
  for (;;) {
    const char* const start = buffer_.data() + begin_;
    const std::size_t held = end_ - begin_;
    const void* const found =
        held == searched ? nullptr
                         : std::memchr(start + searched, '\n', held - searched);
    if (found != nullptr) {
      std::string_view line(
          start,
          static_cast<std::size_t>(static_cast<const char*>(found) - start));
      begin_ += line.size() + 1;
      if (line.ends_with('\r')) line.remove_suffix(1);
      return line;
    }
    searched = held;
    if (held == kBufferSize) break;
    if (refill()) continue;
    if (held == 0) return std::nullopt;
    begin_ = end_;
    return std::string_view(buffer_.data(), held);
  }
  // The line fills the buffer: keep its beginning, pass over the rest.
  long_line_.assign(buffer_.data(), kLongestLine);
  for (begin_ = end_;;) {
    if (begin_ == end_ && !refill()) return long_line_;
    const void* const found =
        std::memchr(buffer_.data() + begin_, '\n', end_ - begin_);
    if (found != nullptr) {
      begin_ = static_cast<std::size_t>(static_cast<const char*>(found) -
                                        buffer_.data()) +
               1;
      return long_line_;
    }
    begin_ = end_;
  }
}

void Unit::skip_to(int column, std::string_view text) {
  const auto before = static_cast<std::size_t>(column - 1);
  while (!text.empty()) {
    const char* const start = buffer_.data() + begin_;
    const std::string_view unread(start, end_ - begin_);
    // The last character of a name is seldom among the figures of a data file.
    for (std::size_t at = before + text.size() - 1;
         (at = unread.find(text.back(), at)) != unread.npos; ++at) {
      const std::size_t begin = at + 1 - text.size();
      const std::size_t line = begin - before;
      if ((line == 0 || unread[line - 1] == '\n') &&
          unread.substr(begin, text.size()) == text &&
          unread.substr(line, before).find('\n') == unread.npos) {
        begin_ += line;
        return;
      }
    }
    begin_ += unread.rfind('\n') + 1;  // keeps the unfinished line
    if (end_ - begin_ == kBufferSize || !refill()) return;
  }
}

std::optional<std::string_view> Unit::next_typed_line() {
  if (buffer_.empty()) buffer_.resize(kLongestLine);
  std::size_t length = 0;
  for (int read = 1;; ++read) {
    const int byte = read_byte();
    if (byte < 0 && length == 0) return std::nullopt;
    if (byte < 0 || byte == '\n') break;
    if (length < buffer_.size()) buffer_[length++] = static_cast<char>(byte);
    if (read == kEndlessLine) {
      fatal("Endless line on standard input",
            "the input is no text: give it lines of answers");
    }
  }
  std::string_view line(buffer_.data(), length);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

void Unit::write(std::string_view record) {
  std::string line(record);
  line += '\n';
  std::string_view rest = line;
  while (!rest.empty()) {
    const ssize_t written = ::write(fd_, rest.data(), rest.size());
    if (written >= 0) {
      rest.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      wait_until(fd_, POLLOUT);
    } else if (errno != EINTR) {
      const int error = errno;
      fatal("Cannot write to " +
            (number_ == kTerminalOutput ? std::string("standard output")
                                        : "file '" + file_ + "'") +
            ": " + std::strerror(error));
    }
  }
}

void Unit::end_of_file(SourcePosition at) const {
  if (permanent()) throw EndOfFile("end of input", {}, at);
  std::string advice = "the file is shorter than it should be";
  if (const std::string where = where_looked(file_); !where.empty()) {
    advice += " (" + where + ")";
  }
  throw EndOfFile("End of file in '" + file_ + "'", std::move(advice), at);
}

Unit& unit(int number) {
  static std::array<Unit, 6> units{Unit(1),
                                   Unit(2),
                                   Unit(3),
                                   Unit(kTerminalInput, STDIN_FILENO),
                                   Unit(kTerminalOutput, STDOUT_FILENO),
                                   Unit(kScriptUnit)};
  switch (number) {
    case 1:
    case 2:
    case 3:
      return units[static_cast<std::size_t>(number - 1)];
    case kTerminalInput:
      return units[3];
    case kTerminalOutput:
      return units[4];
    case kScriptUnit:
      return units[5];
    default:
      throw RangeError("No file unit has the number " + std::to_string(number));
  }
}

}  // namespace base
