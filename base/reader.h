// Readers of records.
//
// A record is a line. It ends in LF or CR LF; the last one needs no end.

#ifndef BASE_READER_H_
#define BASE_READER_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace base {

// Bytes that are kept of a longer line; no field of the program is wider.
inline constexpr int kLongestLine = 4096;
// What is typed or piped in without a line end for so long is no answer.
inline constexpr int kEndlessLine = 1 << 20;

// Reads a file in large pieces.
class FileReader {
 public:
  // Reads from `fd` on, which stays the caller's to close.
  // name  of the file, for messages
  void start(int fd, std::string name);

  // The next record, valid until the next call; nothing at the end of the file.
  // Fatal: the file cannot be read.
  std::optional<std::string_view> next();

  // Passes over records before the first that has `text` from column `column`
  // on, as far as the part of the file that is in memory shows them.
  void skip_to(int column, std::string_view text);

 private:
  bool refill();
  std::string_view unread() const {
    return {buffer_.data() + begin_, end_ - begin_};
  }

  int fd_ = -1;
  std::string name_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // unread part of buffer_
  std::size_t end_ = 0;
  std::string long_line_;
};

// Reads byte by byte and nothing ahead: what the dialogue did not ask for is
// there for whoever reads the same descriptor next.
class ByteReader {
 public:
  // What a byte that was read counts as.
  using Translation = int (*)(int byte);

  explicit ByteReader(int fd) : fd_(fd) {}

  void translate(Translation translation) { translation_ = translation; }

  // The next byte, 0..255, or -1 at the end. A terminal that is gone has ended.
  int byte();
  // The next record, valid until the next call; nothing at the end.
  // Fatal: there is no line end within 1 MiB.
  std::optional<std::string_view> next();

 private:
  int fd_;
  Translation translation_ = nullptr;
  std::string line_;
};

}  // namespace base

#endif  // BASE_READER_H_
