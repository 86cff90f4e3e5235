#include "attenuate/question.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace attenuate {

physics::Energy Beam::energy(std::size_t i) const {
  const auto index = static_cast<double>(i);
  switch (kind) {
    case Kind::kSteps:
      return {from.keV + index * step.keV};
    case Kind::kLogSteps:
      // The last one exactly, whatever the rounding on the way.
      if (i + 1 == count) return to;
      return {from.keV * std::pow(to.keV / from.keV,
                                  index / static_cast<double>(count - 1))};
    default:
      return from;
  }
}

int Question::column(std::size_t at) const {
  const std::string_view before = std::string_view(typed).substr(0, at);
  return 1 + static_cast<int>(
                 std::count_if(before.begin(), before.end(), [](char c) {
                   return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
                 }));
}

std::string materials_read(const Question& question) {
  std::string text;
  for (const auto& layer : question.layers) {
    if (!text.empty()) text += " + ";
    text += layer.material.read;
  }
  return text;
}

}  // namespace attenuate
