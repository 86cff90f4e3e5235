#include "base/fatal.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

namespace base {
namespace {

std::string demangled(const char* symbol) {
  int status = -1;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(symbol, nullptr, nullptr, &status), &std::free);
  return status == 0 ? name.get() : symbol;
}

// The frames that lie in this program, innermost first. Frames of libraries
// say nothing to a reader of the report.
std::string own_calls(void* const* frames, int count) {
  Dl_info program{};
  if (dladdr(reinterpret_cast<void*>(&run), &program) == 0) return {};
  std::string calls;
  for (int i = 0; i < count; ++i) {
    Dl_info frame{};
    if (dladdr(frames[i], &frame) == 0 || frame.dli_fbase != program.dli_fbase)
      continue;
    calls += "  ";
    if (frame.dli_sname != nullptr) {
      calls += demangled(frame.dli_sname);
    } else {
      // A local function: its offset, for addr2line.
      const auto offset = reinterpret_cast<std::uintptr_t>(frames[i]) -
                          reinterpret_cast<std::uintptr_t>(frame.dli_fbase);
      constexpr std::string_view kHex = "0123456789abcdef";
      std::string digits;
      for (auto rest = offset; rest != 0; rest /= 16) {
        digits.insert(digits.begin(), kHex[rest % 16]);
      }
      calls += "+0x" + digits;
    }
    calls += '\n';
  }
  return calls;
}

// Nothing can be done about a closed or full standard output or error here.
void write_if_possible(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(fd, text.data(), text.size());
    if (written <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void report(const std::string& text) {
  if (isatty(STDOUT_FILENO) != 0) {
    write_if_possible(STDOUT_FILENO, "\x1b[0m\n");
  }
  write_if_possible(STDERR_FILENO, text);
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

std::string FatalEnd::report() const {
  std::string text = std::string("At ") + at_.file_name() + ":" +
                     std::to_string(at_.line()) + "\nFatal error: " + cause_ +
                     "\n";
  if (!advice_.empty()) text += advice_ + "\n";
  const std::string calls = own_calls(frames_.data(), frame_count_);
  if (!calls.empty()) text += "Called from:\n" + calls;
  return text;
}

void fatal(std::string cause, std::string advice, SourcePosition at) {
  throw FatalEnd(std::move(cause), std::move(advice), at);
}

int run(void (*program)()) {
  occupy_standard_channels();
  try {
    program();
    return 0;
  } catch (const FatalEnd& end) {
    report(end.report());
  } catch (const std::exception& other) {
    report(std::string("Fatal error: ") + other.what() + "\n");
  }
  return kFatalStatus;
}

}  // namespace base
