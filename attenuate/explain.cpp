#include "attenuate/explain.h"

#include <string>

#include "attenuate/number.h"

namespace attenuate {
namespace {

// With a blank in front, however many digits there are.
std::string padded(std::string text, std::size_t width) {
  text.insert(0, text.size() < width ? width - text.size() : 1, ' ');
  return text;
}

// The coefficient of the element alone, by the rule of the answer.
double coefficient(int z, physics::Energy energy, const Settings& settings) {
  physics::Material element;
  element.constituents.push_back({z, 1, 1});
  return mass_attenuation(element, energy, settings.rule, *settings.data).cm2_g;
}

void explain_layer(const physics::Layer& layer, const LayerValue& value,
                   physics::Energy energy, const Settings& settings,
                   Output& output) {
  const int digits = settings.digits;
  for (const auto& part : layer.material.constituents) {
    const auto& element =
        settings.data->elements()[static_cast<std::size_t>(part.z) - 1];
    const double mu_rho = coefficient(part.z, energy, settings);
    output.text("   " + padded(std::string(element.symbol), 3) +
                padded(number(part.weight, digits), 12) + " x" +
                padded(number(mu_rho, digits), 12) + " cm2/g =" +
                padded(number(part.weight * mu_rho, digits), 12) + "\n");
  }
  output.text("    mu/rho" + padded(number(value.mu_rho.cm2_g, digits), 34) +
              " cm2/g\n");
  if (layer.material.density) {
    const double rho = layer.material.density->g_cm3;
    output.text("    mu = mu/rho x " + number(rho, digits) + " g/cm3 = " +
                number(value.mu_rho.cm2_g * rho, digits) + " /cm\n");
  }
  if (layer.d.g_cm2 > 0) {
    output.text("    mu x = mu/rho x " + number(layer.d.g_cm2, digits) +
                " g/cm2 = " + number(value.mu_x, digits) + "\n");
  }
}

}  // namespace

void explain(const Question& question, const Row& row, const Settings& settings,
             Output& output) {
  for (std::size_t i = 0; i < question.layers.size(); ++i) {
    output.text("  " + question.layers[i].material.read + " at " +
                energy_in_words(row.energy->keV) + "\n");
    explain_layer(question.layers[i], row.layers[i], *row.energy, settings,
                  output);
  }
  if (row.transmission) {
    output.text("  T = exp(-" + number(*row.mu_x, settings.digits) +
                ") = " + number(*row.transmission, settings.digits) + "\n");
  }
}

}  // namespace attenuate
