// Coefficient blocks: two bytes of energy, then the file.

#include "attenuation/coefficientfile.h"
#include "fuzz/workspace.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  if (size < 2) return 0;
  fuzz::provide("attenuation.coefficients", fuzz::text_of(data + 2, size - 2));
  const float energy = static_cast<float>(data[0] * 256 + data[1]) / 4.0F;
  fuzz::run("", [energy] {
    base::Text<16> element;
    float atc = 0.0F;
    attenuation::find_element("Iron", element);
    attenuation::attenuation_of("Iron", energy, atc);
  });
  return 0;
}
