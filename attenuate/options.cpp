#include "attenuate/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

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
  app.add_flag("--tsv", typed.tsv);
  app.add_flag("--csv", typed.csv);
  app.add_flag("--json", typed.json);
  app.add_flag("--jsonl", typed.json_lines);
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
  if (typed.tsv + typed.csv + typed.json + typed.json_lines > 1) {
    throw physics::InputError("more than one format", 0,
                              "one of --tsv, --csv, --json and --jsonl");
  }
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
    // The parser's "--digits: 1 required INT missing".
    if (message.ends_with(" missing")) {
      message.resize(std::min(message.find(':'), message.size()));
      message += " needs a value";
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
  const std::vector<CLI::Option*> common = app.get_options();
  for (const OwnOption& option : own)
    app.add_option(option.name, *option.value);
  // Behind "--" everything is a word.
  const auto end = std::find(arguments.begin(), arguments.end(), "--");
  parse(app, {arguments.begin(), end});
  request.words = words_of(arguments, app.remaining());
  if (end != arguments.end()) {
    request.words.insert(request.words.end(), end + 1, arguments.end());
  }
  for (const CLI::Option* option : common) {
    if (option->count() > 0) request.given.push_back(option->get_name());
  }
  request.settings.format = format(typed);
  if (typed.rule == "parabola") {
    request.settings.rule = physics::Rule::kParabola;
  }
  if (typed.weight == "energy") {
    request.settings.weighting = physics::Weighting::kEnergy;
  }
  request.settings.own_digits = app.count("--digits") > 0;
  if (app.count("--batch") > 0) request.batch = typed.batch;
  if (app.count("--spectrum") > 0) request.spectrum = typed.spectrum;
  if (app.count("--svg") > 0) request.svg = typed.svg;
  if (request.plot && request.settings.format != Format::kText) {
    throw physics::InputError("--plot stands in place of text", 0,
                              "--svg FILE draws beside numbers");
  }
  if (request.svg == "-" &&
      (request.plot || request.settings.format != Format::kText)) {
    throw physics::InputError("--svg - has standard output to itself", 0,
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

void refuse_unused(const Request& request,
                   std::span<const std::string_view> used,
                   const std::string& who) {
  static constexpr std::array<std::string_view, 7> kEverybodys = {
      "--tsv",  "--csv",      "--json",   "--jsonl",
      "--help", "--help-all", "--version"};
  for (const std::string& name : request.given) {
    const auto is_name = [&](std::string_view one) { return one == name; };
    if (std::none_of(used.begin(), used.end(), is_name) &&
        std::none_of(kEverybodys.begin(), kEverybodys.end(), is_name)) {
      throw physics::InputError(who + " takes no " + name, 0);
    }
  }
}

std::size_t leading_options(std::span<const std::string_view> arguments) {
  if (arguments.empty() || !is_option(arguments[0])) return 0;
  CLI::App app;
  Typed typed;
  Request request;
  declare(app, typed, request);
  std::size_t i = 0;
  while (i < arguments.size() && is_option(arguments[i])) {
    const CLI::Option* option =
        app.get_option_no_throw(std::string(arguments[i]));
    if (option == nullptr && arguments[i].find('=') == std::string_view::npos) {
      break;
    }
    const bool has_value =
        option != nullptr && option->get_items_expected_min() > 0;
    i += has_value ? 2 : 1;
  }
  return std::min(i, arguments.size());
}

}  // namespace attenuate
