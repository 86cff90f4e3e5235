#include "base/descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace base {
namespace {

void wait_until(int fd, short events) {
  pollfd request{fd, events, 0};
  ::poll(&request, 1, -1);
}

}  // namespace

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

ssize_t read_some(int fd, std::span<char> into) {
  for (;;) {
    const ssize_t got = ::read(fd, into.data(), into.size());
    if (got < 0 && errno == EAGAIN) {
      wait_until(fd, POLLIN);
    } else if (got >= 0 || errno != EINTR) {
      return got;
    }
  }
}

bool write_all(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(fd, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      wait_until(fd, POLLOUT);
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace base
