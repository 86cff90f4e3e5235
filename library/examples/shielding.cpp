// How much lead takes the lines of a source down to a thousandth, in C++: the
// handles free themselves, and errors are exceptions.

#include <attenuate.h>

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Material =
    std::unique_ptr<attenuate_material, decltype(&attenuate_material_free)>;
using Stack = std::unique_ptr<attenuate_stack, decltype(&attenuate_stack_free)>;

// Calls a function with `arguments` and a place for the error.
template <typename Function, typename... Arguments>
void call(Function function, Arguments... arguments) {
  attenuate_error error;
  if (function(arguments..., &error) != ATTENUATE_OK) {
    throw std::runtime_error(error.message);
  }
}

Material material(const std::string& text) {
  attenuate_material* made = nullptr;
  call(attenuate_material_new, text.c_str(), 0.0, &made);
  return {made, attenuate_material_free};
}

Stack stack(const std::vector<attenuate_layer>& layers) {
  attenuate_stack* made = nullptr;
  call(attenuate_stack_new, layers.data(), layers.size(), &made);
  return {made, attenuate_stack_free};
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const char* const source = argc > 1 ? argv[1] : "57Co";
    std::size_t n = 0;
    call(attenuate_source, source, nullptr, nullptr, 0, &n);
    std::vector<double> keV(n), intensity(n);
    call(attenuate_source, source, keV.data(), intensity.data(), n, &n);

    const Material lead = material("lead");
    double density = 0.0, g_cm2 = 0.0;
    call(attenuate_density, lead.get(), &density);
    call(attenuate_thickness, stack({{lead.get(), 0.0}}).get(), 0, 1e-3,
         keV.data(), intensity.data(), n, ATTENUATE_BY_PHOTONS, &g_cm2);
    std::printf("%s behind lead: T = 0.001 at %.2f mm\n", source,
                10 * g_cm2 / density);
  } catch (const std::runtime_error& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
