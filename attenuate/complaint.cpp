#include "attenuate/complaint.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "base/harmless.h"

namespace attenuate {
namespace {

constexpr std::size_t kMostMessage = 300;
constexpr std::size_t kMostInput = 76;  // characters; with indent fits 80

// Where the characters of `text`, which is UTF-8, begin; one more for its end.
std::vector<std::size_t> starts_of(std::string_view text) {
  std::vector<std::size_t> starts;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
      starts.push_back(i);
    }
  }
  starts.push_back(text.size());
  return starts;
}

// A long message has a long word in it: beginning and end tell enough.
std::string shortened(std::string text) {
  if (text.size() <= kMostMessage) return text;
  const auto starts = starts_of(text);
  const std::size_t count = starts.size() - 1;
  if (count <= kMostMessage) return text;
  return text.substr(0, starts[kMostMessage / 2]) + "..." +
         text.substr(starts[count - kMostMessage / 2]);
}

// The input and the caret, with what is seen of a long input.
std::string marked(std::string_view typed, int column) {
  const std::string text = base::harmless(typed);
  const auto starts = starts_of(text);
  const std::size_t count = starts.size() - 1;
  const auto place = static_cast<std::size_t>(std::max(column, 1) - 1);
  const std::size_t most_first = count > kMostInput ? count - kMostInput : 0;
  const std::size_t first =
      std::min(place > kMostInput / 2 ? place - kMostInput / 2 : 0, most_first);
  const std::size_t last = std::min(count, first + kMostInput);
  std::string lines =
      "  " + text.substr(starts[first], starts[last] - starts[first]) + "\n";
  if (column > 0) {
    lines += "  " + std::string(std::min(place, count) - first, ' ') + "^\n";
  }
  return lines;
}

}  // namespace

std::string complaint(const physics::InputError& error, std::string_view typed,
                      std::string_view where) {
  std::string lines = "error: ";
  if (!where.empty()) lines += std::string(where) + ": ";
  lines += shortened(base::harmless(error.message())) + "\n";
  if (!typed.empty()) lines += marked(typed, error.column());
  if (!error.hint().empty()) {
    lines += "hint: " + shortened(base::harmless(error.hint())) + "\n";
  }
  return lines;
}

void complain(const std::string& complaint) {
  constexpr std::string_view kLabel = "error:";
  std::string text = complaint;
  const char* no_color = std::getenv("NO_COLOR");
  const bool plain = no_color != nullptr && *no_color != '\0';
  if (!plain && text.starts_with(kLabel) && ::isatty(STDERR_FILENO) == 1) {
    text = "\033[1;31merror:\033[0m" + text.substr(kLabel.size());
  }
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at < end) {
    const ssize_t count =
        ::write(STDERR_FILENO, at, static_cast<std::size_t>(end - at));
    if (count <= 0) return;  // nobody is there to be told
    at += count;
  }
}

}  // namespace attenuate
