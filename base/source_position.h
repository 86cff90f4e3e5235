// Where in the source a check was called from.

#ifndef BASE_SOURCE_POSITION_H_
#define BASE_SOURCE_POSITION_H_

#include <version>

#ifdef __cpp_lib_source_location
#include <source_location>
#endif

namespace base {

#ifdef __cpp_lib_source_location

using SourcePosition = std::source_location;

#else

// clang 14 has the builtins of std::source_location but not the type.
class SourcePosition {
 public:
  static constexpr SourcePosition current(
      const char* file = __builtin_FILE(), unsigned line = __builtin_LINE(),
      const char* function = __builtin_FUNCTION()) {
    SourcePosition here;
    here.file_ = file;
    here.line_ = line;
    here.function_ = function;
    return here;
  }

  constexpr const char* file_name() const { return file_; }
  constexpr unsigned line() const { return line_; }
  constexpr const char* function_name() const { return function_; }

 private:
  const char* file_ = "";
  unsigned line_ = 0;
  const char* function_ = "";
};

#endif

}  // namespace base

#endif  // BASE_SOURCE_POSITION_H_
