#include "attenuate/echo.h"

#include <string_view>

#include "attenuate/number.h"
#include "attenuate/quantity.h"

namespace attenuate {
namespace {

std::string_view symbol(int z) {
  return physics::builtin().elements()[static_cast<std::size_t>(z) - 1].symbol;
}

std::string thickness(const Question& question, std::size_t layer) {
  const Thickness& given = question.thicknesses[layer];
  const std::string area_mass =
      area_mass_in_words(question.layers[layer].d.g_cm2);
  switch (given.given) {
    case Given::kNothing:
      return {};
    case Given::kLength:
      return "  " + length_in_words(given.length.cm) + " = " + area_mass;
    case Given::kAreaMass:
      return "  " + area_mass;
    case Given::kWanted:
      return "  for " + given.typed;
  }
  return {};
}

}  // namespace

std::string echo(const Question& question, std::size_t layer) {
  const auto& material = question.layers[layer].material;
  std::string text = material.read;
  if (material.molar_mass) {
    text += "  " + number(*material.molar_mass, 5) + " g/mol";
  }
  if (material.density) {
    text += "  " + number(material.density->g_cm3) + " g/cm3";
  }
  return text + thickness(question, layer);
}

std::string density_origin(const physics::Material& material) {
  if (!material.density || material.density_origin == "typed") return {};
  return "density: " + material.density_origin;
}

std::vector<std::string> fractions(const physics::Material& material,
                                   std::size_t width) {
  std::vector<std::string> lines;
  if (material.constituents.size() < 2) return lines;
  for (const auto& part : material.constituents) {
    const std::string text = std::string(symbol(part.z)) + " " +
                             number(100 * part.mass_fraction, 4) + " %";
    if (lines.empty() || lines.back().size() + 2 + text.size() > width) {
      lines.push_back(text);
    } else {
      lines.back() += "  " + text;
    }
  }
  return lines;
}

const char* rule_name(physics::Rule rule) {
  return rule == physics::Rule::kPchip ? "pchip" : "parabola";
}

std::vector<std::string> basis(const Settings& settings) {
  std::vector<std::string> lines = {
      kProgram, std::string(settings.data->version()),
      "rule: " + std::string(rule_name(settings.rule))};
  if (settings.by_energy()) lines.emplace_back("weight: energy");
  return lines;
}

}  // namespace attenuate
