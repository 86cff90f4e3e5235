#include "physics/absorber.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "physics/errors.h"
#include "physics/formula.h"
#include "physics/table.h"
#include "physics/typed_quantity.h"

namespace physics {

namespace {

constexpr double kAvogadro = 6.02214076e23;  // per mol (SI)
// 2 pi (hbar c)^2 in keV2 cm2, from hbar c = 197.3269804 MeV fm (CODATA 2018).
constexpr double kTwoPiHbarC2 =
    2.0 * std::numbers::pi * 197.3269804e-10 * 197.3269804e-10;

// exp(-z) I0(z) for z above 30: the asymptotic series, whose terms there fall
// below the last bit before they rise again. I0 itself overflows at 713.
double scaled_i0_large(double z) {
  double sum = 1.0;
  double term = 1.0;
  for (int k = 1; term > 1e-17; ++k) {
    const double odd = 2.0 * k - 1.0;
    term *= odd * odd / (8.0 * k * z);
    sum += term;
  }
  return sum / std::sqrt(2.0 * std::numbers::pi * z);
}

// What the element weighs per mol where `share` of its atoms are the isotope:
// the other isotopes keep their proportions.
double enriched_weight(const Element& element, const Transition& transition,
                       double mass, double share) {
  const double natural = transition.abundance / 100.0;
  if (natural >= 1.0) return mass;
  const double rest = (element.weight - natural * mass) / (1.0 - natural);
  return share * mass + (1.0 - share) * rest;
}

// The energy behind the "@" of a transition.
Energy energy_behind_at(std::string_view word) {
  try {
    return energy(word);
  } catch (const InputError& e) {
    throw InputError(e.message(), 0, "155Gd@105.3");
  }
}

// "57Fe", or "155Gd@105.309" where the isotope has several.
std::string name_of(const Transition& transition) {
  std::string name(transition.isotope);
  const auto all = transitions();
  if (std::count_if(all.begin(), all.end(), [&](const Transition& other) {
        return other.isotope == transition.isotope;
      }) > 1) {
    name += "@" + short_number(transition.energy.keV);
  }
  return name;
}

}  // namespace

const Transition& transition(std::string_view typed) {
  const std::string_view isotope = typed.substr(0, typed.find('@'));
  std::optional<Energy> wanted;
  if (isotope.size() < typed.size())
    wanted = energy_behind_at(typed.substr(isotope.size() + 1));
  const auto distance = [&](const Transition& one) {
    // Without an energy the first of several is as far as any.
    return wanted ? std::abs(one.energy.keV - wanted->keV) : 0.0;
  };
  const Transition* found = nullptr;
  std::string known;
  for (const Transition& one : transitions()) {
    known += (known.empty() ? "" : " ") + name_of(one);
    if (one.isotope != isotope) continue;
    if (found == nullptr || distance(one) < distance(*found)) found = &one;
  }
  if (found == nullptr) {
    throw InputError("no transition of " + in_quotes(isotope) + " is known", 0,
                     known);
  }
  if (distance(*found) > 0.01 * found->energy.keV) {
    throw InputError(std::string(isotope) + " has no transition at " +
                         short_number(wanted->keV) + " keV",
                     0,
                     "the next is " + short_number(found->energy.keV) + " keV");
  }
  return *found;
}

double resonance_cross_section(const Transition& transition) {
  const double E = transition.energy.keV;
  return kTwoPiHbarC2 / (E * E) * (2.0 * transition.spin_excited + 1.0) /
         (2.0 * transition.spin_ground + 1.0) / (1.0 + transition.alpha);
}

double resonant_absorption(double t) {
  if (t < 1.0) {
    // exp(-t/2) I0(t/2) is the sum of (1/2)_k (-t)^k / k!^2. Its first term, 1,
    // cancels, so that nothing is lost to thin absorbers.
    double sum = 0.0;
    double term = 1.0;
    for (int k = 1; k < 30; ++k) {
      term *= -t * (k - 0.5) / (1.0 * k * k);
      sum -= term;
      if (std::abs(term) <= 1e-18 * sum) break;
    }
    return sum;
  }
  const double z = t / 2.0;
  if (z > 30.0) return 1.0 - scaled_i0_large(z);
  return 1.0 - std::exp(-z) * std::cyl_bessel_i(0.0, z);
}

Resonance resonance(const Material& material, const Transition& transition,
                    std::optional<double> enriched, Rule rule,
                    const Data& data) {
  const Element& element =
      data.elements()[static_cast<std::size_t>(transition.z - 1)];
  const auto is_element = [&](const auto& part) {
    return part.z == transition.z;
  };
  Resonance result;
  double weight = 0.0;
  for (const Constituent& constituent : material.constituents) {
    if (!is_element(constituent)) continue;
    result.element_fraction = constituent.mass_fraction;
    weight = constituent.weight;
  }
  if (weight == 0.0) {
    throw InputError(material.read + " holds no " + std::string(element.name) +
                         " (" + std::string(transition.isotope) + ")",
                     0, "--isotope chooses another transition");
  }

  double atoms = 0.0;
  double isotopes_named = 0.0;
  double resonant = 0.0;
  if (material.composition) {
    for (const Part& part : *material.composition) {
      if (!is_element(part)) continue;
      atoms += part.atoms;
      if (part.mass_number != 0) isotopes_named += part.atoms;
      if (part.mass_number == transition.mass_number) resonant += part.atoms;
    }
  }
  const double natural = transition.abundance / 100.0;
  result.share = isotopes_named > 0.0
                     ? (resonant + natural * (atoms - isotopes_named)) / atoms
                     : natural;
  // Grams of the material as asked, per gram as the tables weigh it.
  double mass = 1.0;
  if (enriched) {
    if (isotopes_named > 0.0) {
      throw InputError("the formula already names its isotopes", 0,
                       "leave --enriched out, or the isotopes");
    }
    if (!(*enriched > 0.0 && *enriched <= 100.0)) {
      throw InputError("an enrichment is above 0 and at most 100 percent", 0,
                       "--enriched 95");
    }
    result.share = *enriched / 100.0;
    if (const Nuclide* isotope =
            nuclide(transition.z, transition.mass_number)) {
      const double ratio =
          enriched_weight(element, transition, isotope->mass, result.share) /
          element.weight;
      mass = 1.0 + result.element_fraction * (ratio - 1.0);
      result.element_fraction *= ratio / mass;
    }
  }
  if (result.share <= 0.0) {
    throw InputError(
        material.read + " holds no " + std::string(transition.isotope), 0,
        transition.abundance > 0.0
            ? ""
            : "the isotope is not natural: --enriched tells the percentage");
  }
  result.nuclei_per_g =
      weight / element.weight * kAvogadro * result.share / mass;
  result.mu_rho = {
      mass_attenuation(material, transition.energy, rule, data).cm2_g / mass};
  return result;
}

double merit(const Absorber& absorber, AreaMass d) {
  const double x = absorber.mu_rho * d;
  // The square of a tiny eps would be 0 at every thickness.
  const double eps = resonant_absorption(absorber.t_per_g_cm2 * d.g_cm2) /
                     std::min(absorber.t_per_g_cm2, 1.0);
  // 1/(1 + b), so that an infinite background is a number like any other.
  const double line = 1.0 / (1.0 + absorber.background);
  const double others = 1.0 - line;
  // Without others nothing is left to divide by behind a thick absorber.
  const double passed = others > 0.0
                            ? std::exp(-x) / (line + others * std::exp(x))
                            : std::exp(-x);
  return eps * eps * passed;
}

BestThickness best_thickness(const Absorber& absorber, double margin) {
  // ln Q is concave in d, and its maximum lies at mu x of 2 at most, where a
  // thin absorber without background has it.
  const auto q = [&](double d) { return merit(absorber, {d}); };
  const double golden = (std::sqrt(5.0) - 1.0) / 2.0;
  double low = 0.0;
  double high = 2.0001 / absorber.mu_rho.cm2_g;
  double left = high - golden * (high - low);
  double right = low + golden * (high - low);
  double q_left = q(left);
  double q_right = q(right);
  // Near the maximum Q is flat: below 1e-9 of d it is rounding that decides.
  while (high - low > 1e-9 * high) {
    if (q_left < q_right) {
      low = left;
      left = right;
      q_left = q_right;
      right = low + golden * (high - low);
      q_right = q(right);
    } else {
      high = right;
      right = left;
      q_right = q_left;
      left = high - golden * (high - low);
      q_left = q(left);
    }
  }
  BestThickness result;
  result.best.g_cm2 = (low + high) / 2.0;

  const double enough = q(result.best.g_cm2) / (1.0 + margin);
  const auto boundary = [&](double inside, double outside) {
    for (int i = 0; i < 60; ++i) {
      const double middle = (inside + outside) / 2.0;
      (q(middle) >= enough ? inside : outside) = middle;
    }
    return AreaMass{inside};
  };
  result.thinnest = boundary(result.best.g_cm2, 0.0);
  double outside = 2.0 * result.best.g_cm2;
  while (q(outside) >= enough) outside *= 2.0;
  result.thickest = boundary(result.best.g_cm2, outside);
  return result;
}

}  // namespace physics
