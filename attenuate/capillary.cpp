// attenuate capillary: what passes a powder in a round capillary.

#include "physics/capillary.h"

#include <cmath>

#include "attenuate/notes.h"
#include "attenuate/number.h"
#include "attenuate/planner.h"
#include "attenuate/planners.h"
#include "physics/errors.h"
#include "physics/layers.h"

namespace attenuate {
namespace {

using physics::InputError;

constexpr char kUsage[] =
    R"(attenuate capillary MATERIAL --diameter 0.7mm [--packing 0.6] ENERGY
[+ MATERIAL THICKNESS]: mu R and mu D of a powder in a capillary, and what passes.
The density is that of the compact material; other layers are flat, both walls
together.

  attenuate capillary Fe2O3@5.26 --diameter 0.7mm --packing 0.6 17.48
  attenuate capillary hematite --diameter 0.3mm 8:60:0.5 --plot

--diameter 0.7mm   of the powder, inside
--packing 0.6      part of the volume that is filled (0.6)
--plot --svg FILE  transmission over energy, or over diameter for one energy
--tsv --csv --json --jsonl --digits N --data DIR --strict as everywhere
)";

// A range may be fine, not endless: each energy is a row in memory.
constexpr std::size_t kMaxEnergies = 100'000;

struct Typed {
  std::string diameter;
  std::string packing = "0.6";
};

std::vector<physics::Energy> energies(const Question& question) {
  std::vector<physics::Energy> result;
  for (const Beam& beam : question.beams) {
    if (beam.count > kMaxEnergies - result.size()) {
      throw InputError(
          "more than " + std::to_string(kMaxEnergies) + " energies",
          question.column(beam.at));
    }
    if (beam.kind == Beam::Kind::kSource) {
      for (const auto& line : beam.source->lines) result.push_back(line.energy);
      continue;
    }
    for (std::size_t i = 0; i < beam.count; ++i)
      result.push_back(beam.energy(i));
  }
  if (result.empty()) {
    throw InputError("no energy given", 0, "in keV (17.48), or a source");
  }
  return result;
}

struct Answer {
  const Question& question;
  const Settings& settings;
  std::size_t sample;
  physics::Length diameter;
  double packing;
  std::vector<physics::Energy> energies;

  const physics::Material& material() const {
    return question.layers[sample].material;
  }
  double mu(physics::Energy energy) const {
    return (physics::mass_attenuation(material(), energy, settings.rule,
                                      *settings.data) *
            *material().density)
               .per_cm *
           packing;
  }
  double others(physics::Energy energy) const {
    return physics::transmission(other_layers(question, sample), energy,
                                 settings.rule, *settings.data);
  }
};

void add_advice(double largest, const Answer& answer, Report& report) {
  const double radius = answer.diameter.cm / 2.0;
  if (largest <= 1.0) {
    report.remarks.push_back(
        "mu R of at most 1: absorption changes intensities smoothly with the "
        "angle, and its correction is safe.");
    return;
  }
  report.remarks.push_back(
      "mu R of " + rounded(largest, 3) +
      " is above 1: what scatters inside hardly comes out, and intensities at "
      "small angles suffer most. " +
      number(20.0 * radius / largest, 3) +
      " mm of inner diameter would have a mu R of 1; a higher energy, or "
      "powder "
      "mixed with something light, helps too.");
  if (largest > 2.5) {
    report.notes.push_back("mu R of " + rounded(largest, 3) +
                           ": corrections for absorption are no longer safe");
  }
}

Report report(const Answer& answer) {
  Report report;
  report.read = layers_read(answer.question, answer.sample);
  report.facts = {value("diameter_mm", "", 10.0 * answer.diameter.cm, "mm"),
                  value("packing", "", answer.packing, "")};
  report.read.push_back(
      "diameter " + length_in_words(answer.diameter.cm) + ", packing " +
      number(answer.packing) + ": " +
      number(answer.packing * answer.material().density->g_cm3) + " g/cm3");
  report.columns = {{"energy_keV", "energy", "keV"},
                    {"mu_per_cm", "mu", "1/cm"},
                    {"mu_r", "mu R", ""},
                    {"mu_d", "mu D", ""},
                    {"transmission_axis", "T", "axis"},
                    {"transmission_section", "T", "section"},
                    {"transmission_width", "T", "width"}};
  double largest = 0.0;
  for (const physics::Energy energy : answer.energies) {
    const double mu = answer.mu(energy);
    const double mu_r = mu * answer.diameter.cm / 2.0;
    const physics::Cylinder passed = physics::cylinder(mu_r);
    const double others = answer.others(energy);
    largest = std::max(largest, mu_r);
    report.rows.push_back({energy.keV, mu, mu_r, 2.0 * mu_r,
                           passed.axis * others, passed.cross_section * others,
                           passed.width * others});
  }
  report.remarks.push_back(
      "T axis: along the diameter. T section: averaged over the cross-section, "
      "each ray by its path. T width: of a beam as wide as the powder.");
  add_advice(largest, answer, report);
  return report;
}

Figure figure(const Answer& answer) {
  Figure figure;
  const bool over_energy = answer.energies.size() > 1;
  const physics::Energy energy = answer.energies.front();
  figure.title = answer.material().read + " in a capillary, packing " +
                 number(answer.packing) +
                 (over_energy ? ", " + length_in_words(answer.diameter.cm)
                              : ", " + number(energy.keV, 5) + " keV");
  figure.x = over_energy ? Axis{"energy", "keV"} : Axis{"diameter", "mm"};
  figure.y = {"transmission", ""};
  figure.series = {{"through the axis", {}},
                   {"averaged over the cross-section", {}},
                   {"of a beam as wide", {}}};
  const auto add = [&](double x, double mu, physics::Length diameter,
                       double others) {
    const physics::Cylinder passed = physics::cylinder(mu * diameter.cm / 2.0);
    figure.series[0].points.push_back({x, passed.axis * others});
    figure.series[1].points.push_back({x, passed.cross_section * others});
    figure.series[2].points.push_back({x, passed.width * others});
  };
  if (over_energy) {
    for (const physics::Energy one : answer.energies)
      add(one.keV, answer.mu(one), answer.diameter, answer.others(one));
  } else {
    const double mu = answer.mu(energy);
    const double others = answer.others(energy);
    constexpr int kPoints = 200;
    const double end = std::max(2.0 * answer.diameter.cm, 2.4 / mu);
    for (int i = 0; i <= kPoints; ++i)
      add(10.0 * end * i / kPoints, mu, {end * i / kPoints}, others);
    figure.marks = {
        {10.0 * answer.diameter.cm, "", length_in_words(answer.diameter.cm)},
        {20.0 / mu, "", "mu R = 1"}};
  }
  figure.origin = origin(answer.settings);
  return figure;
}

Plan plan(const Typed& typed, const Request& request, Question& question) {
  const std::size_t sample = bare_sample_layer(question);
  const physics::Material& material = question.layers[sample].material;
  if (!material.density) {
    throw InputError("a capillary of " + material.typed + " needs a density", 0,
                     material.typed + "@5 for 5 g/cm3");
  }
  if (typed.diameter.empty())
    throw InputError("no diameter given", 0, "--diameter 0.7mm");
  const Answer answer{question,
                      request.settings,
                      sample,
                      length_option("--diameter", typed.diameter),
                      number_option("--packing", typed.packing, 1e-6, 1.0),
                      energies(question)};
  add_notes(question, *request.settings.data);
  Plan result{report(answer), {}};
  if (request.draws()) result.figure = figure(answer);
  return result;
}

}  // namespace

int plan_capillary(std::span<const std::string_view> arguments,
                   Output& output) {
  Typed typed;
  return run_planner(
      arguments,
      {kUsage,
       {{"--diameter", &typed.diameter}, {"--packing", &typed.packing}},
       [&](const Request& request, Question& question) {
         return plan(typed, request, question);
       }},
      output);
}

}  // namespace attenuate
