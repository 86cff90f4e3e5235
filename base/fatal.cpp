#include "base/fatal.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "base/descriptor.h"
#include "base/harmless.h"

namespace base {
namespace {

// The name of a function without its arguments, which would bury it.
std::string function_name(const char* symbol) {
  int status = -1;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(symbol, nullptr, nullptr, &status), &std::free);
  if (status != 0) return symbol;
  const std::string_view full = name.get();
  return std::string(full.substr(0, full.find('(')));
}

// Where a local function lies in the program, for addr2line.
std::string offset_in(const Dl_info& program, const void* address) {
  std::array<char, 20> digits{};
  const auto offset = static_cast<const char*>(address) -
                      static_cast<const char*>(program.dli_fbase);
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), offset, 16);
  return "+0x" + std::string(digits.data(), end.ptr);
}

// The calls that lie in this program, innermost first; with `all` also those
// that have no name. Those of libraries and of the fatal end itself say nothing
// to a reader of the report.
std::string own_calls(void* const* frames, int count, bool all) {
  Dl_info program{};
  if (dladdr(reinterpret_cast<void*>(&run), &program) == 0) return {};
  std::string calls;
  for (int i = 0; i < count; ++i) {
    Dl_info frame{};
    if (dladdr(frames[i], &frame) == 0 || frame.dli_fbase != program.dli_fbase)
      continue;
    if (frame.dli_sname == nullptr && !all) continue;
    const std::string name = frame.dli_sname != nullptr
                                 ? function_name(frame.dli_sname)
                                 : offset_in(program, frames[i]);
    if (name.starts_with("base::FatalEnd") || name == "_start") continue;
    calls += "  " + name + "\n";
  }
  return calls;
}

// `text` in lines of at most `columns` columns, broken at blanks.
std::string wrapped(std::string_view text, int columns) {
  const auto room = static_cast<std::size_t>(std::max(columns, 20));
  std::string lines;
  while (text.size() > room) {
    std::size_t end = text.rfind(' ', room);
    if (end == text.npos || end == 0) end = std::min(text.find(' '), room);
    lines.append(text.substr(0, end)).append("\n");
    text.remove_prefix(std::min(end + (text[end] == ' ' ? 1 : 0), text.size()));
  }
  return lines.append(text).append("\n");
}

// Line by line to standard error. Names of files and what stands in them must
// not steer the terminal.
void tell(std::string_view text) {
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    // Nothing can be done about a closed or full standard error here.
    static_cast<void>(write_all(STDERR_FILENO, harmless(line) + "\n"));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
}

// A data file must not take the number of a standard channel that was closed
// before the start. Opened the wrong way round, the channel still fails when it
// is used.
void occupy_standard_channels() {
  const auto occupy = [](int fd, int mode) {
    if (fcntl(fd, F_GETFD) >= 0) return;
    // The lowest free number is `fd`, as those below are taken.
    static_cast<void>(open("/dev/null", mode));
  };
  occupy(STDIN_FILENO, O_WRONLY);
  occupy(STDOUT_FILENO, O_RDONLY);
  occupy(STDERR_FILENO, O_RDONLY);
}

}  // namespace

FatalEnd::FatalEnd(std::string cause, std::string advice, SourcePosition at)
    : cause_(std::move(cause)), advice_(std::move(advice)), at_(at) {
  frame_count_ = backtrace(frames_.data(), static_cast<int>(frames_.size()));
}

std::string FatalEnd::report(int columns) const {
  if (!brief_.empty()) return brief_ + "\n";
  const std::string cause = wrapped("Fatal error: " + cause_, columns);
  const std::string advice = advice_.empty() ? "" : wrapped(advice_, columns);
  std::string text = plain_cause() ? cause + advice : advice + cause;
  text += std::string("At ") + at_.file_name() + ":" +
          std::to_string(at_.line()) + "\n";
  const char* const trace = std::getenv("ATTENUATION_TRACE");
  const bool all = trace != nullptr && std::string_view(trace) == "1";
  const std::string calls = own_calls(frames_.data(), frame_count_, all);
  if (!calls.empty()) text += "Called from:\n" + calls;
  return text;
}

void fatal(std::string cause, std::string advice, SourcePosition at) {
  throw FatalEnd(std::move(cause), std::move(advice), at);
}

void note(const std::string& text) { tell("Note: " + text); }

int run(void (*program)(), int (*begin_report)()) {
  constexpr int kColumns = 80;
  occupy_standard_channels();
  const auto columns = [begin_report] {
    return begin_report != nullptr ? begin_report() : kColumns;
  };
  try {
    program();
    return 0;
  } catch (const FatalEnd& end) {
    tell(end.report(columns()));
  } catch (const std::exception& other) {
    tell(wrapped(std::string("Fatal error: ") + other.what(), columns()));
  }
  return kFatalStatus;
}

}  // namespace base
