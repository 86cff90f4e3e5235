// The C interface with whatever a caller can get wrong: texts, numbers,
// lengths, handles. A status is as good as any; a crash, an unterminated text
// or a result beside a status is a finding.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "library/attenuate.h"

namespace {

void require(bool so) {
  if (!so) std::abort();
}

// Takes values off the front of the input; zeros where that has ended.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : data_(data), left_(size) {}

  template <typename T>
  T next() {
    T value{};
    const std::size_t n = std::min(sizeof value, left_);
    std::memcpy(&value, data_, n);
    data_ += n;
    left_ -= n;
    return value;
  }
  // Up to the next 0.
  std::string text() {
    const auto* end = std::find(data_, data_ + left_, 0);
    std::string result(data_, end);
    left_ -= result.size() + (end == data_ + left_ ? 0 : 1);
    data_ = end + (left_ == 0 ? 0 : 1);
    return result;
  }

 private:
  const std::uint8_t* data_;
  std::size_t left_;
};

bool ends(const char* text) {
  return std::memchr(text, 0, ATTENUATE_MESSAGE_SIZE) != nullptr;
}

// What every call comes to.
attenuate_status checked(attenuate_status status,
                         const attenuate_error& error) {
  require(status == error.status && status != ATTENUATE_INTERNAL);
  require(ends(error.message) && ends(error.hint));
  require((status == ATTENUATE_OK) == (error.message[0] == '\0'));
  return status;
}

void evaluate(const attenuate_material* material, const attenuate_stack* stack,
              Input& input) {
  attenuate_error error;
  std::vector<double> keV(input.next<std::uint8_t>() % 70), values(keV.size());
  const bool any = input.next<std::uint8_t>() % 2 == 0;
  for (double& energy : keV) {
    energy = any ? input.next<double>() : 1.0 + input.next<std::uint16_t>();
  }
  const std::size_t n = keV.size();
  const auto good = [&](attenuate_status status) {
    if (checked(status, error) != ATTENUATE_OK) return;
    for (const double value : values) require(value >= 0);
  };
  good(attenuate_mu_rho(material, keV.data(), values.data(), n, &error));
  good(attenuate_mu_en_rho(material, keV.data(), values.data(), n, &error));
  good(attenuate_mu(material, keV.data(), values.data(), n, &error));
  good(attenuate_uncertainty(material, keV.data(), values.data(), n, &error));
  good(attenuate_mu_x(stack, keV.data(), values.data(), n, &error));
  good(attenuate_transmission(stack, keV.data(), values.data(), n, &error));
  const double wanted = input.next<double>();
  const int weighting = input.next<std::uint8_t>() % 3;
  for (double& weight : values) weight = input.next<double>();
  double one = 0;
  checked(attenuate_beam_transmission(stack, keV.data(), values.data(), n,
                                      weighting, &one, &error),
          error);
  checked(attenuate_thickness(stack, input.next<std::uint8_t>() % 3, wanted,
                              keV.data(), values.data(), n, weighting, &one,
                              &error),
          error);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  Input input(data, size);
  attenuate_error error;
  attenuate_material* material = nullptr;
  attenuate_stack* stack = nullptr;
  const std::string formula = input.text(), thickness = input.text();
  const double density =
      input.next<std::uint8_t>() % 2 == 0 ? 0.0 : input.next<double>();
  checked(attenuate_material_new(formula.c_str(), density, &material, &error),
          error);
  double g_cm2 = input.next<double>();
  checked(attenuate_areal_mass(material, thickness.c_str(), &g_cm2, &error),
          error);
  const attenuate_layer layers[] = {{material, g_cm2},
                                    {material, input.next<double>()}};
  checked(attenuate_stack_new(layers, 2, &stack, &error), error);
  evaluate(material, stack, input);

  // A handle of the wrong kind, or none.
  evaluate(reinterpret_cast<attenuate_material*>(stack),
           reinterpret_cast<attenuate_stack*>(material), input);
  char text[9];
  std::size_t needed = 0;
  const std::size_t room = input.next<std::uint8_t>() % sizeof text;
  const auto status = attenuate_material_text(
      material, input.next<std::uint8_t>() % 5, text, room, &needed, &error);
  if (checked(status, error) == ATTENUATE_OK && room > 0) {
    require(std::strlen(text) + 1 == needed);
  }
  attenuate_edge edges[4];
  checked(attenuate_edges(input.next<int>(), edges, 4, &needed, &error), error);
  int z = 0;
  checked(attenuate_element(thickness.c_str(), &z, &error), error);
  double keV[8];
  checked(attenuate_source(thickness.c_str(), keV, nullptr, 8, &needed, &error),
          error);
  attenuate_absorber absorber{};
  const double f = input.next<double>(), enriched = input.next<double>();
  const double line = input.next<double>(), background = input.next<double>();
  checked(attenuate_best_absorber(material, "57Fe", f, enriched, line,
                                  background, &absorber, &error),
          error);
  // As it was found, or filled in by somebody.
  if (input.next<std::uint8_t>() % 2 == 0) {
    absorber = input.next<attenuate_absorber>();
  }
  const double mass = input.next<double>();
  checked(attenuate_counting_time(&absorber, &mass, keV, 1, &error), error);
  attenuate_stack_free(stack);
  attenuate_material_free(material);
  return 0;
}
