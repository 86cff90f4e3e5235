// Element lists, each used for a whole session.

#include "attenuation/dialogue.h"
#include "fuzz/workspace.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  fuzz::provide("elements.dat", fuzz::text_of(data, size));
  fuzz::run("5 ES\n\nFe\n\n\n\n\n\nn\n\n", attenuation::dialogue);
  fuzz::run("6 m\n\n\n\n\nn\n\n", attenuation::dialogue);
  return 0;
}
