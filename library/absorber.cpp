#include "physics/absorber.h"

#include <cmath>
#include <optional>

#include "library/arguments.h"
#include "library/attenuate.h"
#include "library/errors.h"
#include "library/handles.h"

namespace library {
namespace {

// Nobody measures a line of a smaller share, and at last its thickness would
// underflow.
constexpr double kLeastShare = 1e-6;

void require_share(double value, const char* message) {
  require(value >= kLeastShare && value <= 1, ATTENUATE_ARGUMENT, message);
}

}  // namespace
}  // namespace library

using namespace library;

attenuate_status attenuate_best_absorber(const attenuate_material* material,
                                         const char* isotope,
                                         double recoil_free, double enriched,
                                         double line, double background,
                                         attenuate_absorber* absorber,
                                         attenuate_error* error) {
  return guarded(error, [&] {
    const auto& known = material_of(material).material;
    auto& result = receiver(absorber);
    const auto& nuclear = physics::transition(text_of(isotope));
    require_share(recoil_free, "a recoil-free fraction is 1e-6 to 1");
    require_share(line, "the share of a line is 1e-6 to 1");
    require(background >= 0, ATTENUATE_ARGUMENT,
            "a background is 0 or more counts for one of the line");
    require(enriched == 0 || (enriched >= 100 * kLeastShare && enriched <= 100),
            ATTENUATE_ARGUMENT,
            "an enrichment is 0.0001 to 100 percent, or 0 for none");
    std::optional<double> share;
    if (enriched > 0) share = enriched;
    try {
      const auto resonance = physics::resonance(known, nuclear, share);
      const physics::Absorber beam{resonance.mu_rho,
                                   physics::resonance_cross_section(nuclear) *
                                       resonance.nuclei_per_g * recoil_free *
                                       line,
                                   background};
      const auto best = physics::best_thickness(beam);
      result = {nuclear.energy.keV,  resonance.mu_rho.cm2_g,
                resonance.share,     beam.t_per_g_cm2,
                background,          best.best.g_cm2,
                best.thinnest.g_cm2, best.thickest.g_cm2};
    } catch (const physics::InputError& e) {
      // Its hint is about words of the command.
      throw Failure(ATTENUATE_INPUT, e.message());
    }
  });
}

attenuate_status attenuate_counting_time(const attenuate_absorber* absorber,
                                         const double* g_cm2, double* relative,
                                         size_t n, attenuate_error* error) {
  return guarded(error, [&] {
    require(absorber != nullptr, ATTENUATE_ARGUMENT, "the absorber is NULL");
    const auto masses = array(g_cm2, n);
    const auto times = array(relative, n);
    const physics::Absorber beam{
        {absorber->mu_rho}, absorber->t_per_g_cm2, absorber->background};
    const auto above_0 = [](double x) { return x > 0 && std::isfinite(x); };
    require(above_0(beam.mu_rho.cm2_g) && above_0(beam.t_per_g_cm2) &&
                beam.background >= 0 && above_0(absorber->best),
            ATTENUATE_ARGUMENT, "this is no absorber");
    const double best = physics::merit(beam, {absorber->best});
    for (size_t i = 0; i < n; ++i) {
      if (!(masses[i] >= 0)) {
        throw Failure(ATTENUATE_ARGUMENT, "an areal mass must be 0 or more", i);
      }
      times[i] = best / physics::merit(beam, {masses[i]});
    }
  });
}
