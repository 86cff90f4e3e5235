#include "attenuate/planner.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <numbers>

#include "attenuate/complaint.h"
#include "attenuate/echo.h"
#include "attenuate/help.h"
#include "attenuate/notes.h"
#include "attenuate/quantity.h"
#include "attenuate/tables.h"
#include "attenuate/words.h"
#include "physics/errors.h"

namespace attenuate {
namespace {

// The terminal's width; 80 columns on a pipe. A row is left for the prompt.
Canvas canvas() {
  Canvas canvas;
  const char* const no_color = std::getenv("NO_COLOR");
  if (::isatty(STDOUT_FILENO) == 1) {
    canvas.colour = no_color == nullptr || *no_color == '\0';
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
      canvas.columns = size.ws_col;
  }
  return canvas;
}

void write_svg(const std::string& file, const std::string& text) {
  std::ofstream out(file, std::ios::binary);
  out << text;
  out.close();
  if (!out) throw WriteError("cannot write " + file);
}

}  // namespace

int run_planner(std::span<const std::string_view> arguments,
                const Planner& planner, Output& output) {
  const Request request = read_options(arguments, planner.options);
  if (request.told == Told::kHelp || request.told == Told::kHelpAll) {
    output.text(planner.usage);
    return 0;
  }
  if (request.told == Told::kVersion) {
    output.text(version(request.settings));
    return 0;
  }
  static constexpr std::array<std::string_view, 6> kUsed = {
      "--plot", "--svg", "--digits", "--strict", "--rule", "--data"};
  refuse_unused(request, kUsed, "a planner");
  Question question;
  try {
    Reader(*request.settings.data)
        .read(request.words, question, Needs::kLayers);
    Plan plan = planner.answer(request, question);
    plan.report.question = question.typed;
    plan.report.notes.insert(plan.report.notes.begin(), question.notes.begin(),
                             question.notes.end());
    check_strict(plan.report.notes, request.settings);
    if (!show_figure(plan.figure, request, output))
      write_report(plan.report, request.settings, output);
    return 0;
  } catch (const physics::InputError& error) {
    complain(complaint(error, question.typed));
    return kRefused;
  } catch (const physics::OutsideTable& error) {
    complain(complaint(
        physics::InputError(outside_in_words(error, *request.settings.data), 0),
        question.typed));
    return kRefused;
  }
}

bool show_figure(const Figure& figure, const Request& request, Output& output) {
  if (request.svg == "-") {
    output.text(svg(figure));
    return true;
  }
  if (request.svg) write_svg(*request.svg, svg(figure));
  if (request.plot) output.text(braille(figure, canvas()));
  return request.plot;
}

double number_option(const std::string& name, const std::string& text,
                     double least, double most) {
  std::string_view digits = text;
  if (digits.ends_with('%')) digits.remove_suffix(1);
  double value = 0.0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value);
  if (digits.empty() || error != std::errc() || stop != end ||
      std::isnan(value)) {
    throw physics::InputError(name + " takes a number, not '" + text + "'", 0);
  }
  if (value < least || value > most) {
    throw physics::InputError(
        name + " " + text + " is not from " + number(least) + " to " +
            (std::isinf(most) ? "any number" : number(most)),
        0);
  }
  return value;
}

physics::Length length_option(const std::string& name,
                              const std::string& text) {
  const LengthOrAreaMass read = [&] {
    try {
      return thickness(text);
    } catch (const physics::InputError& error) {
      throw physics::InputError(name + " " + text + ": " + error.message(), 0,
                                error.hint());
    }
  }();
  if (!read.length || !(read.length->cm > 0.0)) {
    throw physics::InputError(
        name + " takes a length above 0, not '" + text + "'", 0,
        name + " 13mm");
  }
  return *read.length;
}

double disc_area(physics::Length diameter) {
  return std::numbers::pi / 4.0 * diameter.cm * diameter.cm;
}

std::size_t sample_layer(const Question& question) {
  std::optional<std::size_t> sample;
  for (std::size_t i = 0; i < question.layers.size(); ++i) {
    if (question.thicknesses[i].given != Given::kNothing) continue;
    if (sample) {
      throw physics::InputError(
          question.layers[*sample].material.typed + " and " +
              question.layers[i].material.typed + " have no thickness",
          0, "the sample alone is without one");
    }
    sample = i;
  }
  if (question.unknown) {
    throw physics::InputError("a planner finds the thickness itself", 0,
                              "without T= and mux=");
  }
  return sample.value_or(0);
}

std::size_t bare_sample_layer(const Question& question) {
  const std::size_t sample = sample_layer(question);
  const Thickness& thickness = question.thicknesses[sample];
  if (thickness.given != Given::kNothing) {
    throw physics::InputError(
        "the sample is planned without a thickness of its own",
        question.column(thickness.at), "without " + thickness.typed);
  }
  return sample;
}

std::vector<physics::Layer> other_layers(const Question& question,
                                         std::size_t sample) {
  std::vector<physics::Layer> others = question.layers;
  others.erase(others.begin() + static_cast<std::ptrdiff_t>(sample));
  return others;
}

std::vector<std::string> layer_read(const Question& question,
                                    std::size_t layer) {
  const auto& material = question.layers[layer].material;
  std::vector<std::string> lines = {echo(question, layer)};
  const std::string density = density_origin(material);
  if (!density.empty()) lines.push_back("   " + density);
  for (const std::string& line : fractions(material, 77))
    lines.push_back("   " + line);
  return lines;
}

std::vector<std::string> layers_read(const Question& question,
                                     std::size_t sample) {
  std::vector<std::string> lines = layer_read(question, sample);
  for (std::size_t i = 0; i < question.layers.size(); ++i) {
    if (i != sample) lines.push_back("in the beam: " + echo(question, i));
  }
  return lines;
}

std::string origin(const Settings& settings) {
  // What the version says in brackets and behind them is for --version.
  const std::string version(settings.data->version());
  const std::string tables = version.substr(0, version.find(" ("));
  return std::string(kProgram) + "; " + tables +
         (settings.rule == physics::Rule::kPchip ? "; monotone cubic"
                                                 : "; parabola");
}

Fact value(std::string key, std::string label, double value, std::string unit) {
  return {std::move(key), std::move(label), value, std::move(unit), ""};
}

Fact word(std::string key, std::string label, std::string text) {
  return {std::move(key), std::move(label), std::move(text), "", ""};
}

}  // namespace attenuate
