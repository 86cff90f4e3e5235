// Lines of a file of any length.

#ifndef ATTENUATE_LINES_H_
#define ATTENUATE_LINES_H_

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace attenuate {

class Lines {
 public:
  // `file` "-" is standard input. `before_waiting` is called when no input is
  // there yet. Throws physics::InputError: the file cannot be opened.
  Lines(const std::string& file, std::function<void()> before_waiting);
  ~Lines();
  Lines(const Lines&) = delete;
  Lines& operator=(const Lines&) = delete;

  // The next line without its end, valid until the next call; nothing at the
  // end of the file. Of a line longer than `most` bytes its first most + 1.
  // Throws physics::InputError: the file cannot be read.
  std::optional<std::string_view> next(std::size_t most);

 private:
  // Reads on; false at the end of the file.
  bool fill();

  std::string file_;
  std::function<void()> before_waiting_;
  int descriptor_ = -1;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // of what has not been handed out
  std::size_t end_ = 0;
};

}  // namespace attenuate

#endif  // ATTENUATE_LINES_H_
