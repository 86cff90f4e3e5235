#include "base/reader.h"

#include <array>
#include <cerrno>
#include <cstring>

#include "base/descriptor.h"
#include "base/fatal.h"

namespace base {
namespace {

// Room for a whole data file in a few reads.
constexpr std::size_t kBufferSize = std::size_t{64} * 1024;

std::string_view without_cr(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

void FileReader::start(int fd, std::string name) {
  fd_ = fd;
  name_ = std::move(name);
  begin_ = end_ = 0;
}

bool FileReader::refill() {
  if (buffer_.empty()) buffer_.resize(kBufferSize);
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  const ssize_t got =
      read_some(fd_, {buffer_.data() + end_, buffer_.size() - end_});
  if (got < 0) {
    fatal("Cannot read file '" + name_ + "': " + std::strerror(errno));
  }
  end_ += static_cast<std::size_t>(got);
  return got > 0;
}

std::optional<std::string_view> FileReader::next() {
  std::size_t searched = 0;
  for (;;) {
    const std::string_view held = unread();
    const auto length = held.find('\n', searched);
    if (length != held.npos) {
      begin_ += length + 1;
      return without_cr(held.substr(0, length));
    }
    searched = held.size();
    if (held.size() == kBufferSize) break;
    if (refill()) continue;
    if (held.empty()) return std::nullopt;
    begin_ = end_;
    return std::string_view(buffer_.data(), held.size());
  }
  // The line fills the buffer: keep its beginning, pass over the rest.
  long_line_.assign(buffer_.data(), kLongestLine);
  for (;;) {
    begin_ = end_;
    if (!refill()) return long_line_;
    if (const auto rest = unread().find('\n'); rest != std::string::npos) {
      begin_ += rest + 1;
      return long_line_;
    }
  }
}

void FileReader::skip_to(int column, std::string_view text) {
  const auto before = static_cast<std::size_t>(column - 1);
  while (!text.empty()) {
    const std::string_view held = unread();
    for (auto at = held.find(text); at != held.npos;
         at = held.find(text, at + 1)) {
      const std::size_t line = held.rfind('\n', at) + 1;
      if (at - line == before) {
        begin_ += line;
        return;
      }
    }
    begin_ += held.rfind('\n') + 1;  // keeps the unfinished line
    if (end_ - begin_ == kBufferSize || !refill()) return;
  }
}

int ByteReader::byte() {
  std::array<char, 1> byte{};
  if (read_some(fd_, byte) <= 0) return -1;
  const int value = static_cast<unsigned char>(byte[0]);
  return translation_ == nullptr ? value : translation_(value);
}

std::optional<std::string_view> ByteReader::next() {
  line_.clear();
  int c = byte();
  if (c < 0) return std::nullopt;
  for (int read = 1; c >= 0 && c != '\n'; ++read, c = byte()) {
    if (line_.size() < kLongestLine) line_ += static_cast<char>(c);
    if (read == kEndlessLine) {
      fatal("Endless line on standard input",
            "the input is no text: give it lines of answers");
    }
  }
  return without_cr(line_);
}

}  // namespace base
