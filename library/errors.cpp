#include "library/errors.h"

#include <algorithm>
#include <cstring>

#include "base/fatal.h"

namespace library {

void copy_text(const char* text, char* to, std::size_t size) noexcept {
  if (size == 0) return;
  std::size_t length = std::strlen(text);
  if (length >= size) {
    length = size - 1;
    // Back to the first byte of a character.
    while (length > 0 && (text[length] & 0xc0) == 0x80) --length;
  }
  std::memcpy(to, text, length);
  to[length] = '\0';
}

attenuate_status report(attenuate_error* error, attenuate_status status,
                        const char* message, const char* hint,
                        std::size_t position, int column) noexcept {
  if (error == nullptr) return status;
  error->status = status;
  error->column = column;
  error->position = position;
  copy_text(message, error->message, sizeof error->message);
  copy_text(hint, error->hint, sizeof error->hint);
  // Of all that steers a terminal, a text that is quoted may hold tabs.
  for (char* text : {error->message, error->hint})
    std::replace(text, text + std::strlen(text), '\t', ' ');
  return status;
}

attenuate_status report_exception(attenuate_error* error) noexcept {
  try {
    throw;
  } catch (const Failure& e) {
    return report(error, e.status(), e.what(), e.hint().c_str(), e.position());
  } catch (const physics::InputError& e) {
    return report(error, ATTENUATE_INPUT, e.what(), e.hint().c_str(), 0,
                  e.column());
  } catch (const physics::OutsideTable& e) {
    return report(error, ATTENUATE_OUTSIDE, e.what());
  } catch (const std::bad_alloc&) {
    return report(error, ATTENUATE_MEMORY, "out of memory");
  } catch (const base::FatalEnd& e) {
    return report(error, ATTENUATE_INTERNAL, e.what());
  } catch (const std::exception& e) {
    return report(error, ATTENUATE_INTERNAL, e.what());
  } catch (...) {
    return report(error, ATTENUATE_INTERNAL, "unknown fault");
  }
}

}  // namespace library
