// One buffered writer to a file descriptor.

#ifndef ATTENUATE_OUTPUT_H_
#define ATTENUATE_OUTPUT_H_

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "attenuate/number.h"

namespace attenuate {

// What was written did not arrive: disk full, reader gone.
class WriteError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Output {
 public:
  explicit Output(int descriptor) : descriptor_(descriptor) {}

  void text(std::string_view text);
  void character(char c) {
    if (used_ == kSize) flush();
    buffer_[used_++] = c;
  }
  void number(double value, int digits) {
    if (kSize - used_ < kNumberSize) flush();
    char* const at = &buffer_[used_];
    used_ += static_cast<std::size_t>(append_number(at, value, digits) - at);
  }

  void count(std::size_t value);

  // Throws WriteError, as do the others when the buffer is full.
  void flush();

 private:
  static constexpr std::size_t kSize = 1 << 16;

  int descriptor_;
  std::size_t used_ = 0;
  // Not cleared: a short answer touches only the pages that it needs.
  std::unique_ptr<char[]> buffer_{new char[kSize]};
};

// `text` as a field between separators: in quotes where it could be taken for
// several.
std::string field(const std::string& text, char separator);

}  // namespace attenuate

#endif  // ATTENUATE_OUTPUT_H_
