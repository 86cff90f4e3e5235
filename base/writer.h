// Writes records.

#ifndef BASE_WRITER_H_
#define BASE_WRITER_H_

#include <string>
#include <string_view>

namespace base {

class Writer {
 public:
  // name  of the file, for messages
  Writer(int fd, std::string name) : fd_(fd), name_(std::move(name)) {}

  // Writes one record, its line end included, in a single call. Fatal: it
  // cannot be written.
  void write(std::string_view record) const;

 private:
  int fd_;
  std::string name_;
};

}  // namespace base

#endif  // BASE_WRITER_H_
