#include "attenuate/answer.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "attenuate/notes.h"
#include "attenuate/tables.h"
#include "physics/errors.h"
#include "physics/material.h"

namespace attenuate {
namespace {

using physics::Energy;

// Adds up what a source transmits, line by line.
class Sum {
 public:
  explicit Sum(physics::Weighting weighting) : weighting_(weighting) {}

  void add(const Row& row) {
    if (!row.transmission) return;
    const double weight =
        physics::weight_of({*row.energy, row.weight}, weighting_);
    photons_ += row.weight;
    weights_ += weight;
    transmission_ += weight * *row.transmission;
    // The errors of one table are not independent: they add up linearly.
    u_ += weight * *row.u_transmission;
  }

  Row row(const Row& last) const {
    Row sum;
    sum.source = last.source;
    sum.weight = photons_;
    sum.area_mass = last.area_mass;
    sum.u_area_mass = last.u_area_mass;
    sum.thickness = last.thickness;
    sum.transmission = transmission_ / weights_;
    sum.u_transmission = u_ / weights_;
    return sum;
  }

 private:
  physics::Weighting weighting_;
  double photons_ = 0.0;
  double weights_ = 0.0;
  double transmission_ = 0.0;
  double u_ = 0.0;
};

// Of all layers together, for one energy. The errors of one table are not
// independent, so those of the layers add up linearly.
double u_of_mu_x(std::span<const LayerValue> values) {
  double sum = 0;
  for (const auto& value : values) sum += value.mu_x * value.relative_u;
  return sum;
}

}  // namespace

void Answerer::set_values(const Question& question, Energy energy) {
  values_.resize(question.layers.size());
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const auto& layer = question.layers[i];
    LayerValue& value = values_[i];
    value.mu_rho = mass_attenuation(layer.material, energy, settings_.rule,
                                    *settings_.data);
    value.relative_u =
        relative_uncertainty(layer.material, energy, *settings_.data);
    value.mu_x = value.mu_rho * layer.d;
  }
}

void Answerer::set_single(const Question& question, Row& row) const {
  const auto& material = question.layers[0].material;
  const LayerValue& value = values_[0];
  row.mu_rho = value.mu_rho;
  row.u_mu_rho = value.mu_rho.cm2_g * value.relative_u;
  if (material.density) row.mu = value.mu_rho * *material.density;
  if (settings_.energy_absorption) {
    row.mu_en_rho = energy_absorption(material, *row.energy, *settings_.data);
  }
}

void Answerer::set_thickness(const Question& question, Row& row) const {
  if (question.layers.size() > 1 && !question.unknown) return;
  const auto& layer = question.layers[question.unknown.value_or(0)];
  row.area_mass = layer.d;
  if (layer.material.density) {
    row.thickness = layer.d / *layer.material.density;
  }
  if (question.unknown) row.u_area_mass = u_unknown_;
}

Row Answerer::row_at(const Question& question, Energy energy) {
  set_values(question, energy);
  Row row;
  row.energy = energy;
  row.layers = values_;
  if (question.layers.size() == 1) set_single(question, row);
  if (!question.has_thickness()) return row;
  set_thickness(question, row);
  double mu_x = 0;
  for (const auto& value : values_) mu_x += value.mu_x;
  row.mu_x = mu_x;
  row.transmission = std::exp(-mu_x);
  row.u_transmission = *row.transmission * u_of_mu_x(values_);
  return row;
}

// The uncertainty of an unknown thickness: the change of it that makes up for
// that of the transmission.
physics::AreaMass Answerer::u_of_unknown(const Question& question,
                                         std::span<const physics::Line> lines) {
  double u = 0;
  double slope = 0;
  for (const auto& line : lines) {
    set_values(question, line.energy);
    double mu_x = 0;
    for (const auto& value : values_) mu_x += value.mu_x;
    const double share = weight_of(line, settings_.weighting) * std::exp(-mu_x);
    u += share * u_of_mu_x(values_);
    slope += share * values_[*question.unknown].mu_rho.cm2_g;
  }
  return {slope > 0 ? u / slope : 0};
}

void Answerer::solve(Question& question, std::span<const physics::Line> lines) {
  auto& layer = question.layers[*question.unknown];
  try {
    layer.d = thickness_for(question.layers, *question.unknown, question.wanted,
                            lines, settings_.weighting, settings_.rule,
                            *settings_.data);
  } catch (const physics::InputError& error) {
    const std::size_t at = question.thicknesses[*question.unknown].at;
    throw physics::InputError(error.message(), question.column(at),
                              error.hint());
  }
  u_unknown_ = u_of_unknown(question, lines);
}

std::span<const physics::Line> Answerer::lines_of(const Beam& beam) {
  lines_.clear();
  for (const auto& line : beam.source->lines) {
    lines_.push_back({line.energy, line.intensity});
  }
  return lines_;
}

void Answerer::answer_source(Question& question, const Beam& beam,
                             Writer& writer) {
  if (question.unknown) solve(question, lines_of(beam));
  Sum sum(settings_.weighting);
  Row row;
  for (const auto& line : beam.source->lines) {
    row = row_at(question, line.energy);
    row.source = beam.source;
    row.line = &line;
    row.weight = line.intensity;
    sum.add(row);
    writer.row(row);
  }
  if (question.has_thickness()) writer.row(sum.row(row));
}

void Answerer::answer_energies(Question& question, const Beam& beam,
                               Writer& writer) {
  for (std::size_t i = 0; i < beam.count; ++i) {
    const physics::Line line{beam.energy(i)};
    if (question.unknown) solve(question, {&line, 1});
    writer.row(row_at(question, line.energy));
  }
}

void Answerer::check_solvable(Question& question) {
  for (const auto& beam : question.beams) {
    if (beam.kind == Beam::Kind::kSource) {
      solve(question, lines_of(beam));
      continue;
    }
    for (std::size_t i = 0; i < beam.count; ++i) {
      const physics::Line line{beam.energy(i)};
      solve(question, {&line, 1});
    }
  }
}

// The parabola and mu_en/rho have tables of their own, which may end earlier
// than those that the words were held against.
void Answerer::check_tables(const Question& question) {
  const bool same =
      settings_.rule == physics::Rule::kPchip && !settings_.energy_absorption;
  if (same) return;
  for (const auto& beam : question.beams) {
    try {
      const bool source = beam.kind == Beam::Kind::kSource;
      row_at(question,
             source ? beam.source->lines.front().energy : beam.energy(0));
      row_at(question, source ? beam.source->lines.back().energy
                              : beam.energy(beam.count - 1));
    } catch (const physics::OutsideTable& outside) {
      throw physics::InputError(outside_in_words(outside, *settings_.data),
                                question.column(beam.at));
    }
  }
}

void Answerer::answer(Question& question, Writer& writer) {
  add_notes(question, *settings_.data);
  check_strict(question.notes, settings_);
  // Nothing is printed of what cannot be answered in full.
  check_tables(question);
  if (question.unknown) check_solvable(question);
  writer.begin(question);
  for (const auto& beam : question.beams) {
    if (beam.kind == Beam::Kind::kSource) {
      answer_source(question, beam, writer);
    } else {
      answer_energies(question, beam, writer);
    }
  }
  writer.end();
}

}  // namespace attenuate
