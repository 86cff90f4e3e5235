// Reading and writing descriptors that signals interrupt, or that others have
// set not to wait.

#ifndef BASE_DESCRIPTOR_H_
#define BASE_DESCRIPTOR_H_

#include <sys/types.h>

#include <span>
#include <string>
#include <string_view>

namespace base {

// Opens a regular file for reading; -1, with errno set, for anything else.
int open_regular(const std::string& file);

// What one read() gives: the bytes read, 0 at the end, -1 (errno) on an error.
ssize_t read_some(int fd, std::span<char> into);

// Writes all of `text`; false, with errno set, if that cannot be.
[[nodiscard]] bool write_all(int fd, std::string_view text);

}  // namespace base

#endif  // BASE_DESCRIPTOR_H_
