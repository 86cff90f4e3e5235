#include "physics/layers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "physics/errors.h"

namespace physics {
namespace {

// A line behind the known layers, as the unknown one sees it: per unit of the
// whole beam it transmits share * exp(-before - mu_rho d).
struct Ray {
  double ln_share;  // of the beam
  double before;    // the exponent of the known layers
  double mu_rho;    // of the unknown one
};

double weight_of(const Line& line, Weighting weighting) {
  const double weight = weighting == Weighting::kEnergy
                            ? line.weight * line.energy.keV
                            : line.weight;
  if (!(weight >= 0.0) || std::isinf(weight)) {
    throw InputError("the weight of a line is negative or no number", 0);
  }
  return weight;
}

// Relative rounding of sums that should be equal, with a good margin.
constexpr double kRounding = 1e-12;

// excess  of ln T of the known layers over what is wanted of all
void require_possible(double excess, double ln_wanted) {
  if (excess >= -kRounding) return;
  throw InputError("the other layers alone transmit " +
                       short_number(std::exp(ln_wanted + excess)) +
                       ", less than the " + short_number(std::exp(ln_wanted)) +
                       " wanted",
                   0);
}

// Weights divided by the largest, so that their sum is a number.
std::vector<double> shares(std::span<const Line> lines, Weighting weighting) {
  std::vector<double> weights;
  double most = 0.0;
  for (const Line& line : lines) {
    weights.push_back(weight_of(line, weighting));
    most = std::max(most, weights.back());
  }
  if (most <= 0.0) throw InputError("no line has a weight", 0);
  double sum = 0.0;
  for (double& weight : weights) sum += weight /= most;
  for (double& weight : weights) weight /= sum;
  return weights;
}

// ln of the transmission of all rays with `d` of the unknown layer. Added up
// relative to the largest, so that nothing is lost where exp(-mu x) would be 0.
double ln_transmission(std::span<const Ray> rays, double d) {
  double most = -std::numeric_limits<double>::infinity();
  for (const Ray& ray : rays) {
    most = std::max(most, ray.ln_share - ray.before - ray.mu_rho * d);
  }
  if (std::isinf(most)) return most;
  double sum = 0.0;
  for (const Ray& ray : rays) {
    sum += std::exp(ray.ln_share - ray.before - ray.mu_rho * d - most);
  }
  return most + std::log(sum);
}

// Where the transmission falls to `ln_wanted`, which it does between d = low
// and d = high.
double root(std::span<const Ray> rays, double ln_wanted, double low,
            double high) {
  for (;;) {
    const double middle = low + (high - low) / 2;
    if (middle <= low || middle >= high) return high;
    (ln_transmission(rays, middle) > ln_wanted ? low : high) = middle;
  }
}

// mu x of all layers but one.
double mu_x_without(std::span<const Layer> layers, std::size_t unknown,
                    Energy energy, Rule rule, const Data& data) {
  double sum = 0.0;
  for (std::size_t i = 0; i < layers.size(); ++i) {
    if (i == unknown) continue;
    if (!(layers[i].d.g_cm2 >= 0.0)) {
      throw InputError("the thickness of a layer is negative or no number", 0);
    }
    sum +=
        mass_attenuation(layers[i].material, energy, rule, data) * layers[i].d;
  }
  return sum;
}

}  // namespace

double mu_x(std::span<const Layer> layers, Energy energy, Rule rule,
            const Data& data) {
  double sum = 0.0;
  for (const Layer& layer : layers) {
    sum += mass_attenuation(layer.material, energy, rule, data) * layer.d;
  }
  return sum;
}

double transmission(std::span<const Layer> layers, Energy energy, Rule rule,
                    const Data& data) {
  return std::exp(-mu_x(layers, energy, rule, data));
}

double transmission(std::span<const Layer> layers, std::span<const Line> lines,
                    Weighting weighting, Rule rule, const Data& data) {
  const std::vector<double> share = shares(lines, weighting);
  double sum = 0.0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (share[i] <= 0.0) continue;
    sum += share[i] * transmission(layers, lines[i].energy, rule, data);
  }
  return std::min(sum, 1.0);
}

AreaMass thickness_for_mu_x(std::span<const Layer> layers, std::size_t unknown,
                            double wanted, Energy energy, Rule rule,
                            const Data& data) {
  if (!(wanted >= 0.0) || std::isinf(wanted)) {
    throw InputError("mu x is a number from 0 on", 0);
  }
  const double left =
      wanted - mu_x_without(layers, unknown, energy, rule, data);
  if (left < -kRounding * wanted) {
    throw InputError("the other layers alone have a mu x of " +
                         short_number(wanted - left) + ", more than the " +
                         short_number(wanted) + " wanted",
                     0);
  }
  return {std::max(left, 0.0) /
          mass_attenuation(layers[unknown].material, energy, rule, data).cm2_g};
}

AreaMass thickness_for(std::span<const Layer> layers, std::size_t unknown,
                       double wanted, std::span<const Line> lines,
                       Weighting weighting, Rule rule, const Data& data) {
  if (!(wanted > 0.0 && wanted <= 1.0)) {
    throw InputError("a transmission is above 0 and at most 1", 0);
  }
  const double ln_wanted = std::log(wanted);
  const std::vector<double> share = shares(lines, weighting);
  const Material& material = layers[unknown].material;
  std::vector<Ray> rays;
  double least = std::numeric_limits<double>::infinity();
  double most = 0.0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (share[i] <= 0.0) continue;
    const Energy energy = lines[i].energy;
    rays.push_back({std::log(share[i]),
                    mu_x_without(layers, unknown, energy, rule, data),
                    mass_attenuation(material, energy, rule, data).cm2_g});
    least = std::min(least, rays.back().mu_rho);
    most = std::max(most, rays.back().mu_rho);
  }
  if (rays.size() == 1) {
    const double left = -ln_wanted - rays[0].before;
    require_possible(left, ln_wanted);
    return {std::max(left, 0.0) / rays[0].mu_rho};
  }
  const double excess = ln_transmission(rays, 0.0) - ln_wanted;
  require_possible(excess, ln_wanted);
  if (excess <= 0.0) return {0.0};
  // ln T falls at least by the smallest mu/rho and at most by the largest for
  // each g/cm2: that brackets the root, but for the rounding of both sides.
  const double low = excess / most * (1 - kRounding);
  const double high = excess / least * (1 + kRounding);
  return {root(rays, ln_wanted, low, high)};
}

}  // namespace physics
