#include "attenuate/columns.h"

#include <array>
#include <numbers>

namespace attenuate {
namespace {

using Value = std::optional<double>;

// Behind which the beam is exp(-`exponents`) of itself.
Value depth(const Row& row, double exponents) {
  if (!row.mu) return std::nullopt;
  return exponents / row.mu->per_cm;
}

constexpr std::array kColumns = {
    Column{"energy_keV",
           [](const Row& r) {
             return r.energy ? Value(r.energy->keV) : std::nullopt;
           }},
    Column{"mu_rho_cm2_g",
           [](const Row& r) {
             return r.mu_rho ? Value(r.mu_rho->cm2_g) : std::nullopt;
           }},
    Column{"u_mu_rho_cm2_g", [](const Row& r) { return r.u_mu_rho; }},
    Column{
        "mu_per_cm",
        [](const Row& r) { return r.mu ? Value(r.mu->per_cm) : std::nullopt; }},
    Column{"mean_free_path_cm", [](const Row& r) { return depth(r, 1); }},
    Column{"half_value_cm",
           [](const Row& r) { return depth(r, std::numbers::ln2); }},
    Column{"tenth_value_cm",
           [](const Row& r) { return depth(r, std::numbers::ln10); }},
    Column{"area_mass_g_cm2",
           [](const Row& r) {
             return r.area_mass ? Value(r.area_mass->g_cm2) : std::nullopt;
           }},
    Column{"u_area_mass_g_cm2",
           [](const Row& r) {
             return r.u_area_mass ? Value(r.u_area_mass->g_cm2) : std::nullopt;
           }},
    Column{"thickness_cm",
           [](const Row& r) {
             return r.thickness ? Value(r.thickness->cm) : std::nullopt;
           }},
    Column{"mu_x", [](const Row& r) { return r.mu_x; }},
    Column{"transmission", [](const Row& r) { return r.transmission; }},
    Column{"u_transmission", [](const Row& r) { return r.u_transmission; }},
    Column{"weight",
           [](const Row& r) {
             return r.source != nullptr ? Value(r.weight) : std::nullopt;
           }},
    Column{"mu_en_rho_cm2_g",
           [](const Row& r) {
             return r.mu_en_rho ? Value(r.mu_en_rho->cm2_g) : std::nullopt;
           }},
};

}  // namespace

std::span<const Column> columns(const Settings& settings) {
  const std::span<const Column> all(kColumns);
  return settings.energy_absorption ? all : all.first(all.size() - 1);
}

std::string_view line_name(const Row& row) {
  if (row.source == nullptr) return {};
  return row.line == nullptr ? "sum" : row.line->name;
}

std::string_view source_name(const Row& row) {
  return row.source == nullptr ? std::string_view() : row.source->name;
}

}  // namespace attenuate
