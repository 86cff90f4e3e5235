// What the planners share: options, words, report and figure.

#ifndef ATTENUATE_PLANNER_H_
#define ATTENUATE_PLANNER_H_

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "attenuate/options.h"
#include "attenuate/output.h"
#include "attenuate/plot.h"
#include "attenuate/question.h"
#include "attenuate/report.h"
#include "physics/quantities.h"

namespace attenuate {

struct Plan {
  Report report;
  // Drawn where it is asked for; blank series where nothing can be drawn.
  Figure figure;
};

struct Planner {
  const char* usage;  // for --help
  std::vector<OwnOption> options;
  std::function<Plan(const Request&, Question&)> answer;
};

// Reads options and words, answers, writes. Returns the exit status.
int run_planner(std::span<const std::string_view> arguments,
                const Planner& planner, Output& output);

// Writes the figure as SVG, and to the terminal in place of a report, where the
// request wants these. True: nothing else is to be written.
// Throws physics::InputError: there is nothing to draw; WriteError.
bool show_figure(const Figure& figure, const Request& request, Output& output);

// The number of an option: finite, or infinite ("inf") where that has a
// meaning. Throws physics::InputError: it is not one, or not within `least` to
// `most`.
double number_option(const std::string& name, const std::string& text,
                     double least, double most);

// "13mm", above 0.
physics::Length length_option(const std::string& name, const std::string& text);

// What a disc or a capillary of this diameter covers, in cm2.
double disc_area(physics::Length diameter);

// Which layer the plan is for: the one without thickness, or else the first.
// Throws physics::InputError: several are without.
std::size_t sample_layer(const Question& question);

// The same where a thickness of the sample would count for nothing.
// Throws physics::InputError: it has one.
std::size_t bare_sample_layer(const Question& question);

// The others, in the beam together with the sample.
std::vector<physics::Layer> other_layers(const Question& question,
                                         std::size_t sample);

// A layer with the origin of its density and its mass fractions.
std::vector<std::string> layer_read(const Question& question,
                                    std::size_t layer);

// The same for the sample and what else is in the beam.
std::vector<std::string> layers_read(const Question& question,
                                     std::size_t sample);

// Program, tables and rule, for the foot of a figure.
std::string origin(const Settings& settings);

Fact value(std::string key, std::string label, double value, std::string unit);
Fact word(std::string key, std::string label, std::string text);

}  // namespace attenuate

#endif  // ATTENUATE_PLANNER_H_
