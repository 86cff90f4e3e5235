#include "attenuate/spectrum.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <numeric>

#include "attenuate/complaint.h"
#include "attenuate/echo.h"
#include "attenuate/notes.h"
#include "attenuate/number.h"
#include "attenuate/planner.h"
#include "attenuate/tables.h"
#include "attenuate/words.h"
#include "physics/errors.h"
#include "physics/spectrum.h"

namespace attenuate {
namespace {

using physics::AreaMass;
using physics::InputError;

// Up to these the bins are lines, and drawn as such.
constexpr std::size_t kMostSticks = 40;

std::vector<physics::Line> read(const std::string& file) {
  std::error_code none;
  if (std::filesystem::is_directory(file, none))
    throw InputError(file + " is a directory", 0);
  try {
    if (file == "-") return physics::read_spectrum(std::cin);
    std::ifstream in(file, std::ios::binary);
    if (!in) {
      throw InputError("cannot read " + file + ": " + std::strerror(errno), 0);
    }
    return physics::read_spectrum(in);
  } catch (const InputError& error) {
    if (error.message().find(file) != std::string::npos) throw;
    throw InputError(file + ": " + error.message(), 0, error.hint());
  }
}

struct Answer {
  const Question& question;
  const Settings& settings;
  std::string file;
  std::vector<physics::Line> lines;
  std::vector<physics::Layer> layers;
  // The layer that half values and coefficients are for, and the beam in front
  // of it.
  std::size_t layer = 0;
  physics::Bins bins;

  AreaMass d() const { return layers[layer].d; }
  bool has_thickness() const { return question.has_thickness(); }
  double transmission(physics::Weighting weighting) const {
    return physics::transmission(layers, lines, weighting, settings.rule,
                                 *settings.data);
  }
};

std::string in_words(const Answer& answer, AreaMass d) {
  const auto& density = answer.layers[answer.layer].material.density;
  const int digits = answer.settings.digits;
  const std::string mass = area_mass_in_words(d.g_cm2, digits);
  return density ? length_in_words((d / *density).cm, digits) + " = " + mass
                 : mass;
}

void add_half_values(const Answer& answer, std::vector<Fact>& facts) {
  const AreaMass half = thickness_for(answer.bins, 0.5);
  const AreaMass quarter = thickness_for(answer.bins, 0.25);
  const AreaMass second{quarter.g_cm2 - half.g_cm2};
  const auto add = [&](const char* key, const char* label, AreaMass d) {
    facts.push_back(value(key, label, d.g_cm2, "g/cm2"));
    facts.back().shown = in_words(answer, d);
  };
  add("half_value_g_cm2", "first half value", half);
  add("second_half_value_g_cm2", "second half value", second);
  facts.push_back(value("homogeneity", "homogeneity (first/second)",
                        half.g_cm2 / second.g_cm2, ""));
}

void add_behind(const Answer& answer, std::vector<Fact>& facts) {
  const bool energy = answer.settings.by_energy();
  const char* const photons_key = "transmission_photons";
  const char* const energy_key = "transmission_energy";
  facts.push_back(
      value(energy ? energy_key : photons_key,
            energy ? "transmission of energy" : "transmission of photons",
            answer.transmission(answer.settings.weighting), ""));
  facts.push_back(value(
      energy ? photons_key : energy_key, energy ? "of photons" : "of energy",
      answer.transmission(energy ? physics::Weighting::kPhotons
                                 : physics::Weighting::kEnergy),
      ""));
  facts.push_back(value("thickness_g_cm2", "", answer.d().g_cm2, "g/cm2"));
  const auto mu = physics::effective(answer.bins, answer.d());
  facts.push_back(
      value("effective_mu_rho_cm2_g", "effective mu/rho", mu.cm2_g, "cm2/g"));
  const int digits = answer.settings.plan_digits();
  facts.back().shown = number(mu.cm2_g, digits) + " cm2/g";
  if (const auto& density = answer.layers[answer.layer].material.density) {
    facts.push_back(
        value("effective_mu_per_cm", "", (mu * *density).per_cm, "1/cm"));
    facts[facts.size() - 2].shown +=
        ", mu " + number((mu * *density).per_cm, digits) + " 1/cm";
  }
  auto& shown = facts.back().label.empty() ? facts[facts.size() - 2].shown
                                           : facts.back().shown;
  shown += ", for " + in_words(answer, answer.d());
}

Report report(const Answer& answer) {
  Report report;
  for (std::size_t i = 0; i < answer.layers.size(); ++i) {
    const auto lines = layer_read(answer.question, i);
    report.read.insert(report.read.end(), lines.begin(), lines.end());
  }
  const std::string first = number(answer.lines.front().energy.keV);
  const std::string last = number(answer.lines.back().energy.keV);
  report.read.push_back(answer.file + ": " +
                        (answer.lines.size() == 1
                             ? "one bin with photons, " + first
                             : std::to_string(answer.lines.size()) +
                                   " bins with photons, " + first + " to " +
                                   last) +
                        " keV");
  if (answer.settings.by_energy()) report.read.emplace_back(kByEnergy);
  auto& facts = report.facts;
  facts.push_back(value("mean_keV", "mean energy in front",
                        mean_energy(answer.bins).keV, "keV"));
  if (answer.has_thickness()) {
    facts.push_back(value("mean_behind_keV", "mean energy behind",
                          mean_energy(answer.bins, answer.d()).keV, "keV"));
    if (answer.question.unknown) {
      facts.push_back(
          value("wanted_g_cm2", "thickness wanted", answer.d().g_cm2, "g/cm2"));
      facts.back().shown = in_words(answer, answer.d());
    }
    add_behind(answer, facts);
  }
  facts.push_back(value("mean_mu_rho_cm2_g", "mu/rho of a thin layer",
                        physics::effective(answer.bins, {}).cm2_g, "cm2/g"));
  add_half_values(answer, facts);
  if (answer.layers.size() > 1) {
    report.remarks.push_back(
        "Mean energies, mu/rho and half values are those of " +
        answer.layers[answer.layer].material.read +
        ", in the beam that the layers before it let through.");
  }
  return report;
}

Figure figure(const Answer& answer) {
  Figure figure;
  figure.title = materials_read(answer.question) + ", spectrum of " +
                 std::filesystem::path(answer.file).filename().string();
  figure.x = {"energy", "keV"};
  figure.y = {"photons per bin", ""};
  const bool sticks = answer.lines.size() <= kMostSticks;
  Series front{"in front", {}, sticks};
  Series behind{"behind", {}, sticks};
  double most_behind = 0.0;
  double most = 0.0;
  for (const physics::Line& line : answer.lines) {
    const double passed =
        line.weight * physics::transmission(answer.layers, line.energy,
                                            answer.settings.rule,
                                            *answer.settings.data);
    front.points.push_back({line.energy.keV, line.weight});
    behind.points.push_back({line.energy.keV, passed});
    most = std::max(most, line.weight);
    most_behind = std::max(most_behind, passed);
  }
  const auto& keV = answer.lines;
  if (answer.lines.size() == 1) {
    throw InputError("a spectrum of one bin is nothing to plot", 0);
  }
  figure.series.push_back(std::move(front));
  if (answer.has_thickness()) {
    // What is left of a beam that hardly passes shows on logarithms only.
    figure.y.logarithmic = most_behind < 0.1 * most;
    if (figure.y.logarithmic) {
      // Bins without a part in it would stretch the axis without end.
      const double foot = 1e-4 * std::max(most_behind, 1e-8 * most);
      for (Series* const series : {figure.series.data(), &behind}) {
        for (Point& point : series->points)
          if (point.y < foot) point.y = 0.0;
      }
    }
    figure.series.push_back(std::move(behind));
    const double before = mean_energy(answer.bins).keV;
    const double after = mean_energy(answer.bins, answer.d()).keV;
    figure.marks = {{before, "mean", number(before, 3)},
                    {after, "mean", number(after, 3)}};
  }
  figure.x.logarithmic = keV.back().energy.keV > 30.0 * keV.front().energy.keV;
  figure.origin = origin(answer.settings);
  return figure;
}

int answer(const Request& request, Question& question, Output& output) {
  const Settings& settings = request.settings;
  Reader(*settings.data).read(request.words, question, Needs::kThicknesses);
  if (!question.beams.empty()) {
    throw InputError("--spectrum stands for the energies",
                     question.column(question.beams[0].at),
                     "without energy or source");
  }
  Answer answer{question,
                settings,
                *request.spectrum,
                read(*request.spectrum),
                question.layers,
                question.layers.size() - 1,
                {}};
  add_notes(question, answer.lines, *settings.data);
  check_strict(question.notes, settings);
  if (question.unknown) {
    answer.layer = *question.unknown;
    answer.layers[answer.layer].d = physics::thickness_for(
        answer.layers, answer.layer, question.wanted, answer.lines,
        settings.weighting, settings.rule, *settings.data);
  }
  const std::span<const physics::Layer> before(answer.layers.data(),
                                               answer.layer);
  answer.bins =
      physics::bins(answer.layers[answer.layer].material, answer.lines, before,
                    settings.weighting, settings.rule, *settings.data);
  if (request.draws() && show_figure(figure(answer), request, output)) return 0;
  Report written = report(answer);
  written.question = question.typed;
  written.notes = question.notes;
  write_report(written, settings, output);
  return 0;
}

}  // namespace

int answer_spectrum(const Request& request, Output& output) {
  Question question;
  try {
    return answer(request, question, output);
  } catch (const InputError& error) {
    complain(complaint(error, question.typed));
  } catch (const physics::OutsideTable& error) {
    complain(complaint(
        InputError(*request.spectrum + ": " +
                       outside_in_words(error, *request.settings.data),
                   0, "leave these bins out of the file"),
        question.typed));
  }
  return kRefused;
}

}  // namespace attenuate
