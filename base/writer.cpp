#include "base/writer.h"

#include <cerrno>
#include <cstring>

#include "base/descriptor.h"
#include "base/fatal.h"

namespace base {

void Writer::write(std::string_view record) const {
  if (write_all(fd_, std::string(record) + '\n')) return;
  const std::string reason = std::strerror(errno);
  fatal("Cannot write to " + name_ + ": " + reason);
}

}  // namespace base
