#include "library/attenuate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "library/arguments.h"
#include "library/errors.h"
#include "library/handles.h"
#include "physics/data.h"
#include "physics/typed_quantity.h"

namespace library {
namespace {

using physics::Energy;
using std::size_t;

template <typename T>
void destroy(T* handle, std::uint64_t kind) noexcept {
  try {
    auto& gone = object(handle, kind, "handle");
    // Through volatile, since nobody reads it any more that a compiler sees.
    const_cast<volatile std::uint64_t&>(gone.kind) = 0;
    delete &gone;
  } catch (...) {
    return;
  }
}

physics::Density density_of(const physics::Material& material) {
  if (!material.density) {
    throw Failure(ATTENUATE_UNKNOWN,
                  "the density of " + material.read + " is not known", 0,
                  density_advice(material) + ", or give the density apart");
  }
  return *material.density;
}

// Throws Failure where there is an energy outside.
void require_inside(const physics::CurveSum& curves,
                    const std::optional<physics::Outside>& outside) {
  if (!outside) return;
  if (std::isnan(outside->energy.keV)) {
    throw Failure(ATTENUATE_OUTSIDE, "the energy is not a number",
                  outside->subscript);
  }
  throw Failure(ATTENUATE_OUTSIDE, curves.outside(outside->energy).what(),
                outside->subscript);
}

void evaluate(const physics::CurveSum& curves, const double* keV,
              double* values, size_t n,
              physics::Form form = physics::Form::kSum, double factor = 1.0) {
  require_inside(
      curves, curves.evaluate(array(keV, n), array(values, n), form, factor));
}

// Lines of a beam: energies, weights, and whether they count by energy.
class Beam {
 public:
  Beam(const double* keV, const double* weight, size_t n, int weighting)
      : keV_(array(keV, n)), weight_(weight), by_energy_(weighting) {
    require(n > 0, ATTENUATE_ARGUMENT, "a beam needs a line");
    require(
        weighting == ATTENUATE_BY_PHOTONS || weighting == ATTENUATE_BY_ENERGY,
        ATTENUATE_ARGUMENT, "lines count by photons (0) or by energy (1)");
    for (size_t i = 0; i < n && weight != nullptr; ++i) {
      if (!(weight[i] >= 0.0) || std::isinf(weight[i])) {
        throw Failure(ATTENUATE_ARGUMENT,
                      "the weight of a line must be 0 or more", i);
      }
      most_ = i == 0 ? weight[i] : std::max(most_, weight[i]);
    }
    require(most_ > 0.0, ATTENUATE_ARGUMENT, "all lines have the weight 0");
  }

  size_t size() const { return keV_.size(); }
  std::span<const double> keV() const { return keV_; }
  // 1 for the largest, so that sums are numbers.
  double weight(size_t i) const {
    return weight_ == nullptr ? 1.0 : weight_[i] / most_;
  }
  double share(size_t i) const {
    return weight(i) * (by_energy_ == ATTENUATE_BY_ENERGY ? keV_[i] : 1.0);
  }

 private:
  std::span<const double> keV_;
  const double* weight_;
  double most_ = 1.0;
  int by_energy_;
};

double transmitted(const physics::CurveSum& mu_x, const Beam& beam) {
  std::array<double, 64> passed{};
  double sum = 0.0, whole = 0.0;
  for (size_t i = 0; i < beam.size(); ++i) {
    const size_t slot = i % passed.size();
    if (slot == 0) {
      const auto part =
          beam.keV().subspan(i, std::min(passed.size(), beam.size() - i));
      auto outside = mu_x.evaluate(part, std::span(passed).first(part.size()),
                                   physics::Form::kTransmission);
      if (outside) outside->subscript += i;
      require_inside(mu_x, outside);
    }
    sum += beam.share(i) * passed[slot];
    whole += beam.share(i);
  }
  return sum / whole;
}

// Gives `list` to a caller with room for `size` of it.
template <typename List, typename Give>
void hand_out(const List& list, size_t size, size_t* count, Give give) {
  if (count != nullptr) *count = list.size();
  for (size_t i = 0; i < std::min(size, list.size()); ++i) give(i, list[i]);
  require(size == 0 || size >= list.size(), ATTENUATE_SPACE,
          "the array is too short");
}

}  // namespace
}  // namespace library

using namespace library;

const char* attenuate_version(void) { return ATTENUATE_LIBRARY_VERSION; }

const char* attenuate_tables(void) {
  // A literal: it ends in 0.
  return physics::builtin().version().data();
}

attenuate_status attenuate_material_new(const char* text, double density,
                                        attenuate_material** material,
                                        attenuate_error* error) {
  if (material != nullptr) *material = nullptr;
  return guarded(error, [&] {
    auto& result = receiver(material);
    require(density >= 0.0 && std::isfinite(density), ATTENUATE_ARGUMENT,
            "a density must be above 0, or 0 for that of the text");
    auto made = std::make_unique<attenuate_material>();
    made->material = physics::material(text_of(text));
    if (density > 0.0) {
      made->material.density = physics::Density{density};
      made->material.density_origin = "typed";
    }
    made->mu_rho.add(made->material, 1.0);
    made->mu_en_rho.add(made->material, 1.0,
                        physics::Coefficient::kEnergyAbsorption);
    result = made.release();
  });
}

void attenuate_material_free(attenuate_material* material) {
  destroy(material, kMaterial);
}

attenuate_status attenuate_material_text(const attenuate_material* material,
                                         int which, char* buffer, size_t size,
                                         size_t* needed,
                                         attenuate_error* error) {
  return guarded(error, [&] {
    const auto& known = material_of(material).material;
    array(buffer, size);
    std::string notes;
    const char* text = nullptr;
    switch (which) {
      case ATTENUATE_TYPED:
        text = known.typed.c_str();
        break;
      case ATTENUATE_READ:
        text = known.read.c_str();
        break;
      case ATTENUATE_DENSITY_ORIGIN:
        text = known.density_origin.c_str();
        break;
      case ATTENUATE_NOTES:
        for (const auto& note : known.notes) {
          notes += (notes.empty() ? "" : "\n") + note;
        }
        text = notes.c_str();
        break;
      default:
        throw Failure(ATTENUATE_ARGUMENT, "there is no such text");
    }
    const size_t all = std::strlen(text) + 1;
    if (needed != nullptr) *needed = all;
    copy_text(text, buffer, size);
    require(size == 0 || size >= all, ATTENUATE_SPACE,
            "the buffer is too short");
  });
}

attenuate_status attenuate_areal_mass(const attenuate_material* material,
                                      const char* thickness, double* g_cm2,
                                      attenuate_error* error) {
  return guarded(error, [&] {
    const auto& known = material_of(material).material;
    auto& result = receiver(g_cm2);
    const auto typed = physics::thickness(text_of(thickness));
    result = typed.length ? (density_of(known) * *typed.length).g_cm2
                          : typed.area_mass.g_cm2;
  });
}

attenuate_status attenuate_density(const attenuate_material* material,
                                   double* density, attenuate_error* error) {
  return guarded(error, [&] {
    const auto& known = material_of(material).material;
    auto& result = receiver(density);
    result = density_of(known).g_cm3;
  });
}

attenuate_status attenuate_molar_mass(const attenuate_material* material,
                                      double* molar_mass,
                                      attenuate_error* error) {
  return guarded(error, [&] {
    const auto& known = material_of(material).material;
    auto& result = receiver(molar_mass);
    require(known.molar_mass.has_value(), ATTENUATE_UNKNOWN,
            "a mixture has no molar mass");
    result = *known.molar_mass;
  });
}

attenuate_status attenuate_composition(const attenuate_material* material,
                                       int* z, double* mass_fraction,
                                       size_t size, size_t* count,
                                       attenuate_error* error) {
  return guarded(error, [&] {
    hand_out(material_of(material).material.constituents, size, count,
             [&](size_t i, const physics::Constituent& part) {
               if (z != nullptr) z[i] = part.z;
               if (mass_fraction != nullptr) {
                 mass_fraction[i] = part.mass_fraction;
               }
             });
  });
}

attenuate_status attenuate_mu_rho(const attenuate_material* material,
                                  const double* keV, double* cm2_g, size_t n,
                                  attenuate_error* error) {
  return guarded(
      error, [&] { evaluate(material_of(material).mu_rho, keV, cm2_g, n); });
}

attenuate_status attenuate_mu_en_rho(const attenuate_material* material,
                                     const double* keV, double* cm2_g, size_t n,
                                     attenuate_error* error) {
  return guarded(
      error, [&] { evaluate(material_of(material).mu_en_rho, keV, cm2_g, n); });
}

attenuate_status attenuate_mu(const attenuate_material* material,
                              const double* keV, double* per_cm, size_t n,
                              attenuate_error* error) {
  double density = 0.0;
  const auto status = attenuate_density(material, &density, error);
  if (status != ATTENUATE_OK) return status;
  return guarded(error, [&] {
    evaluate(material->mu_rho, keV, per_cm, n, physics::Form::kSum, density);
  });
}

attenuate_status attenuate_uncertainty(const attenuate_material* material,
                                       const double* keV, double* relative,
                                       size_t n, attenuate_error* error) {
  return guarded(error, [&] {
    const auto& known = material_of(material);
    const auto energies = array(keV, n);
    const auto results = array(relative, n);
    std::optional<physics::Outside> outside;
    for (size_t i = 0; i < n; ++i) {
      const Energy energy{energies[i]};
      if (known.mu_rho.first() <= energy && energy <= known.mu_rho.last()) {
        results[i] = relative_uncertainty(known.material, energy);
      } else {
        if (!outside) outside = {i, energy};
        results[i] = std::nan("");
      }
    }
    require_inside(known.mu_rho, outside);
  });
}

attenuate_status attenuate_stack_new(const attenuate_layer* layers, size_t n,
                                     attenuate_stack** stack,
                                     attenuate_error* error) {
  if (stack != nullptr) *stack = nullptr;
  return guarded(error, [&] {
    auto& result = receiver(stack);
    auto made = std::make_unique<attenuate_stack>();
    size_t position = 0;
    for (const attenuate_layer& layer : array(layers, n)) {
      if (!(layer.g_cm2 >= 0.0) || std::isinf(layer.g_cm2)) {
        throw Failure(ATTENUATE_ARGUMENT,
                      "the areal mass of a layer must be 0 or more", position);
      }
      const auto& material = material_of(layer.material, position).material;
      made->mu_x.add(material, layer.g_cm2);
      made->layers.push_back({material, {layer.g_cm2}});
      ++position;
    }
    result = made.release();
  });
}

void attenuate_stack_free(attenuate_stack* stack) { destroy(stack, kStack); }

attenuate_status attenuate_mu_x(const attenuate_stack* stack, const double* keV,
                                double* mu_x, size_t n,
                                attenuate_error* error) {
  return guarded(error, [&] { evaluate(stack_of(stack).mu_x, keV, mu_x, n); });
}

attenuate_status attenuate_transmission(const attenuate_stack* stack,
                                        const double* keV, double* transmission,
                                        size_t n, attenuate_error* error) {
  return guarded(error, [&] {
    evaluate(stack_of(stack).mu_x, keV, transmission, n,
             physics::Form::kTransmission);
  });
}

attenuate_status attenuate_beam_transmission(
    const attenuate_stack* stack, const double* keV, const double* weight,
    size_t n, int weighting, double* transmission, attenuate_error* error) {
  return guarded(error, [&] {
    const auto& layers = stack_of(stack);
    auto& result = receiver(transmission);
    result = transmitted(layers.mu_x, Beam(keV, weight, n, weighting));
  });
}

attenuate_status attenuate_thickness(const attenuate_stack* stack, size_t layer,
                                     double wanted, const double* keV,
                                     const double* weight, size_t n,
                                     int weighting, double* g_cm2,
                                     attenuate_error* error) {
  return guarded(error, [&] {
    const auto& known = stack_of(stack);
    auto& result = receiver(g_cm2);
    require(layer < known.layers.size(), ATTENUATE_ARGUMENT,
            "the stack has no such layer");
    require(wanted > 0.0 && wanted <= 1.0, ATTENUATE_ARGUMENT,
            "a transmission must be above 0 and at most 1");
    const Beam beam(keV, weight, n, weighting);
    // For the subscript of a wrong energy.
    transmitted(known.mu_x, beam);
    std::vector<physics::Line> lines;
    for (size_t i = 0; i < n; ++i) lines.push_back({{keV[i]}, beam.weight(i)});
    try {
      result = physics::thickness_for(known.layers, layer, {wanted}, lines,
                                      weighting == ATTENUATE_BY_ENERGY
                                          ? physics::Weighting::kEnergy
                                          : physics::Weighting::kPhotons)
                   .g_cm2;
    } catch (const physics::InputError& e) {
      // All the rest was looked at: the other layers alone transmit less.
      throw Failure(ATTENUATE_UNKNOWN, e.message(), 0, e.hint());
    }
  });
}

attenuate_status attenuate_element(const char* name, int* z,
                                   attenuate_error* error) {
  return guarded(error, [&] {
    auto& result = receiver(z);
    const auto word = text_of(name);
    const auto* element = physics::element_with_symbol(word);
    if (element == nullptr) element = physics::element_with_name(word);
    if (element == nullptr) {
      throw physics::InputError("'" + std::string(word) + "' is no element", 1,
                                "a symbol (Fe), or a name in small letters "
                                "(iron)");
    }
    result = element->z;
  });
}

const char* attenuate_symbol(int z) {
  if (z < 1 || z > physics::kElements) return nullptr;
  // A literal: it ends in 0.
  return physics::builtin()
      .elements()[static_cast<size_t>(z) - 1]
      .symbol.data();
}

attenuate_status attenuate_edges(int z, attenuate_edge* edges, size_t size,
                                 size_t* count, attenuate_error* error) {
  return guarded(error, [&] {
    require(z >= 1 && z <= physics::kElements, ATTENUATE_ARGUMENT,
            "an atomic number is 1 to 92");
    array(edges, size);
    hand_out(physics::edges(z), size, count,
             [&](size_t i, const physics::Edge& edge) {
               edges[i] = {edge.energy.keV, edge.jump, {}};
               const std::string shell(edge.shell);
               copy_text(shell.c_str(), edges[i].shell, sizeof edges[i].shell);
             });
  });
}

attenuate_status attenuate_source(const char* name, double* keV,
                                  double* intensity, size_t size, size_t* count,
                                  attenuate_error* error) {
  return guarded(error, [&] {
    const auto word = text_of(name);
    const auto* source = physics::source(word);
    if (source == nullptr) {
      throw physics::InputError("no source is called " + std::string(word), 1,
                                "57Co, 241Am, CuKa, ...");
    }
    hand_out(source->lines, size, count,
             [&](size_t i, const physics::SourceLine& line) {
               if (keV != nullptr) keV[i] = line.energy.keV;
               if (intensity != nullptr) intensity[i] = line.intensity;
             });
  });
}
