// From exceptions to status codes: nothing that is thrown gets past guarded().

#ifndef LIBRARY_ERRORS_H_
#define LIBRARY_ERRORS_H_

#include <cstddef>
#include <exception>
#include <new>
#include <string>
#include <utility>

#include "library/attenuate.h"
#include "physics/errors.h"

namespace library {

// What a caller did wrong, with the status that says so.
class Failure : public std::exception {
 public:
  Failure(attenuate_status status, std::string message,
          std::size_t position = 0, std::string hint = {})
      : status_(status),
        position_(position),
        message_(std::move(message)),
        hint_(std::move(hint)) {}

  attenuate_status status() const { return status_; }
  std::size_t position() const { return position_; }
  const char* what() const noexcept override { return message_.c_str(); }
  const std::string& hint() const { return hint_; }

 private:
  attenuate_status status_;
  std::size_t position_;
  std::string message_, hint_;
};

// Fills `error`, which may be null, and returns `status`.
attenuate_status report(attenuate_error* error, attenuate_status status,
                        const char* message = "", const char* hint = "",
                        std::size_t position = 0, int column = 0) noexcept;

// What the exception that is being handled means.
attenuate_status report_exception(attenuate_error* error) noexcept;

template <typename Action>
attenuate_status guarded(attenuate_error* error, Action action) noexcept {
  try {
    action();
    return report(error, ATTENUATE_OK);
  } catch (...) {
    return report_exception(error);
  }
}

// Copies `text` with a 0 behind it, cut between characters where it is too
// long; nothing where `size` is 0.
void copy_text(const char* text, char* to, std::size_t size) noexcept;

// Throws Failure.
inline void require(bool good, attenuate_status status, const char* message) {
  if (!good) throw Failure(status, message);
}

}  // namespace library

#endif  // LIBRARY_ERRORS_H_
