#include "attenuate/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

#include "base/fatal.h"
#include "physics/errors.h"

namespace attenuate {
namespace {

// As typed; the settings come from them.
struct Typed {
  std::string batch;
  std::string data;
  std::string spectrum;
  std::string svg;
  std::string rule = "pchip";
  std::string weight = "photons";
  bool tsv = false, csv = false, json = false, json_lines = false;
  bool help = false, help_all = false, version = false;
};

void declare(CLI::App& app, Typed& typed, Request& request) {
  Settings& settings = request.settings;
  app.set_help_flag();
  // Words are left to themselves: the parser would take [Fe(CN)6] for a list.
  app.allow_extras();
  auto* formats = app.add_option_group("formats");
  formats->add_flag("--tsv", typed.tsv);
  formats->add_flag("--csv", typed.csv);
  formats->add_flag("--json", typed.json);
  formats->add_flag("--jsonl", typed.json_lines);
  formats->require_option(0, 1);
  app.add_flag("--explain", settings.explain);
  app.add_flag("--mu-en", settings.energy_absorption);
  app.add_flag("--strict", settings.strict);
  app.add_option("--batch", typed.batch);
  app.add_option("--data", typed.data);
  app.add_option("--spectrum", typed.spectrum);
  app.add_flag("--plot", request.plot);
  app.add_option("--svg", typed.svg);
  app.add_option("--beside", request.beside)->allow_extra_args(false);
  app.add_option("--digits", settings.digits)->check(CLI::Range(1, 17));
  app.add_option("--rule", typed.rule)
      ->check(CLI::IsMember({"pchip", "parabola"}));
  app.add_option("--weight", typed.weight)
      ->check(CLI::IsMember({"photons", "energy"}));
  app.add_flag("-h,--help", typed.help);
  app.add_flag("--help-all", typed.help_all);
  app.add_flag("--version", typed.version);
}

Format format(const Typed& typed) {
  if (typed.tsv) return Format::kTsv;
  if (typed.csv) return Format::kCsv;
  if (typed.json) return Format::kJson;
  if (typed.json_lines) return Format::kJsonLines;
  return Format::kText;
}

void parse(CLI::App& app, std::span<const std::string_view> arguments) {
  std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
  try {
    app.parse(std::move(reversed));
  } catch (const CLI::Error& error) {
    std::string message = error.what();
    if (!message.empty()) {
      message.erase(message.find_last_not_of(".\n") + 1);
    }
    throw physics::InputError(message, 0, "attenuate --help");
  }
}

bool is_option(std::string_view word) {
  return word.size() > 1 && word[0] == '-' &&
         (word[1] < '0' || word[1] > '9') && word[1] != '.';
}

// The words that are left over, in the storage of `arguments`.
std::vector<std::string_view> words_of(
    std::span<const std::string_view> arguments,
    const std::vector<std::string>& left) {
  std::vector<std::string_view> words;
  for (const auto& word : left) {
    if (is_option(word)) {
      throw physics::InputError("there is no option " + word, 0,
                                "attenuate --help");
    }
    words.push_back(*std::find(arguments.begin(), arguments.end(), word));
  }
  return words;
}

std::unique_ptr<const physics::Data> read_own_data(
    const std::string& directory) {
  try {
    return physics::read_data(directory);
  } catch (const base::FatalEnd& end) {
    throw physics::InputError(
        "the data of '" + directory + "' cannot be used: " + end.cause(), 0,
        end.advice());
  }
}

}  // namespace

Request read_options(std::span<const std::string_view> arguments,
                     std::span<const OwnOption> own) {
  Request request;
  // The plain question does without the time that declaring options takes.
  if (std::none_of(arguments.begin(), arguments.end(), is_option)) {
    request.words.assign(arguments.begin(), arguments.end());
    return request;
  }
  CLI::App app;
  Typed typed;
  declare(app, typed, request);
  for (const OwnOption& option : own)
    app.add_option(option.name, *option.value);
  parse(app, arguments);
  request.words = words_of(arguments, app.remaining());
  request.settings.format = format(typed);
  if (typed.rule == "parabola") {
    request.settings.rule = physics::Rule::kParabola;
  }
  if (typed.weight == "energy") {
    request.settings.weighting = physics::Weighting::kEnergy;
  }
  if (app.count("--batch") > 0) request.batch = typed.batch;
  if (app.count("--spectrum") > 0) request.spectrum = typed.spectrum;
  if (app.count("--svg") > 0) request.svg = typed.svg;
  if (request.plot && request.settings.format != Format::kText) {
    throw physics::InputError("--plot stands in place of text", 0,
                              "--svg FILE draws beside numbers");
  }
  if (typed.version) request.told = Told::kVersion;
  if (typed.help) request.told = Told::kHelp;
  if (typed.help_all) request.told = Told::kHelpAll;
  if (app.count("--data") > 0) {
    request.own_data = read_own_data(typed.data);
    request.settings.data = request.own_data.get();
  }
  return request;
}

}  // namespace attenuate
