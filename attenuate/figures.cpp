#include "attenuate/figures.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "attenuate/notes.h"
#include "attenuate/number.h"
#include "attenuate/planner.h"
#include "attenuate/tables.h"
#include "attenuate/words.h"
#include "physics/errors.h"
#include "physics/layers.h"
#include "physics/table.h"

namespace attenuate {
namespace {

using physics::InputError;

constexpr int kPoints = 500;
// More edges than these have no room for their names: K and L3 have to do.
constexpr std::size_t kMostEdges = 16;

struct Range {
  double from = 1.0;
  double to = 1000.0;
};

struct Subject {
  std::vector<Question> questions;  // the first with the energies
  const Settings& settings;

  const std::vector<Beam>& beams() const { return questions[0].beams; }
  bool single_energies() const {
    return !beams().empty() &&
           std::all_of(beams().begin(), beams().end(), [](const Beam& beam) {
             return beam.kind == Beam::Kind::kEnergy ||
                    beam.kind == Beam::Kind::kSource;
           });
  }
};

std::vector<double> energies(const std::vector<Beam>& beams) {
  std::vector<double> all;
  for (const Beam& beam : beams) {
    if (beam.kind == Beam::Kind::kSource) {
      for (const auto& line : beam.source->lines)
        all.push_back(line.energy.keV);
      continue;
    }
    all.push_back(beam.energy(0).keV);
    if (beam.count > 1) all.push_back(beam.energy(beam.count - 1).keV);
  }
  std::sort(all.begin(), all.end());
  return all;
}

// What can be answered for every material.
Range limits(const Subject& subject) {
  Range range{0.0, 1e9};
  for (const Question& question : subject.questions) {
    for (const auto& layer : question.layers) {
      for (const auto& part : layer.material.constituents) {
        const auto& table = subject.settings.data->table(part.z);
        range.from = std::max(range.from, first_energy(table).keV);
        range.to = std::min(range.to, last_energy(table).keV);
      }
    }
  }
  return range;
}

// The energies on the axis: the range asked for, three times as far to both
// sides of single ones, or 1 keV to 1 MeV.
Range energy_range(const Subject& subject) {
  const Range possible = limits(subject);
  if (subject.beams().empty())
    return {possible.from, std::min(possible.to, 1000.0)};
  const std::vector<double> asked = energies(subject.beams());
  if (!subject.single_energies()) return {asked.front(), asked.back()};
  return {std::max(asked.front() / 3.0, possible.from),
          std::min(asked.back() * 3.0, possible.to)};
}

struct NamedEdge {
  int z = 0;
  const physics::Edge* edge = nullptr;
};

std::vector<NamedEdge> edges_within(const Subject& subject, Range range) {
  std::set<int> elements;
  for (const Question& question : subject.questions) {
    for (const auto& layer : question.layers) {
      for (const auto& part : layer.material.constituents)
        elements.insert(part.z);
    }
  }
  std::vector<NamedEdge> found;
  for (const int z : elements) {
    for (const auto& edge : physics::edges(z)) {
      const double keV = edge.energy.keV;
      if (edge.in_table && keV > range.from && keV <= range.to)
        found.push_back({z, &edge});
    }
  }
  return found;
}

// Even on the axis, and both sides of every edge.
std::vector<double> points(Range range, bool logarithmic,
                           const std::vector<NamedEdge>& edges) {
  std::vector<double> result;
  for (int i = 0; i < kPoints; ++i) {
    const double part = static_cast<double>(i) / (kPoints - 1);
    // The ends are not left to rounding: they may be those of the table.
    result.push_back(i == 0             ? range.from
                     : i == kPoints - 1 ? range.to
                     : logarithmic
                         ? range.from * std::pow(range.to / range.from, part)
                         : range.from + (range.to - range.from) * part);
  }
  for (const NamedEdge& edge : edges) {
    result.push_back(edge.edge->energy.keV * (1.0 - 1e-12));
    result.push_back(edge.edge->energy.keV);
  }
  std::sort(result.begin(), result.end());
  return result;
}

std::string with_thickness(const Question& question) {
  std::string text;
  for (std::size_t i = 0; i < question.layers.size(); ++i) {
    text += (i > 0 ? " + " : "") + question.layers[i].material.read;
    if (!question.thicknesses[i].typed.empty())
      text += ' ' + question.thicknesses[i].typed;
  }
  return text;
}

double spread(const Figure& figure) {
  double least = 1e300;
  double most = 0.0;
  for (const Series& series : figure.series) {
    for (const Point& point : series.points) {
      least = std::min(least, point.y);
      most = std::max(most, point.y);
    }
  }
  return most / std::max(least, 1e-300);
}

// Which edges have names in a figure: those that make a step to be seen.
void add_edges(const Subject& subject, const std::vector<NamedEdge>& edges,
               Figure& figure) {
  const bool crowded = edges.size() > kMostEdges;
  for (const NamedEdge& edge : edges) {
    if (crowded && edge.edge->shell != "K" && edge.edge->shell != "L3")
      continue;
    const auto& element =
        subject.settings.data->elements()[static_cast<std::size_t>(edge.z - 1)];
    figure.marks.push_back({edge.edge->energy.keV, std::string(element.symbol),
                            std::string(edge.edge->shell)});
  }
}

Figure over_energy(const Subject& subject, bool thickness) {
  Figure figure;
  const Range range = energy_range(subject);
  const auto edges = edges_within(subject, range);
  figure.x = {"energy", "keV", range.to > 5.0 * range.from};
  figure.y = thickness ? Axis{"transmission", ""} : Axis{"mu/rho", "cm²/g"};
  const std::vector<double> axis = points(range, figure.x.logarithmic, edges);
  const Settings& settings = subject.settings;
  for (const Question& question : subject.questions) {
    Series series{
        thickness ? with_thickness(question) : question.layers[0].material.read,
        {}};
    for (const double keV : axis) {
      series.points.push_back(
          {keV,
           thickness
               ? physics::transmission(question.layers, physics::Energy{keV},
                                       settings.rule, *settings.data)
               : physics::mass_attenuation(question.layers[0].material, {keV},
                                           settings.rule, *settings.data)
                     .cm2_g});
    }
    figure.series.push_back(std::move(series));
  }
  figure.y.logarithmic = !thickness && spread(figure) > 20.0;
  const std::string what =
      thickness ? "Transmission" : "Mass attenuation coefficient";
  figure.title =
      figure.series.size() == 1 ? what + " of " + figure.series[0].name : what;
  add_edges(subject, edges, figure);
  if (subject.single_energies()) {
    for (const double keV : energies(subject.beams()))
      figure.marks.push_back({keV, "keV", number(keV, 4)});
  }
  return figure;
}

// Over the thickness of one layer, each line a curve.
Figure over_thickness(const Subject& subject) {
  Figure figure;
  const Settings& settings = subject.settings;
  const Question& first = subject.questions[0];
  const std::size_t layer = first.unknown.value_or(first.layers.size() - 1);
  const Thickness& given = first.thicknesses[layer];
  const std::vector<double> lines = energies(subject.beams());
  if (lines.size() * subject.questions.size() > kMaxSeries) {
    throw InputError(std::to_string(lines.size() * subject.questions.size()) +
                         " curves in one figure: more than " +
                         std::to_string(kMaxSeries) + " cannot be told apart",
                     first.column(subject.beams()[0].at),
                     "fewer energies, or a range");
  }
  double most = first.layers[layer].d.g_cm2 * 2.0;
  if (first.unknown) {
    for (const double keV : lines) {
      const physics::Line line{{keV}, 1.0};
      most = std::max(
          most, 1.5 * physics::thickness_for(first.layers, layer, first.wanted,
                                             {&line, 1}, settings.weighting,
                                             settings.rule, *settings.data)
                          .g_cm2);
    }
  }
  const auto& density = first.layers[layer].material.density;
  const bool length = density && given.given != Given::kAreaMass &&
                      subject.questions.size() == 1;
  const double end = length ? (physics::AreaMass{most} / *density).cm : most;
  const double unit = length ? (end < 0.1 ? 1e4 : 10.0) : 1e3;
  figure.x = {"thickness of " + first.layers[layer].material.read,
              length ? (end < 0.1 ? "um" : "mm") : "mg/cm²"};
  figure.y = {"transmission", ""};
  for (const Question& question : subject.questions) {
    for (const double keV : lines) {
      Series series{number(keV, 5) + " keV", {}};
      if (subject.questions.size() > 1)
        series.name = materials_read(question) + " " + series.name;
      std::vector<physics::Layer> layers = question.layers;
      const std::size_t varied = std::min(layer, layers.size() - 1);
      for (int i = 0; i <= kPoints; ++i) {
        layers[varied].d.g_cm2 = most * i / kPoints;
        series.points.push_back(
            {unit * end * i / kPoints,
             physics::transmission(layers, physics::Energy{keV}, settings.rule,
                                   *settings.data)});
      }
      figure.series.push_back(std::move(series));
    }
  }
  if (!first.unknown) {
    figure.marks.push_back({unit * end / 2.0, "", given.typed});
  }
  figure.title = "Transmission of " + (subject.questions.size() == 1
                                           ? materials_read(first)
                                           : std::string("several materials"));
  if (figure.series.size() == 1) figure.title += ", " + figure.series[0].name;
  return figure;
}

}  // namespace

bool draw_question(const Request& request, Question& question, Output& output) {
  Reader(*request.settings.data)
      .read(request.words, question, Needs::kThicknesses);
  Subject subject{{question}, request.settings};
  const bool thickness = subject.questions[0].has_thickness();
  for (const std::string& words : request.beside) {
    Question other;
    try {
      Reader(*request.settings.data)
          .read_line(words, other, Needs::kThicknesses);
    } catch (const InputError&) {
      // The column counts in these words.
      question.typed = words;
      throw;
    }
    if (!other.beams.empty()) {
      throw InputError("--beside '" + words +
                           "' has the energies of the "
                           "question",
                       0, "material and thickness alone");
    }
    if (other.has_thickness() != thickness || other.unknown) {
      throw InputError(
          "--beside '" + words + "' and the question differ in what they ask",
          0, "a thickness for every material, or for none");
    }
    subject.questions.push_back(std::move(other));
  }
  for (Question& each : subject.questions) {
    each.beams = question.beams;
    add_notes(each, *request.settings.data);
    check_strict(each.notes, request.settings);
  }
  const bool unknown = subject.questions[0].unknown.has_value();
  if (unknown && !subject.single_energies()) {
    throw InputError("a thickness is not drawn over the energy", 0,
                     "single energies, or a thickness in place of T= or mux=");
  }
  Figure figure;
  try {
    figure = thickness && subject.single_energies()
                 ? over_thickness(subject)
                 : over_energy(subject, thickness);
  } catch (const physics::OutsideTable& error) {
    throw InputError(outside_in_words(error, *request.settings.data), 0);
  }
  figure.origin = origin(request.settings);
  return show_figure(figure, request, output);
}

}  // namespace attenuate
