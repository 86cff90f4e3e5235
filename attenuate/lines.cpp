#include "attenuate/lines.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "physics/errors.h"

namespace attenuate {
namespace {

constexpr std::size_t kChunk = 1 << 16;

[[noreturn]] void refuse(const std::string& file) {
  throw physics::InputError(
      "'" + file + "' cannot be read: " + std::strerror(errno), 0);
}

}  // namespace

Lines::Lines(const std::string& file, std::function<void()> before_waiting)
    : file_(file), before_waiting_(std::move(before_waiting)), buffer_(kChunk) {
  descriptor_ =
      file == "-" ? STDIN_FILENO : ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor_ < 0) refuse(file);
}

Lines::~Lines() {
  if (descriptor_ > STDIN_FILENO) ::close(descriptor_);
}

bool Lines::fill() {
  if (begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == buffer_.size()) buffer_.resize(2 * buffer_.size());
  pollfd waiting{descriptor_, POLLIN, 0};
  if (::poll(&waiting, 1, 0) == 0) before_waiting_();
  ssize_t count = 0;
  do {
    count = ::read(descriptor_, buffer_.data() + end_, buffer_.size() - end_);
  } while (count < 0 && errno == EINTR);
  if (count < 0) refuse(file_);
  end_ += static_cast<std::size_t>(count);
  return count > 0;
}

std::optional<std::string_view> Lines::next(std::size_t most) {
  std::size_t searched = 0;
  while (true) {
    const char* const begin = buffer_.data() + begin_;
    const auto* end = static_cast<const char*>(
        std::memchr(begin + searched, '\n', end_ - begin_ - searched));
    if (end != nullptr) {
      const auto length = static_cast<std::size_t>(end - begin);
      begin_ += length + 1;
      return std::string_view(begin, std::min(length, most + 1));
    }
    // Of a line that is too long only the beginning is kept.
    end_ = std::min(end_, begin_ + most + 1);
    searched = end_ - begin_;
    if (fill()) continue;
    if (begin_ == end_) return std::nullopt;
    const std::string_view line(buffer_.data() + begin_, end_ - begin_);
    begin_ = end_;
    return line;
  }
}

}  // namespace attenuate
