// Help files through the browser, with the keys to walk on.

#include "fuzz/workspace.h"
#include "help/helproutine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  const auto [file, keys] = fuzz::file_and_keys(fuzz::text_of(data, size));
  fuzz::provide("attenuation.help", file);
  for (const char* key : {"/a", "/a*"}) {
    fuzz::run(keys, [key] { help::helproutine(key, "attenuation.help"); });
  }
  return 0;
}
