// attenuate absorber: the best thickness of a Moessbauer absorber.

#include "physics/absorber.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

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
    R"(attenuate absorber MATERIAL [+ MATERIAL THICKNESS]: best thickness of a
Moessbauer absorber, saturation included. Other layers are holder and windows;
a thickness of the sample is compared with the best.

  attenuate absorber alpha-iron --lines sextet --disc 13mm
  attenuate absorber 'Na2[Fe(CN)5NO]*2H2O' --f 0.367 --lines doublet
  attenuate absorber Fe2O3 --f 0.8 --lines sextet --background 1 --plot

--isotope 57Fe     transition (57Fe); 155Gd@105.3 where an isotope has several
--f NUMBER         recoil-free fraction, where none is known
--lines WEIGHTS    of the pattern: single, doublet, sextet, 3:2:1:1:2:3; the
                   strongest line is the one to measure
--background B     counts in the window that are not the line, per count of the
                   line with nothing in the beam (0); inf
--enriched P       percent of the isotope in the element
--alpha NUMBER     another conversion coefficient
--disc 13mm        diameter: masses too
--plot --svg FILE  Q and transmission over thickness
--tsv --csv --json --jsonl --digits N --data DIR --strict as everywhere
)";

struct Typed {
  std::string isotope = "57Fe";
  std::string f, enriched, alpha, disc;
  std::string lines = "single";
  std::string background = "0";
};

struct Pattern {
  std::string words;  // "the strongest of 6 lines, 3/12 of the intensity"
  double weight = 1.0;
};

Pattern pattern(const std::string& typed) {
  std::string list = typed;
  if (typed == "single" || typed == "singlet") list = "1";
  if (typed == "doublet") list = "1:1";
  if (typed == "sextet") list = "3:2:1:1:2:3";
  std::vector<double> weights;
  for (std::size_t at = 0; at <= list.size();) {
    const std::size_t end = std::min(list.find(':', at), list.size());
    weights.push_back(
        number_option("--lines", list.substr(at, end - at), 1e-6, 1e6));
    at = end + 1;
  }
  if (weights.size() > 100) throw InputError("--lines has more than 100", 0);
  const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
  const double most = *std::max_element(weights.begin(), weights.end());
  if (weights.size() == 1) return {"single line", 1.0};
  return {"the strongest of " + std::to_string(weights.size()) + " lines, " +
              number(most, 4) + "/" + number(sum, 4) + " of the whole",
          most / sum};
}

struct RecoilFree {
  double f = 0.0;
  std::string origin;
};

// The part in front of ", ": sites and directions stand behind it.
std::string_view substance(const physics::RecoilFree& known) {
  return known.material.substr(0, known.material.find(','));
}

bool same_elements(const physics::Material& a, const physics::Material& b) {
  return a.constituents.size() == b.constituents.size() &&
         std::all_of(a.constituents.begin(), a.constituents.end(),
                     [&](const auto& part) {
                       return std::any_of(
                           b.constituents.begin(), b.constituents.end(),
                           [&](const auto& other) {
                             return part.z == other.z &&
                                    std::abs(part.mass_fraction -
                                             other.mass_fraction) < 5e-4;
                           });
                     });
}

[[noreturn]] void ask_for_f(const physics::Material& material,
                            const physics::Transition& transition,
                            const physics::Data& data) {
  std::string alike;
  std::string all;
  for (const auto& known : physics::recoil_free_fractions()) {
    if (known.isotope != transition.isotope) continue;
    const std::string entry =
        std::string(known.material) + " " + number(known.f);
    const auto* const named = physics::named_material(substance(known));
    if (named != nullptr &&
        same_elements(physics::material(named->name, data), material)) {
      alike += (alike.empty() ? "" : ", ") + entry;
    }
    if (known.material.find(',') == std::string_view::npos)
      all += (all.empty() ? "" : ", ") + std::string(known.material);
  }
  const std::string hint =
      !alike.empty() ? "--f with a number; at room temperature " + alike
      : !all.empty() ? "--f 0.8, say; known are " + all
                     : "--f 0.5, say; none is known for this isotope";
  throw InputError("no recoil-free fraction is known for " + material.typed, 0,
                   hint);
}

// Given, or of the material's own entry; never of one that is only alike.
RecoilFree recoil_free(const std::string& given,
                       const physics::Material& material,
                       const physics::Transition& transition,
                       const physics::Data& data) {
  if (!given.empty()) {
    return {number_option("--f", given, 1e-3, 1.0), "as given"};
  }
  const std::string name = material.typed.substr(0, material.typed.find('@'));
  const auto* const named = physics::named_material(name);
  // Iron alone is the form whose density is taken too.
  const bool iron = named == nullptr && material.constituents.size() == 1;
  for (const auto& known : physics::recoil_free_fractions()) {
    if (known.isotope != transition.isotope) continue;
    const bool fits =
        iron ? known.material == "alpha iron"
             : named != nullptr && known.material == substance(known) &&
                   physics::named_material(known.material) == named;
    if (fits) {
      return {known.f, std::string(known.material) + ", room temperature; " +
                           std::string(known.origin)};
    }
  }
  ask_for_f(material, transition, data);
}

// The lines of the source for which the transmission is told.
std::vector<double> told_energies(const physics::Transition& transition) {
  if (transition.isotope == "57Fe")
    return {6.40, transition.energy.keV, 122.06, 136.47};
  std::vector<double> energies = {transition.energy.keV};
  for (const auto& source : physics::sources()) {
    const auto own = std::find_if(
        source.lines.begin(), source.lines.end(), [&](const auto& line) {
          return std::abs(line.energy.keV / transition.energy.keV - 1.0) < 1e-3;
        });
    if (own == source.lines.end()) continue;
    for (const auto& line : source.lines) {
      if (&line != &*own && line.intensity >= 5.0 && energies.size() < 5)
        energies.push_back(line.energy.keV);
    }
    break;
  }
  std::sort(energies.begin(), energies.end());
  return energies;
}

// Everything that the report and the figure tell.
struct Answer {
  const Question& question;
  const Settings& settings;
  std::size_t sample = 0;
  physics::Transition transition;
  Pattern pattern;
  RecoilFree f;
  physics::Resonance resonance;
  physics::Absorber absorber;
  physics::BestThickness best;
  double background = 0.0;
  double others = 1.0;  // transmission of the other layers at the line
  std::optional<physics::Length> disc;

  double x(physics::AreaMass d) const { return absorber.mu_rho * d; }
  double t(physics::AreaMass d) const { return absorber.t_per_g_cm2 * d.g_cm2; }
  double time(physics::AreaMass d) const {
    return merit(absorber, best.best) / merit(absorber, d);
  }
  const physics::Material& material() const {
    return question.layers[sample].material;
  }
  std::string background_in_words() const {
    return std::isinf(background) ? "infinite" : number(background);
  }
};

double mg(physics::AreaMass d) { return 1e3 * d.g_cm2; }

std::string range(double from, double to, const std::string& unit) {
  return rounded(from, 3) + " to " + rounded(to, 3) + " " + unit;
}

void add_best(const Answer& answer, std::vector<Fact>& facts) {
  const auto& best = answer.best;
  const int digits = answer.settings.plan_digits();
  facts.push_back(
      value("best_mg_cm2", "best thickness", mg(best.best), "mg/cm2"));
  if (answer.material().density) {
    facts.push_back(value("best_um", "",
                          1e4 * (best.best / *answer.material().density).cm,
                          "um"));
    facts[facts.size() - 2].shown =
        rounded(mg(best.best), digits) +
        " mg/cm2 = " + rounded(std::get<double>(facts.back().value), digits) +
        " um";
  }
  if (answer.disc) {
    facts.push_back(value("best_mg_on_disc",
                          "on the disc of " + length_in_words(answer.disc->cm),
                          mg(best.best) * disc_area(*answer.disc), "mg"));
  }
  facts.push_back(value("within_10_percent_from_mg_cm2", "time within 10 %",
                        mg(best.thinnest), "mg/cm2"));
  facts.back().shown = range(mg(best.thinnest), mg(best.thickest), "mg/cm2");
  facts.push_back(
      value("within_10_percent_to_mg_cm2", "", mg(best.thickest), "mg/cm2"));
  const physics::AreaMass one{1.0 / answer.absorber.mu_rho.cm2_g};
  const physics::AreaMass two{2.0 * one.g_cm2};
  facts.push_back(
      value("rule_from_mg_cm2", "rule 1/mu to 2/mu", mg(one), "mg/cm2"));
  facts.back().shown = range(mg(one), mg(two), "mg/cm2") + ", time " +
                       rounded(answer.time(one), 3) + " to " +
                       rounded(answer.time(two), 3) + " of the best";
  facts.push_back(value("rule_to_mg_cm2", "", mg(two), "mg/cm2"));
  facts.push_back(value("time_at_rule_from", "", answer.time(one), ""));
  facts.push_back(value("time_at_rule_to", "", answer.time(two), ""));
}

void add_physics(const Answer& answer, std::vector<Fact>& facts) {
  const physics::AreaMass best = answer.best.best;
  const double t = answer.t(best);
  const int digits = answer.settings.plan_digits();
  facts.push_back(value("mu_rho_cm2_g", "mu/rho at the line",
                        answer.absorber.mu_rho.cm2_g, "cm2/g"));
  facts.push_back(value("mu_x", "mu x", answer.x(best), ""));
  facts.push_back(
      value("t_a", "effective thickness t_a", t / answer.pattern.weight, ""));
  facts.back().shown = number(t / answer.pattern.weight, digits) +
                       (answer.pattern.weight < 1.0
                            ? " in all, " + number(t, digits) + " of the line"
                            : "");
  facts.push_back(value("t_line", "", t, ""));
  facts.push_back(value("depth_left", "depth left, eps/(t/2)",
                        physics::resonant_absorption(t) / (t / 2.0), ""));
  facts.push_back(value("depth_over_f_source", "depth of the line",
                        physics::resonant_absorption(t),
                        "of the recoil-free photons"));
  const auto& element =
      answer.settings.data
          ->elements()[static_cast<std::size_t>(answer.transition.z - 1)];
  facts.push_back(value("element_mg_cm2", std::string(element.name),
                        mg(best) * answer.resonance.element_fraction,
                        "mg/cm2"));
  facts.push_back(value("isotope_mg_cm2",
                        std::string(answer.transition.isotope),
                        best.g_cm2 * answer.resonance.nuclei_per_g /
                            6.02214076e23 * answer.transition.mass_number * 1e3,
                        "mg/cm2"));
}

void add_transmissions(const Answer& answer, std::vector<Fact>& facts) {
  for (const double keV : told_energies(answer.transition)) {
    std::vector<physics::Layer> layers = answer.question.layers;
    layers[answer.sample].d = answer.best.best;
    const std::string energy = number(std::round(keV * 100.0) / 100.0, 6);
    facts.push_back(value(
        "transmission_" + energy + "_keV", "transmission " + energy + " keV",
        physics::transmission(layers, physics::Energy{keV},
                              answer.settings.rule, *answer.settings.data),
        ""));
  }
}

Report report(const Answer& answer) {
  Report report;
  report.read = layers_read(answer.question, answer.sample);
  const auto& transition = answer.transition;
  report.read.push_back(std::string(transition.isotope) + "  " +
                        number(transition.energy.keV, 7) + " keV  alpha " +
                        number(transition.alpha) + " (" +
                        std::string(transition.alpha_origin) + ")");
  report.read.push_back("f " + number(answer.f.f) + " (" + answer.f.origin +
                        ")");
  report.read.push_back(answer.pattern.words + "; background " +
                        answer.background_in_words() + "; " +
                        number(100.0 * answer.resonance.share, 4) + " % " +
                        std::string(transition.isotope));
  auto& facts = report.facts;
  add_best(answer, facts);
  const auto& given = answer.question.thicknesses[answer.sample];
  if (given.given != Given::kNothing) {
    const physics::AreaMass own = answer.question.layers[answer.sample].d;
    facts.push_back(value("given_mg_cm2", "", mg(own), "mg/cm2"));
    Fact time = value("time_at_given", "time at " + given.typed,
                      answer.time(own), "of the best");
    if (!std::isfinite(answer.time(own))) {
      time.value = {};
      time.shown = "without end: nothing passes";
    }
    facts.push_back(std::move(time));
  }
  add_physics(answer, facts);
  add_transmissions(answer, facts);
  if (answer.others < 1.0) {
    facts.push_back(value("transmission_of_others", "of it the other layers",
                          answer.others, "at the line"));
  }
  facts.push_back(value("f", "", answer.f.f, ""));
  facts.push_back(word("f_origin", "", answer.f.origin));
  facts.push_back(value("alpha", "", transition.alpha, ""));
  facts.push_back(
      word("alpha_origin", "", std::string(transition.alpha_origin)));
  facts.push_back(value("sigma0_cm2", "",
                        physics::resonance_cross_section(transition), "cm2"));

  const double x = answer.x(answer.best.best);
  const double t = answer.t(answer.best.best);
  const std::string left =
      rounded(100.0 * physics::resonant_absorption(t) / (t / 2.0), 2);
  report.remarks.push_back(
      "The rule 1/mu to 2/mu weighs the photons alone. The line saturates too: "
      "at the best thickness " +
      left + " % of the depth is left that a thin absorber promises, so that " +
      (x < 1.0   ? "the best lies below the rule."
       : x < 1.5 ? "the best lies in the lower half of the rule."
                 : "the best still lies within the rule."));
  return report;
}

Figure figure(const Answer& answer) {
  Figure figure;
  figure.title = answer.material().read + ": absorber for " +
                 std::string(answer.transition.isotope);
  figure.x = {"areal mass", "mg/cm²"};
  figure.y = {"of the best Q; transmission", ""};
  const double one = 1.0 / answer.absorber.mu_rho.cm2_g;
  double end = std::max(2.3 * one, 1.3 * answer.best.thickest.g_cm2);
  const auto own = answer.question.layers[answer.sample].d;
  const bool given =
      answer.question.thicknesses[answer.sample].given != Given::kNothing;
  if (given) end = std::max(end, 1.1 * own.g_cm2);
  Series q{"Q, the inverse of the counting time", {}};
  Series passed{
      "transmission at " + number(answer.transition.energy.keV, 4) + " keV",
      {}};
  constexpr int kPoints = 300;
  for (int i = 0; i <= kPoints; ++i) {
    const physics::AreaMass d{end * i / kPoints};
    q.points.push_back({mg(d), i == 0 ? 0.0 : 1.0 / answer.time(d)});
    passed.points.push_back({mg(d), std::exp(-answer.x(d))});
  }
  figure.series = {std::move(q), std::move(passed)};
  figure.marks.push_back(
      {mg(answer.best.best), "", "best " + rounded(mg(answer.best.best), 3)});
  if (given) {
    figure.marks.push_back(
        {mg(own), "", answer.question.thicknesses[answer.sample].typed});
  }
  figure.bands = {
      {1e3 * one, 2e3 * one, "rule 1/mu to 2/mu"},
      {mg(answer.best.thinnest), mg(answer.best.thickest), "time within 10 %"}};
  figure.origin = "f " + number(answer.f.f) + ", alpha " +
                  number(answer.transition.alpha) + ", b " +
                  answer.background_in_words() + "; " + origin(answer.settings);
  return figure;
}

Plan plan(const Typed& typed, const Request& request, Question& question) {
  if (!question.beams.empty()) {
    throw InputError("the energy is that of the transition", 0,
                     "--isotope chooses it");
  }
  const Settings& settings = request.settings;
  const std::size_t sample = sample_layer(question);
  const physics::Material& material = question.layers[sample].material;
  physics::Transition nuclear = physics::transition(typed.isotope);
  if (!typed.alpha.empty()) {
    nuclear.alpha = number_option("--alpha", typed.alpha, 0.0, 1e6);
    nuclear.alpha_origin = "as given";
  }
  std::optional<double> enriched;
  if (!typed.enriched.empty())
    enriched = number_option("--enriched", typed.enriched, 1e-6, 100.0);
  const physics::Resonance resonance = physics::resonance(
      material, nuclear, enriched, settings.rule, *settings.data);
  const Pattern lines = pattern(typed.lines);
  const RecoilFree f = recoil_free(typed.f, material, nuclear, *settings.data);
  const double background =
      number_option("--background", typed.background, 0.0,
                    std::numeric_limits<double>::infinity());
  const auto others = other_layers(question, sample);
  const double passed = physics::transmission(others, nuclear.energy,
                                              settings.rule, *settings.data);
  if (!(passed > 1e-12))
    throw InputError("nothing of the line passes the other layers", 0);

  const physics::Line line{nuclear.energy};
  add_notes(question, {&line, 1}, *settings.data);

  const physics::Absorber absorber{
      resonance.mu_rho,
      physics::resonance_cross_section(nuclear) * resonance.nuclei_per_g * f.f *
          lines.weight,
      // The layers take from the line, not from what stands beside it.
      background / passed};
  std::optional<physics::Length> disc;
  if (!typed.disc.empty()) disc = length_option("--disc", typed.disc);
  const Answer answer{question,   settings, sample,
                      nuclear,    lines,    f,
                      resonance,  absorber, physics::best_thickness(absorber),
                      background, passed,   disc};
  Plan result{report(answer), {}};
  if (request.draws()) result.figure = figure(answer);
  return result;
}

}  // namespace

int plan_absorber(std::span<const std::string_view> arguments, Output& output) {
  Typed typed;
  return run_planner(arguments,
                     {kUsage,
                      {{"--isotope", &typed.isotope},
                       {"--f", &typed.f},
                       {"--lines", &typed.lines},
                       {"--background", &typed.background},
                       {"--enriched", &typed.enriched},
                       {"--alpha", &typed.alpha},
                       {"--disc", &typed.disc}},
                      [&](const Request& request, Question& question) {
                        return plan(typed, request, question);
                      }},
                     output);
}

}  // namespace attenuate
