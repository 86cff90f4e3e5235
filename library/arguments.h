// What callers hand in, looked at before it is used.

#ifndef LIBRARY_ARGUMENTS_H_
#define LIBRARY_ARGUMENTS_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "library/errors.h"
#include "library/handles.h"
#include "physics/formula.h"

namespace library {

// The object behind a handle. This and all others throw Failure.
template <typename T>
T& object(T* handle, std::uint64_t kind, const char* name,
          std::size_t position = 0) {
  const bool aligned = reinterpret_cast<std::uintptr_t>(handle) %
                           alignof(std::remove_const_t<T>) ==
                       0;
  if (handle == nullptr) {
    throw Failure(ATTENUATE_HANDLE, std::string("the ") + name + " is NULL",
                  position);
  }
  if (!aligned || handle->kind != kind) {
    throw Failure(ATTENUATE_HANDLE,
                  std::string("this is no ") + name + ", or was freed",
                  position);
  }
  return *handle;
}
// position  subscript of the layer, for the error
inline const attenuate_material& material_of(const attenuate_material* handle,
                                             std::size_t position = 0) {
  return object(handle, kMaterial, "material", position);
}
inline const attenuate_stack& stack_of(const attenuate_stack* handle) {
  return object(handle, kStack, "stack");
}

template <typename T>
T& receiver(T* pointer) {
  require(pointer != nullptr, ATTENUATE_ARGUMENT, "no place for the result");
  return *pointer;
}

// Errors quote what is read: only text gets that far.
inline std::string_view text_of(const char* text) {
  require(text != nullptr, ATTENUATE_ARGUMENT, "the text is NULL");
  physics::check_text(text);
  return text;
}

template <typename T>
std::span<T> array(T* values, std::size_t n) {
  require(values != nullptr || n == 0, ATTENUATE_ARGUMENT,
          "an array is NULL and its length is not 0");
  return {values, n};
}

}  // namespace library

#endif  // LIBRARY_ARGUMENTS_H_
