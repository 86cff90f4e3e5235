// attenuate xafs: how much powder shows an absorption edge best.

#include "physics/xafs.h"

#include <cmath>
#include <limits>

#include "attenuate/notes.h"
#include "attenuate/number.h"
#include "attenuate/planner.h"
#include "attenuate/planners.h"
#include "physics/errors.h"
#include "physics/table.h"

namespace attenuate {
namespace {

using physics::InputError;

constexpr char kUsage[] =
    R"(attenuate xafs MATERIAL --edge Fe:K [+ MATERIAL THICKNESS] [ENERGY]: how much
powder for a scan of an edge in transmission. Evaluated 50 eV above the edge, or
at the energy given.

  attenuate xafs Fe2O3 --edge Fe:K --disc 13mm
  attenuate xafs Fe2O3 --edge Fe:K --disc 13mm --diluent BN:5 --plot

--edge Fe:K        element and shell
--mux X            total absorption wanted above the edge (2.6)
--diluent BN:5     5 grams of BN for each of the sample
--disc 13mm        diameter: masses too
--plot --svg FILE  mu x around the edge
--tsv --csv --json --jsonl --digits N --data DIR --strict as everywhere
)";

struct Typed {
  std::string edge, diluent, disc;
  std::string mux = "2.6";
};

const physics::Edge& edge(const std::string& typed) {
  const std::size_t colon = typed.find(':');
  const auto* const element =
      physics::element_with_symbol(typed.substr(0, colon));
  if (typed.empty() || colon == std::string::npos || element == nullptr) {
    throw InputError(
        typed.empty() ? "no edge given" : "'" + typed + "' is no edge", 0,
        "--edge Fe:K");
  }
  return physics::table_edge(element->z, typed.substr(colon + 1));
}

// Behind the last colon stands the ratio: formulas have none.
struct Diluent {
  physics::Material material;
  double ratio = 0.0;
};

std::optional<Diluent> diluent(const std::string& typed,
                               const physics::Data& data) {
  if (typed.empty()) return {};
  const std::size_t colon = typed.rfind(':');
  if (colon == std::string::npos) {
    throw InputError("--diluent " + typed + " has no ratio", 0,
                     "--diluent BN:5 for 5 grams of it for each of the sample");
  }
  try {
    return Diluent{physics::material(typed.substr(0, colon), data),
                   number_option("--diluent " + typed.substr(0, colon) + ":",
                                 typed.substr(colon + 1), 1e-6, 1e6)};
  } catch (const physics::FormulaError& error) {
    throw InputError("--diluent " + typed + ": " + error.message(), 0,
                     error.hint());
  }
}

// Energies of a material around the edge, with both of its sides.
std::vector<double> around(const physics::Edge& edge,
                           const physics::EdgeStep& step) {
  const double reach = std::max(0.08 * edge.energy.keV,
                                2.0 * (step.energy.keV - edge.energy.keV));
  std::vector<double> energies;
  constexpr int kPoints = 150;
  for (int i = kPoints; i >= 1; --i)
    energies.push_back(edge.energy.keV - reach * i / kPoints);
  energies.push_back(edge.energy.keV * (1.0 - 1e-9));
  for (int i = 0; i <= kPoints; ++i)
    energies.push_back(edge.energy.keV + 1.5 * reach * i / kPoints);
  return energies;
}

struct Answer {
  const Question& question;
  const Settings& settings;
  std::size_t sample = 0;
  const physics::Edge& edge;
  physics::EdgeStep step;
  std::optional<Diluent> diluent;
  physics::MassAttenuation mu_diluent;
  double mux = 0.0;
  physics::XafsSample plan;
  std::optional<physics::Length> disc;

  double ratio() const { return diluent ? diluent->ratio : 0.0; }
  double best() const {
    return plan.absorption_binds() ? plan.total_absorption.g_cm2
                                   : plan.unit_step.g_cm2;
  }
  std::string edge_name() const {
    const auto& element =
        settings.data->elements()[static_cast<std::size_t>(edge.z - 1)];
    return std::string(element.symbol) + " " + std::string(edge.shell);
  }
};

void add_mass(const Answer& answer, const std::string& key,
              const std::string& label, double g_cm2, const std::string& then,
              std::vector<Fact>& facts) {
  Fact fact = value(key + "_mg_cm2", label, 1e3 * g_cm2, "mg/cm2");
  const int digits = answer.settings.plan_digits();
  fact.shown = rounded(1e3 * g_cm2, digits) + " mg/cm2";
  std::vector<Fact> more;
  if (answer.disc) {
    const double mass = 1e3 * g_cm2 * disc_area(*answer.disc);
    more.push_back(value(key + "_mg_on_disc", "", mass, "mg"));
    fact.shown += " = " + rounded(mass, digits) + " mg on " +
                  length_in_words(answer.disc->cm);
    if (answer.diluent) {
      more.push_back(
          value(key + "_diluent_mg_on_disc", "", mass * answer.ratio(), "mg"));
      fact.shown += " with " + rounded(mass * answer.ratio(), digits) +
                    " mg of " + answer.diluent->material.typed;
    }
  }
  fact.shown += "; " + then;
  facts.push_back(std::move(fact));
  facts.insert(facts.end(), more.begin(), more.end());
}

Report report(const Answer& answer) {
  Report report;
  report.read = layers_read(answer.question, answer.sample);
  if (answer.diluent) {
    report.read.push_back("diluted with " + number(answer.ratio()) + " x " +
                          answer.diluent->material.read);
  }
  const auto& plan = answer.plan;
  auto& facts = report.facts;
  facts.push_back(value("edge_keV", answer.edge_name() + " edge",
                        answer.edge.energy.keV, "keV"));
  facts.push_back(
      value("energy_keV", "evaluated at", answer.step.energy.keV, "keV"));
  facts.push_back(
      value("above_cm2_g", "mu/rho there", answer.step.above.cm2_g, "cm2/g"));
  facts.push_back(value("below_cm2_g", "without the edge",
                        answer.step.below.cm2_g, "cm2/g"));
  if (answer.diluent) {
    facts.push_back(value("diluent_cm2_g", "mu/rho of the diluent",
                          answer.mu_diluent.cm2_g, "cm2/g"));
  }
  const std::string absorption = "mu x of " + number(answer.mux);
  const std::string step = "edge step of 1";
  const int digits = answer.settings.plan_digits();
  const auto add_absorption = [&] {
    add_mass(answer, "absorption", absorption, plan.total_absorption.g_cm2,
             "edge step " + number(plan.step, digits), facts);
  };
  const auto add_step = [&] {
    add_mass(answer, "step", step, plan.unit_step.g_cm2,
             "mu x " + number(plan.mux, digits), facts);
  };
  if (plan.absorption_binds()) {
    add_absorption();
    add_step();
  } else {
    add_step();
    add_absorption();
  }
  facts.push_back(value("edge_step", "", plan.step, ""));
  facts.push_back(value("mux_at_unit_step", "", plan.mux, ""));
  facts.push_back(
      word("binds", "", plan.absorption_binds() ? "absorption" : "step"));
  const auto others = other_layers(answer.question, answer.sample);
  if (!others.empty()) {
    facts.push_back(value(
        "transmission_of_others", "the other layers pass",
        physics::transmission(others, answer.step.energy, answer.settings.rule,
                              *answer.settings.data),
        ""));
  }
  report.remarks.push_back(
      "The smaller mass is the one to take: " +
      (plan.absorption_binds()
           ? absorption + " is reached before an " + step
           : "an " + step + " is reached before " + absorption) +
      ". Least noise has a mu x of " + number(physics::kBestMux, 4) +
      " above the edge; the step counts where thickness effects do.");
  if (plan.absorption_binds() && plan.step < 0.1) {
    report.notes.push_back("an edge step of " + number(plan.step, 2) +
                           " is small: fluorescence shows more");
  }
  return report;
}

Figure figure(const Answer& answer) {
  Figure figure;
  const double d = answer.best();
  const auto& material = answer.question.layers[answer.sample].material;
  figure.title =
      material.read + ", " + rounded(1e3 * d, 3) + " mg/cm²" +
      (answer.diluent ? " in " + answer.diluent->material.typed : "") +
      ", at the " + answer.edge_name() + " edge";
  figure.x = {"energy", "keV"};
  figure.y = {"mu x", ""};
  Series all{"sample", {}};
  Series without{"without the edge", {}};
  const double drop = std::log(answer.step.below.cm2_g);
  const double at_edge =
      std::log(physics::mass_attenuation(
                   material, {answer.edge.energy.keV * (1.0 - 1e-9)},
                   answer.settings.rule, *answer.settings.data)
                   .cm2_g);
  const double slope = (drop - at_edge) / std::log(answer.step.energy.keV /
                                                   answer.edge.energy.keV);
  for (const double keV : around(answer.edge, answer.step)) {
    const double other =
        answer.diluent
            ? answer.ratio() * physics::mass_attenuation(
                                   answer.diluent->material, {keV},
                                   answer.settings.rule, *answer.settings.data)
                                   .cm2_g
            : 0.0;
    all.points.push_back(
        {keV, d * (other + physics::mass_attenuation(material, {keV},
                                                     answer.settings.rule,
                                                     *answer.settings.data)
                               .cm2_g)});
    if (keV < answer.edge.energy.keV * (1.0 - 1e-9)) continue;
    without.points.push_back(
        {keV, d * (other +
                   std::exp(at_edge +
                            slope * std::log(keV / answer.edge.energy.keV)))});
  }
  figure.series = {std::move(all), std::move(without)};
  figure.marks = {{answer.edge.energy.keV, "", answer.edge_name()},
                  {answer.step.energy.keV, "", "step"}};
  figure.origin = origin(answer.settings);
  return figure;
}

// The energy of the step relative to the edge, 50 eV without a word for it.
physics::Energy offset(const Question& question, const physics::Edge& edge) {
  if (question.beams.empty()) return {0.05};
  if (question.beams.size() > 1 ||
      question.beams[0].kind != Beam::Kind::kEnergy) {
    throw InputError("one energy at most, above the edge", 0,
                     "without one, 50 eV above it");
  }
  const double keV = question.beams[0].from.keV;
  if (keV <= edge.energy.keV) {
    throw InputError(number(keV) + " keV is not above the edge (" +
                         number(edge.energy.keV) + " keV)",
                     question.column(question.beams[0].at),
                     "without an energy, 50 eV above it");
  }
  return {keV - edge.energy.keV};
}

Plan plan(const Typed& typed, const Request& request, Question& question) {
  const Settings& settings = request.settings;
  const std::size_t sample = bare_sample_layer(question);
  const physics::Edge& chosen = edge(typed.edge);
  const physics::Energy above = offset(question, chosen);
  const physics::EdgeStep step = physics::edge_step(
      question.layers[sample].material, chosen, above, *settings.data);
  const double mux = number_option("--mux", typed.mux, 1e-3, 100.0);
  Answer answer{question, settings, sample,
                chosen,   step,     diluent(typed.diluent, *settings.data),
                {},       mux,      {},
                {}};
  if (answer.diluent) {
    answer.mu_diluent = physics::mass_attenuation(
        answer.diluent->material, step.energy, settings.rule, *settings.data);
  }
  answer.plan =
      physics::xafs_sample(step, mux, answer.mu_diluent, answer.ratio());
  // That the energy is near an edge is no news here, but the row may be one in
  // doubt.
  add_doubts(question, step.energy, *settings.data);
  if (!typed.disc.empty()) answer.disc = length_option("--disc", typed.disc);
  Plan result{report(answer), {}};
  if (step.energy.keV < chosen.energy.keV + above.keV * (1.0 - 1e-9)) {
    result.report.notes.push_back(
        "another edge lies nearer than that: the step is taken just below it");
  }
  if (request.draws()) result.figure = figure(answer);
  return result;
}

}  // namespace

int plan_xafs(std::span<const std::string_view> arguments, Output& output) {
  Typed typed;
  return run_planner(arguments,
                     {kUsage,
                      {{"--edge", &typed.edge},
                       {"--mux", &typed.mux},
                       {"--diluent", &typed.diluent},
                       {"--disc", &typed.disc}},
                      [&](const Request& request, Question& question) {
                        return plan(typed, request, question);
                      }},
                     output);
}

}  // namespace attenuate
