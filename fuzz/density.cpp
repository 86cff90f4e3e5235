// Density files, with the keys for their menu.

#include "attenuation/elementdensity.h"
#include "fuzz/workspace.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  const auto [file, keys] = fuzz::file_and_keys(fuzz::text_of(data, size));
  fuzz::provide("dichte.dat", file);
  fuzz::run(keys, [] { attenuation::elementdensity(26); });
  return 0;
}
