#include "attenuate/notes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "attenuate/number.h"
#include "physics/errors.h"
#include "physics/table.h"

namespace attenuate {
namespace {

using physics::Energy;

// Chemistry and the neighbourhood of the atom move mu/rho so near to an edge
// by more than a table of free atoms can know.
constexpr double kNear_keV = 0.2;
// So near, the value on the other side may be the one that is wanted.
constexpr double kBothSides = 0.004;
// Energies of a range that are looked at for doubts.
constexpr std::size_t kSamples = 4000;

constexpr char kWhy[] =
    "chemistry moves mu/rho there by more than the tables know";

void add(Question& question, std::string note) {
  auto& notes = question.notes;
  if (std::find(notes.begin(), notes.end(), note) == notes.end()) {
    notes.push_back(std::move(note));
  }
}

std::vector<int> elements_of(const Question& question) {
  std::vector<int> elements;
  for (const auto& layer : question.layers) {
    for (const auto& part : layer.material.constituents) {
      if (std::find(elements.begin(), elements.end(), part.z) ==
          elements.end()) {
        elements.push_back(part.z);
      }
    }
  }
  return elements;
}

std::string edge_in_words(const physics::Element& element,
                          const physics::Edge& edge) {
  return std::string(edge.shell) + " edge of " + std::string(element.name);
}

// "mu/rho of iron is 53.2 cm2/g below and 407 above".
std::string both_sides(const physics::Element& element,
                       const physics::Edge& edge, const physics::Data& data) {
  const auto& table = data.table(element.z);
  return "mu/rho of " + std::string(element.name) + " is " +
         number(mass_attenuation_below(table, edge.energy).cm2_g, 4) +
         " cm2/g below it and " +
         number(mass_attenuation(table, edge.energy).cm2_g, 4) + " above";
}

void note_edge(Question& question, Energy energy,
               const physics::Element& element, const physics::Edge& edge,
               const physics::Data& data) {
  const double off = energy.keV - edge.energy.keV;
  std::string note = energy_in_words(energy.keV) + " is ";
  if (off == 0) {
    note += "the " + edge_in_words(element, edge) +
            ", where the upper side is " + "taken; ";
  } else {
    note += number(std::fabs(off) * 1000, 3) + " eV " +
            (off < 0 ? "below the " : "above the ") +
            edge_in_words(element, edge) + "; ";
  }
  const bool close = std::fabs(off) <= kBothSides * edge.energy.keV;
  add(question, note + (close ? both_sides(element, edge, data) : kWhy));
}

// An edge that the table of the element does not have changes no number.
bool matters(const physics::Edge& edge) { return edge.in_table; }

void note_edges(Question& question, Energy energy, int z,
                const physics::Data& data) {
  const auto& element = data.elements()[static_cast<std::size_t>(z) - 1];
  for (const auto& edge : physics::edges(z)) {
    const double off = std::fabs(energy.keV - edge.energy.keV);
    if (matters(edge) &&
        (off <= kNear_keV || off <= kBothSides * edge.energy.keV)) {
      note_edge(question, energy, element, edge, data);
    }
  }
}

void note_edges_between(Question& question, Energy from, Energy to, int z,
                        const physics::Data& data) {
  std::string shells;
  for (const auto& edge : physics::edges(z)) {
    if (!matters(edge) || edge.energy < from || to < edge.energy) continue;
    shells += (shells.empty() ? "" : ", ") + std::string(edge.shell) + " " +
              number(edge.energy.keV) + " keV";
  }
  if (shells.empty()) return;
  const auto& element = data.elements()[static_cast<std::size_t>(z) - 1];
  add(question, "in this range lie edges of " + std::string(element.name) +
                    " (" + shells + "); within 200 eV " + kWhy);
}

void note_doubt(Question& question, Energy energy, int z,
                const physics::Data& data) {
  const std::string_view doubt = data.doubt(z, energy);
  if (!doubt.empty()) add(question, std::string(doubt));
}

void note_range(Question& question, const Beam& beam, int z,
                const physics::Data& data) {
  const Energy from = beam.energy(0);
  const Energy to = beam.energy(beam.count - 1);
  note_edges_between(question, from, to, z, data);
  Beam samples = beam;
  if (beam.count > kSamples) {
    samples.kind = Beam::Kind::kLogSteps;
    samples.count = kSamples;
    samples.to = to;
  }
  for (std::size_t i = 0; i < samples.count; ++i) {
    note_doubt(question, samples.energy(i), z, data);
  }
}

void note_energy(Question& question, Energy energy, int z,
                 const physics::Data& data) {
  note_edges(question, energy, z, data);
  note_doubt(question, energy, z, data);
}

void note_beam(Question& question, const Beam& beam, int z,
               const physics::Data& data) {
  switch (beam.kind) {
    case Beam::Kind::kEnergy:
      note_energy(question, beam.from, z, data);
      break;
    case Beam::Kind::kSource:
      for (const auto& line : beam.source->lines) {
        note_energy(question, line.energy, z, data);
      }
      break;
    default:
      note_range(question, beam, z, data);
  }
}

}  // namespace

void add_notes(Question& question, const physics::Data& data) {
  for (const int z : elements_of(question)) {
    for (const auto& beam : question.beams) note_beam(question, beam, z, data);
  }
}

void add_notes(Question& question, std::span<const physics::Line> lines,
               const physics::Data& data) {
  for (const int z : elements_of(question)) {
    if (lines.size() == 1) {
      note_energy(question, lines[0].energy, z, data);
      continue;
    }
    note_edges_between(question, lines.front().energy, lines.back().energy, z,
                       data);
    for (const auto& line : lines) note_doubt(question, line.energy, z, data);
  }
}

void add_doubts(Question& question, Energy energy, const physics::Data& data) {
  for (const int z : elements_of(question)) {
    note_doubt(question, energy, z, data);
  }
}

void check_strict(const std::vector<std::string>& notes,
                  const Settings& settings) {
  if (!settings.strict || notes.empty()) return;
  throw physics::InputError(notes.front(), 0,
                            "--strict takes no answer with a note");
}

}  // namespace attenuate
