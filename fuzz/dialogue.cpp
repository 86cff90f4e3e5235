// Whole streams of keys through the dialogue, on the real data.

#include "attenuation/dialogue.h"

#include "fuzz/workspace.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  fuzz::run(fuzz::text_of(data, size), attenuation::dialogue);
  return 0;
}
