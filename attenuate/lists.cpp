#include "attenuate/lists.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "attenuate/help.h"
#include "attenuate/number.h"
#include "attenuate/options.h"
#include "attenuate/records.h"
#include "physics/data.h"
#include "physics/errors.h"
#include "physics/table.h"

namespace attenuate {
namespace {

using Names = std::vector<std::string_view>;

constexpr char kUsage[] =
    R"(attenuate materials|sources|edges|elements [TEXT]: what is known, and where it
is from. With TEXT only what contains it, in detail; edges and elements take a
symbol as well.

  attenuate materials nitroprusside
  attenuate edges Fe --csv

--tsv --csv --json --jsonl as everywhere; elements takes --data DIR too
)";

std::string lower(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

// A list with its search: options, and the words as one text.
struct Search {
  // used  the options that the list takes
  explicit Search(Arguments arguments,
                  std::span<const std::string_view> used = {})
      : request(read_options(arguments)) {
    refuse_unused(request, used, "this list");
    for (const auto word : request.words) {
      text += (text.empty() ? "" : " ") + std::string(word);
    }
  }

  bool wants_all() const { return text.empty(); }
  // Whether one of the `fields` contains the text, in whatever letters; blanks
  // and hyphens are alike.
  bool fits(std::initializer_list<std::string_view> fields) const {
    return std::any_of(fields.begin(), fields.end(), [this](auto field) {
      return joined(field).find(joined(text)) != std::string::npos;
    });
  }

  static std::string joined(std::string_view text) {
    std::string result = lower(text);
    std::replace(result.begin(), result.end(), '-', ' ');
    return result;
  }

  Request request;
  std::string text;
};

[[noreturn]] void refuse(const Search& search, const std::string& kind,
                         const Names& known) {
  std::string hint;
  if (search.text.size() <= 64) {
    for (const auto& name : physics::nearest(lower(search.text), known)) {
      hint += (hint.empty() ? "did you mean " : ", ") + name;
    }
  }
  if (!hint.empty()) hint += "?";
  throw physics::InputError("no " + kind + " fits '" + search.text + "'", 1,
                            hint);
}

int print(const Search& search, const std::string& kind, const Names& known,
          const Records& records, Output& output) {
  if (search.request.told == Told::kVersion) {
    output.text(version(search.request.settings));
    return 0;
  }
  if (search.request.told != Told::kNothing) {
    output.text(kUsage);
    return 0;
  }
  if (records.rows.empty()) refuse(search, kind, known);
  write_records(records, search.request.settings.format, !search.wants_all(),
                output);
  return 0;
}

std::string energy(physics::Energy energy) { return number(energy.keV, 8); }

}  // namespace

int list_materials(Arguments arguments, Output& output) {
  const Search search(arguments);
  Records records{{{"name", 31, Show::kAlways},
                   {"density_g_cm3", 14, Show::kNumber},
                   {"composition", 0, Show::kAlways},
                   {"kind", 0, Show::kDetail},
                   {"aliases", 0, Show::kDetail},
                   {"composition_origin", 0, Show::kDetail},
                   {"density_origin", 0, Show::kDetail},
                   {"note", 0, Show::kDetail}},
                  {}};
  Names known;
  for (const auto& m : physics::materials()) {
    known.push_back(m.name);
    if (!search.fits({m.name, m.aliases, m.kind, m.composition})) continue;
    records.rows.push_back(
        {std::string(m.name), number(m.density.g_cm3),
         std::string(m.composition), std::string(m.kind),
         std::string(m.aliases), std::string(m.composition_origin),
         std::string(m.density_origin), std::string(m.note)});
  }
  return print(search, "material", known, records, output);
}

int list_sources(Arguments arguments, Output& output) {
  const Search search(arguments);
  Records records{{{"source", 10, Show::kAlways},
                   {"half_life", 11, Show::kAlways},
                   {"line", 16, Show::kAlways},
                   {"energy_keV", 12, Show::kNumber},
                   {"intensity", 11, Show::kNumber},
                   {"aliases", 0, Show::kDetail},
                   {"origin", 0, Show::kDetail},
                   {"note", 0, Show::kDetail}},
                  {}};
  Names known;
  const physics::Source* only = physics::source(search.text);
  for (const auto& s : physics::sources()) {
    known.push_back(s.name);
    if (only != nullptr ? &s != only : !search.fits({s.name, s.aliases})) {
      continue;
    }
    for (const auto& line : s.lines) {
      records.rows.push_back({std::string(s.name), std::string(s.half_life),
                              std::string(line.name), energy(line.energy),
                              number(line.intensity), std::string(s.aliases),
                              std::string(line.origin),
                              std::string(line.note)});
    }
  }
  return print(search, "source", known, records, output);
}

int list_edges(Arguments arguments, Output& output) {
  const Search search(arguments);
  Records records{{{"element", 8, Show::kAlways},
                   {"shell", 6, Show::kAlways},
                   {"energy_keV", 12, Show::kNumber},
                   {"jump", 10, Show::kNumber},
                   {"in_table", 0, Show::kAlways}},
                  {}};
  Names known;
  const std::size_t colon = std::min(search.text.find(':'), search.text.size());
  const std::string wanted = lower(search.text.substr(0, colon));
  const std::string shell = search.text.substr(colon);  // ":K"
  const auto* named = physics::element_with_name(wanted);
  for (const auto& element : physics::builtin().elements()) {
    known.push_back(element.name);
    const bool fits = wanted == lower(element.symbol) || &element == named ||
                      wanted == std::to_string(element.z);
    if (!fits && !search.wants_all()) continue;
    for (const auto& edge : physics::edges(element.z)) {
      if (!shell.empty() && shell.substr(1) != edge.shell) continue;
      records.rows.push_back({std::string(element.symbol),
                              std::string(edge.shell), energy(edge.energy),
                              edge.jump > 1.0 ? number(edge.jump) : "",
                              edge.in_table ? "yes" : "no"});
    }
  }
  return print(search, "element", known, records, output);
}

int list_elements(Arguments arguments, Output& output) {
  static constexpr std::array<std::string_view, 1> kUsed = {"--data"};
  const Search search(arguments, kUsed);
  const physics::Data& data = *search.request.settings.data;
  Records records{{{"z", 4, Show::kNumber},
                   {"symbol", 7, Show::kAlways},
                   {"name", 13, Show::kAlways},
                   {"weight_g_mol", 13, Show::kNumber},
                   {"first_keV", 0, Show::kNumberDetail},
                   {"last_keV", 0, Show::kNumberDetail},
                   {"density_g_cm3", 14, Show::kNumber},
                   {"form", 0, Show::kAlways},
                   {"temperature", 0, Show::kDetail},
                   {"density_origin", 0, Show::kDetail}},
                  {}};
  Names known;
  const auto* only = physics::element_with_symbol(search.text);
  for (const auto& e : data.elements()) {
    known.push_back(e.name);
    if (only != nullptr ? e.z != only->z : !search.fits({e.symbol, e.name})) {
      continue;
    }
    const std::vector<std::string> element = {
        std::to_string(e.z),
        std::string(e.symbol),
        std::string(e.name),
        number(e.weight, 8),
        energy(first_energy(data.table(e.z))),
        energy(last_energy(data.table(e.z)))};
    const auto forms = data.modifications(e.z);
    // The list of all shows the usual form only.
    const std::size_t most = search.wants_all() ? 1 : forms.size();
    for (std::size_t i = 0; i < std::max<std::size_t>(most, 1); ++i) {
      auto row = element;
      if (i < forms.size()) {
        row.insert(
            row.end(),
            {number(forms[i].density.g_cm3), std::string(forms[i].form),
             std::string(forms[i].temperature), std::string(forms[i].origin)});
      }
      row.resize(records.columns.size());
      records.rows.push_back(std::move(row));
    }
  }
  return print(search, "element", known, records, output);
}

}  // namespace attenuate
