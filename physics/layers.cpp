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
  double share;   // of the beam
  double before;  // the exponent of the known layers
  double mu_rho;  // of the unknown one

  double mu_x(double d) const { return before + mu_rho * d; }
};

// Relative rounding of sums that should be equal, with a good margin.
constexpr double kRounding = 1e-12;

void require_sense(Wanted wanted) {
  if (wanted.as == Wanted::As::kMuX) {
    if (wanted.value >= 0.0 && !std::isinf(wanted.value)) return;
    throw InputError("mu x is a number from 0 on", 0);
  }
  if (wanted.value > 0.0 && wanted.value <= 1.0) return;
  throw InputError("a transmission is above 0 and at most 1", 0);
}

// before  the exponent of the known layers
void require_possible(double before, Wanted wanted) {
  const bool as_mu_x = wanted.as == Wanted::As::kMuX;
  // A typed T is rounded itself.
  const double rounding = kRounding * wanted.mu_x() + (as_mu_x ? 0.0 : 1e-15);
  if (before <= wanted.mu_x() + rounding) return;
  throw InputError(
      as_mu_x
          ? "the other layers alone have a mu x of " + short_number(before) +
                ", more than the " + short_number(wanted.value) + " wanted"
          : "the other layers alone transmit " +
                short_number(std::exp(-before)) + ", less than the " +
                short_number(wanted.value) + " wanted",
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

// -ln T of all rays with `d` of the unknown layer. Thick ones are added up
// relative to the largest, so that nothing is lost where exp(-mu x) would be 0.
double mu_x_of(std::span<const Ray> rays, double d) {
  double least = std::numeric_limits<double>::infinity();
  double most = 0.0;
  for (const Ray& ray : rays) {
    least = std::min(least, ray.mu_x(d));
    most = std::max(most, ray.mu_x(d));
  }
  double sum = 0.0;
  if (most < 0.5) {
    for (const Ray& ray : rays) sum += ray.share * std::expm1(-ray.mu_x(d));
    return -std::log1p(sum);
  }
  if (std::isinf(least)) return least;
  for (const Ray& ray : rays) {
    sum += ray.share * std::exp(least - ray.mu_x(d));
  }
  return least - std::log(sum);
}

// Where -ln T rises to `mu_x`, which it does between d = low and d = high.
double root(std::span<const Ray> rays, double mu_x, double low, double high) {
  for (;;) {
    const double middle = low + (high - low) / 2;
    if (middle <= low || middle >= high) return high;
    (mu_x_of(rays, middle) < mu_x ? low : high) = middle;
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

double weight_of(const Line& line, Weighting weighting) {
  const double weight = weighting == Weighting::kEnergy
                            ? line.weight * line.energy.keV
                            : line.weight;
  if (!(weight >= 0.0) || std::isinf(weight)) {
    throw InputError("the weight of a line is negative or no number", 0);
  }
  return weight;
}

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

double Wanted::mu_x() const {
  return as == As::kMuX ? value : -std::log(value);
}

double Wanted::transmission() const {
  return as == As::kMuX ? std::exp(-value) : value;
}

AreaMass thickness_for(std::span<const Layer> layers, std::size_t unknown,
                       Wanted wanted, std::span<const Line> lines,
                       Weighting weighting, Rule rule, const Data& data) {
  require_sense(wanted);
  const std::vector<double> share = shares(lines, weighting);
  const Material& material = layers[unknown].material;
  std::vector<Ray> rays;
  double least = std::numeric_limits<double>::infinity();
  double most = 0.0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (share[i] <= 0.0) continue;
    const Energy energy = lines[i].energy;
    rays.push_back({share[i], mu_x_without(layers, unknown, energy, rule, data),
                    mass_attenuation(material, energy, rule, data).cm2_g});
    least = std::min(least, rays.back().mu_rho);
    most = std::max(most, rays.back().mu_rho);
  }
  const double before = rays.size() == 1 ? rays[0].before : mu_x_of(rays, 0.0);
  require_possible(before, wanted);
  const double left = wanted.mu_x() - before;
  if (left <= 0.0) return {0.0};
  if (rays.size() == 1) return {left / rays[0].mu_rho};
  // -ln T rises at least by the smallest mu/rho and at most by the largest for
  // each g/cm2: that brackets the root, but for the rounding of both sides.
  const double low = left / most * (1 - kRounding);
  const double high = left / least * (1 + kRounding);
  return {root(rays, wanted.mu_x(), low, high)};
}

}  // namespace physics
