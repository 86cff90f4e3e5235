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
    std::memmove(buffer_.data(), &buffer_[begin_], end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == buffer_.size()) buffer_.resize(2 * buffer_.size());
  pollfd waiting{descriptor_, POLLIN, 0};
  if (::poll(&waiting, 1, 0) == 0) before_waiting_();
  ssize_t count = 0;
  do {
    count = ::read(descriptor_, &buffer_[end_], buffer_.size() - end_);
  } while (count < 0 && errno == EINTR);
  if (count < 0) refuse(file_);
  end_ += static_cast<std::size_t>(count);
  return count > 0;
}

std::optional<std::string_view> Lines::next(std::size_t most) {
  std::size_t searched = 0;
  bool cut = false;
  while (true) {
    const char* const from = buffer_.data() + begin_ + searched;
    const auto* end = static_cast<const char*>(
        std::memchr(from, '\n', end_ - begin_ - searched));
    const std::size_t length =
        end != nullptr ? static_cast<std::size_t>(end - buffer_.data()) - begin_
                       : end_ - begin_;
    if (end != nullptr && !cut) {
      const std::string_view line(&buffer_[begin_], length);
      begin_ += length + 1;
      return line.substr(0, std::min(line.size(), most + 1));
    }
    if (end != nullptr) {
      // The rest of a line that was too long: its beginning stays in front.
      std::memmove(buffer_.data() + begin_ + length - (most + 1),
                   buffer_.data() + begin_, most + 1);
      const std::string_view line(&buffer_[begin_ + length - (most + 1)],
                                  most + 1);
      begin_ += length + 1;
      return line;
    }
    if (length > most) {
      // Only the beginning is kept.
      end_ = begin_ + most + 1;
      cut = true;
    }
    searched = end_ - begin_;
    if (!fill()) {
      if (begin_ == end_) return std::nullopt;
      const std::string_view line(&buffer_[begin_], end_ - begin_);
      begin_ = end_;
      return line;
    }
  }
}

}  // namespace attenuate
