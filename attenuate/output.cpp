#include "attenuate/output.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string>

namespace attenuate {

void Output::text(std::string_view text) {
  while (!text.empty()) {
    if (used_ == kSize) flush();
    const std::size_t count = std::min(text.size(), kSize - used_);
    std::memcpy(&buffer_[used_], text.data(), count);
    used_ += count;
    text.remove_prefix(count);
  }
}

void Output::count(std::size_t value) {
  std::array<char, 20> digits{};
  char* const end = digits.data() + digits.size();
  char* at = end;
  do {
    *--at = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value > 0);
  text({at, static_cast<std::size_t>(end - at)});
}

void Output::flush() {
  std::size_t done = 0;
  while (done < used_) {
    const ssize_t count = ::write(descriptor_, &buffer_[done], used_ - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      used_ = 0;
      throw WriteError(std::string("the answer cannot be written: ") +
                       std::strerror(errno));
    }
    done += static_cast<std::size_t>(count);
  }
  used_ = 0;
}

std::string field(const std::string& text, char separator) {
  const char* const several = separator == ',' ? ",\"" : "\t";
  if (text.find_first_of(several) == text.npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + "\"";
}

}  // namespace attenuate
