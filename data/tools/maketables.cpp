// Writes the tables that are built in as C++: maketables SOURCES OUTPUT.cpp.
//
// The constants are those of physics/constants.h. Values of the sources keep
// their digits; the cubics between the rows are computed here and written to
// the last bit. What a program would misread is refused, with file and line.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/edit.h"
#include "base/harmless.h"
#include "data/tools/csv.h"
#include "physics/constants.h"
#include "physics/curve.h"

namespace {

namespace fs = std::filesystem;
using data::is_positive;
using data::plain_number;
using data::Problem;
using data::read_table;
using data::Row;

constexpr int kElements = physics::kElements;

std::string str(std::size_t number) { return std::to_string(number); }
std::string str(int number) { return std::to_string(number); }

// `value` to the last bit.
std::string hex(double value) {
  std::array<char, 40> digits{};
  char* const end = std::to_chars(digits.begin(), digits.end(), std::abs(value),
                                  std::chars_format::hex)
                        .ptr;
  return (value < 0 ? "-0x" : "0x") + std::string(digits.data(), end);
}

std::string literal(const std::string& text) {
  std::string written = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') written += '\\';
    written += c;
  }
  return written + '"';
}

std::string lower(std::string text) {
  for (char& c : text) {
    if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

bool is_letter(char c) { return 'a' <= c && c <= 'z'; }
bool is_digit(char c) { return '0' <= c && c <= '9'; }

// The pieces of a list, which "; " separates.
std::vector<std::string> pieces_of(const std::string& list) {
  std::vector<std::string> pieces;
  for (std::size_t at = 0; at < list.size();) {
    const std::size_t end = std::min(list.find("; ", at), list.size());
    pieces.push_back(list.substr(at, end - at));
    at = end + 2;
  }
  return pieces;
}

template <std::size_t N>
int z_of(const Row<N>& row, int most = kElements) {
  const std::optional<double> z = plain_number(row.fields[0]);
  row.require(z.has_value() && 1 <= *z && *z <= most &&
                  str(static_cast<int>(*z)) == row.fields[0],
              "atomic number '" + row.fields[0] + "'");
  return static_cast<int>(*z);
}

template <std::size_t N>
void require_number(const Row<N>& row, std::size_t field) {
  row.require(plain_number(row.fields[field]).has_value(),
              "'" + row.fields[field] + "' is no number");
}

// A number that may be left out, which means 0.
std::string or_zero(const std::string& text) {
  return text.empty() ? "0" : text;
}

// The digits of an energy in MeV as a number of keV: nothing is rounded.
double keV_of(const std::string& MeV) {
  const std::size_t e = MeV.find('E');
  int exponent = 0;
  const char* const begin = MeV.data() + e + (MeV[e + 1] == '+' ? 2 : 1);
  std::from_chars(begin, MeV.data() + MeV.size(), exponent);
  const std::string keV = MeV.substr(0, e) + 'e' + str(exponent + 3);
  double value = 0;
  std::from_chars(keV.data(), keV.data() + keV.size(), value);
  return value;
}

// The file that is written.
class Output {
 public:
  // Begins a list of its own, that entries are added to.
  void begin(const std::string& type, const std::string& name) {
    text_ += "\nnamespace {\nconstexpr " + type + " " + name + "_[] = {\n";
  }
  void entry(const std::string& fields) { text_ += "{" + fields + "},\n"; }
  void end() { text_ += "};\n}  // namespace\n"; }

  void list(const std::string& type, const std::string& name,
            const std::vector<std::string>& entries) {
    begin(type, name);
    for (const std::string& fields : entries) entry(fields);
    end();
    line("constinit const List<" + type + "> " + name + " = " + name + "_;");
  }

  // A list of `type` for each element, made of `entries` for each.
  void lists(const std::string& type, const std::string& name,
             const std::vector<std::vector<std::string>>& entries) {
    begin(type, name);
    for (const auto& element : entries) {
      for (const std::string& fields : element) entry(fields);
    }
    end();
    line("constinit const OfElement<List<" + type + ">> " + name + "{{");
    std::size_t first = 0;
    for (const auto& element : entries) {
      line(span(name, first, element.size()) + ",");
      first += element.size();
    }
    line("}};");
  }

  static std::string span(const std::string& name, std::size_t first,
                          std::size_t count) {
    return "{" + name + "_ + " + str(first) + ", " + str(count) + "}";
  }

  void line(const std::string& line) { text_ += line + '\n'; }

  std::string text() const {
    return text_ + "\n}  // namespace physics::constants\n";
  }

 private:
  std::string text_ =
      "// Written by maketables from data/sources.\n\n"
      "#include \"physics/constants.h\"\n\n"
      "namespace physics::constants {\n";
};

using Entries = std::vector<std::string>;
using EntriesOfElement = std::vector<Entries>;

// Fields of an entry.
std::string joined(const std::vector<std::string>& fields) {
  std::string list;
  for (const std::string& field : fields) {
    list += (list.empty() ? "" : ", ") + field;
  }
  return list;
}

struct Names {
  std::vector<std::string> symbols;  // from Z = 1
  std::vector<std::string> names;    // in small letters
};

template <std::size_t N>
void add_element(const Row<N>& row, Names& names) {
  row.require(row.fields[0] == str(names.symbols.size() + 1),
              "atomic number '" + row.fields[0] + "' out of order");
  const std::string& symbol = row.fields[1];
  row.require(
      (symbol.size() == 1 || (symbol.size() == 2 && is_letter(symbol[1]))) &&
          'A' <= symbol[0] && symbol[0] <= 'Z',
      "'" + symbol + "' is no symbol");
  names.symbols.push_back(symbol);
  names.names.push_back(lower(row.fields[2]));
}

Names write_elements(const fs::path& sources, Output& out) {
  Names names;
  out.line("const OfElement<Element> elements{{");
  for (const char* const file : {"elements.csv", "elements-83-92.csv"}) {
    for (const auto& row :
         read_table<4>(sources / file, {"z", "symbol", "name", "weight"})) {
      add_element(row, names);
      row.require(is_positive(row.fields[3]), "no weight");
      out.entry(joined({row.fields[0], literal(row.fields[1]),
                        literal(names.names.back()), row.fields[3]}));
    }
  }
  out.line("}};");
  Entries heavy;
  for (const auto& row : read_table<3>(sources / "elements-93-118.csv",
                                       {"z", "symbol", "name"})) {
    add_element(row, names);
    heavy.push_back(joined(
        {row.fields[0], literal(row.fields[1]), literal(names.names.back())}));
  }
  out.list("HeavyElement", "heavy_elements", heavy);

  std::vector<int> z_of_symbol(physics::constants::kSymbolPlaces);
  for (std::size_t i = 0; i < names.symbols.size(); ++i) {
    const char* const symbol = names.symbols[i].c_str();
    z_of_symbol[physics::constants::symbol_place(symbol[0], symbol[1])] =
        static_cast<int>(i) + 1;
  }
  out.line("const std::array<std::uint8_t, kSymbolPlaces> z_of_symbol{");
  for (const int z : z_of_symbol) out.line(str(z) + ",");
  out.line("};");
  return names;
}

// Pieces and grid of one quantity of all elements.
class Curves {
 public:
  explicit Curves(std::string name) : name_(std::move(name)) {}

  // Adds the next element's; the initialiser of its Curve.
  std::string add(const std::vector<physics::CurvePoint>& points) {
    const std::vector<physics::Cubic> pieces = physics::pchip(points);
    const std::vector<std::uint8_t> grid = physics::grid_of(pieces);
    std::string curve =
        "Curve(" +
        Output::span(name_ + "_piece", pieces_.size(), pieces.size()) + ", " +
        Output::span(name_ + "_grid", grid_.size(), grid.size()) + ")";
    for (const physics::Cubic& p : pieces) {
      pieces_.push_back(joined(
          {hex(p.a), hex(p.b), hex(p.c), hex(p.d), hex(p.x), hex(p.keV)}));
    }
    grid_.insert(grid_.end(), grid.begin(), grid.end());
    return curve;
  }

  void write(Output& out) const {
    out.begin("Cubic", name_ + "_piece");
    for (const std::string& piece : pieces_) out.entry(piece);
    out.end();
    out.begin("std::uint8_t", name_ + "_grid");
    for (const std::uint8_t start : grid_) out.line(str(int{start}) + ",");
    out.end();
  }

 private:
  std::string name_;
  Entries pieces_;
  std::vector<std::uint8_t> grid_;
};

struct ElementRows {
  std::string place;  // of the first row
  std::vector<physics::CurvePoint> total;
  std::vector<double> absorption;  // for each of these; 0 where not published
  std::map<std::string, double> edges;  // shell, keV
};

std::vector<ElementRows> read_tables(const fs::path& sources) {
  std::vector<ElementRows> tables(kElements);
  for (const auto& row :
       read_table<7>(sources / "tables.csv",
                     {"z", "edge", "energy_MeV", "mu_rho_cm2_g",
                      "mu_en_rho_cm2_g", "origin", "published"})) {
    const auto& [z, edge, energy, mu_rho, mu_en_rho, origin, was] = row.fields;
    ElementRows& table = tables[static_cast<std::size_t>(z_of(row) - 1)];
    if (table.place.empty()) table.place = row.place;
    const double keV = keV_of(energy);
    row.require(1 <= keV && keV <= 20000, "energy '" + energy + "'");
    const bool is_edge = !table.total.empty() && table.total.back().keV == keV;
    row.require(is_edge == !edge.empty(), "an edge is two rows, then a name");
    if (is_edge) table.edges[edge] = keV;
    const double mu = base::read_e(mu_rho, 0).value_or(0);
    const double mu_en = base::read_e(mu_en_rho, 0).value_or(0);
    row.require(mu_en <= mu, "mu_en/rho above mu/rho");
    table.total.push_back({keV, mu});
    table.absorption.push_back(mu_en);
  }
  return tables;
}

// The rows of mu_en/rho. One that is not published has a value all the same
// where nearly all of mu/rho is absorption on both sides: there the ratio of
// the two, straight over ln E, is right within 0.3 %, while mu_en/rho itself
// makes bends in which it would lie above mu/rho.
std::vector<physics::CurvePoint> absorption_points(const ElementRows& table) {
  constexpr double kNearlyAll = 0.95;
  const auto& rows = table.total;
  const auto ratio = [&](std::size_t i) {
    return table.absorption[i] / rows[i].y;
  };
  std::vector<physics::CurvePoint> points;
  std::size_t before = 0;  // the last published row
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (ratio(i) > 0.0) {
      before = i;
      points.push_back({rows[i].keV, table.absorption[i]});
      continue;
    }
    std::size_t behind = i;
    while (behind + 1 < rows.size() && ratio(behind) == 0.0) ++behind;
    if (std::min(ratio(before), ratio(behind)) < kNearlyAll) continue;
    const double share = std::log(rows[i].keV / rows[before].keV) /
                         std::log(rows[behind].keV / rows[before].keV);
    points.push_back(
        {rows[i].keV,
         rows[i].y * std::lerp(ratio(before), ratio(behind), share)});
  }
  return points;
}

void write_tables(const std::vector<ElementRows>& tables, Output& out) {
  Curves total("total");
  Curves absorption("absorption");
  std::string entries;
  int z = 0;
  for (const ElementRows& table : tables) {
    try {
      const auto absorbed = absorption_points(table);
      for (const auto* const points : {&table.total, &absorbed}) {
        if (points->empty() || points->front().keV != 1 ||
            points->back().keV != 20000) {
          throw std::invalid_argument("not from 1 keV to 20 MeV");
        }
      }
      const std::string curve = total.add(table.total);
      entries += "{" + str(++z) + ", " + curve + ",\n " +
                 absorption.add(absorbed) + "},\n";
    } catch (const std::invalid_argument& problem) {
      throw Problem(table.place + ": " + problem.what());
    }
  }
  total.write(out);
  absorption.write(out);
  out.line("constinit const OfElement<Table> tables{{\n" + entries + "}};");
}

void write_blocks(const fs::path& sources, Output& out) {
  EntriesOfElement blocks(kElements);
  for (const auto& row :
       read_table<6>(sources / "coefficients.csv",
                     {"z", "edge", "energy_MeV", "mu_rho_cm2_g",
                      "mu_en_rho_cm2_g", "origin"})) {
    Entries& block = blocks[static_cast<std::size_t>(z_of(row) - 1)];
    std::vector<std::string> fields;
    for (const std::size_t field : {2U, 3U, 4U}) {
      const std::optional<double> value = base::read_e(row.fields[field], 0);
      row.require(value.has_value(), "'" + row.fields[field] + "'");
      fields.push_back(hex(*value));
    }
    block.push_back(joined(fields));
    row.require(block.size() <= physics::kBlockRows, "too many rows");
  }
  out.lists("BlockRow", "block_rows", blocks);
}

void write_modifications(const fs::path& sources, const Names& names,
                         Output& out) {
  EntriesOfElement modifications(kElements);
  for (const char* const file : {"densities.csv", "densities-83-92.csv"}) {
    for (const auto& row :
         read_table<6>(sources / file, {"z", "element", "modification",
                                        "density", "temperature", "source"})) {
      const auto i = static_cast<std::size_t>(z_of(row) - 1);
      row.require(row.fields[1] == names.symbols[i],
                  "symbol '" + row.fields[1] + "'");
      row.require(is_positive(row.fields[3]), "no density");
      modifications[i].push_back(joined(
          {row.fields[0], literal(row.fields[2]), "{" + row.fields[3] + "}",
           literal(row.fields[4]), literal(row.fields[5])}));
    }
  }
  out.lists("Modification", "modifications", modifications);
}

void write_edges(const fs::path& sources,
                 const std::vector<ElementRows>& tables, Output& out) {
  struct FoundEdge {
    double keV;
    std::string entry;
  };
  std::vector<std::vector<FoundEdge>> found(kElements);
  for (const auto& row :
       read_table<8>(sources / "edges.csv",
                     {"z", "symbol", "shell", "energy_kev", "jump_factor",
                      "xraydb_energy_kev", "xraydb_jump_ratio", "table_kev"})) {
    const auto i = static_cast<std::size_t>(z_of(row) - 1);
    double keV = plain_number(row.fields[3]).value_or(0.0);
    // The table's own, unless it is another one under this name (Re M5).
    const auto own = tables[i].edges.find(row.fields[2]);
    const bool in_table = own != tables[i].edges.end() &&
                          std::abs(own->second / keV - 1.0) < 0.01;
    if (in_table) keV = own->second;
    // Not known for some shells far below the tables.
    const std::string& jump = row.fields[4];
    row.require(keV > 0 && (jump.empty() ? keV < 1 : is_positive(jump)),
                "no energy or jump");
    row.require(row.fields[7].empty() ||
                    (in_table && plain_number(row.fields[7]) == keV),
                "the table has no edge at " + row.fields[7] + " keV");
    found[i].push_back(
        {keV,
         joined({row.fields[0], literal(row.fields[2]), "{" + hex(keV) + "}",
                 jump.empty() ? "1" : jump, in_table ? "true" : "false"})});
  }
  EntriesOfElement edges(kElements);
  for (std::size_t i = 0; i < found.size(); ++i) {
    std::stable_sort(
        found[i].begin(), found[i].end(),
        [](const auto& a, const auto& b) { return a.keV > b.keV; });
    for (const FoundEdge& edge : found[i]) edges[i].push_back(edge.entry);
  }
  out.lists("Edge", "edges", edges);
}

void write_doubts(const fs::path& sources, const Names& names, Output& out) {
  Entries doubts;
  for (const auto& row : read_table<4>(sources / "doubts.csv",
                                       {"z", "from_keV", "to_keV", "reason"})) {
    const auto& [z, from, to, reason] = row.fields;
    require_number(row, 1);
    require_number(row, 2);
    const std::string& name =
        names.names[static_cast<std::size_t>(z_of(row) - 1)];
    doubts.push_back(joined(
        {z, "{" + from + "}", "{" + to + "}",
         literal(name + ", " + from + " to " + to + " keV: " + reason)}));
  }
  out.list("Doubt", "doubts", doubts);
}

void write_nuclides(const fs::path& sources, Output& out) {
  Entries nuclides;
  std::pair<int, double> last;
  for (const auto& row : read_table<3>(sources / "nuclides.csv",
                                       {"z", "mass_number", "mass_u"})) {
    require_number(row, 1);
    const std::pair next{z_of(row), *plain_number(row.fields[1])};
    row.require(last < next, "out of order");
    row.require(
        std::abs(plain_number(row.fields[2]).value_or(0) - next.second) < 0.5,
        "mass and mass number differ");
    last = next;
    nuclides.push_back(joined({row.fields.begin(), row.fields.end()}));
  }
  out.list("Nuclide", "nuclides", nuclides);
}

// Words that find entries of a list: no word twice.
class Spellings {
 public:
  template <std::size_t N>
  void add(const Row<N>& row, const std::string& word, std::size_t index) {
    const auto [at, is_new] = words_.emplace(word, index);
    row.require(is_new || at->second == index, "'" + word + "' stands twice");
  }

  bool has(const std::string& word) const { return words_.contains(word); }

  void write(const std::string& name, Output& out) const {
    Entries entries;
    for (const auto& [word, index] : words_) {
      entries.push_back(joined({literal(word), str(index)}));
    }
    out.list("Spelling", name, entries);
  }

 private:
  std::map<std::string, std::size_t> words_;
};

// Whether `word` can be typed as the name of a material.
bool is_name(const std::string& word) {
  return !word.empty() && is_letter(word[0]) &&
         std::all_of(word.begin(), word.end(), [](char c) {
           return is_letter(c) || is_digit(c) || c == '-';
         });
}

void write_materials(const fs::path& sources, const Names& names, Output& out) {
  Entries materials;
  Spellings spellings;
  std::map<std::string, std::string> formulas;  // and where
  for (const auto& row : read_table<9>(
           sources / "materials.csv",
           {"name", "aliases", "formulas", "density_g_cm3", "composition",
            "kind", "composition_source", "density_source", "note"})) {
    const auto& [name, aliases, formula, density, composition, kind,
                 composition_source, density_source, note] = row.fields;
    row.require(is_name(name), "'" + name + "' is no name");
    row.require(is_positive(density) && !composition.empty(),
                "no density or composition");
    spellings.add(row, name, materials.size());
    for (std::string alias : pieces_of(aliases)) {
      std::replace(alias.begin(), alias.end(), ' ', '-');
      // The others only serve a search for text.
      if (is_name(alias)) spellings.add(row, alias, materials.size());
    }
    for (const std::string& word : pieces_of(formula)) {
      formulas.emplace(word, row.place);
    }
    const std::string both =
        aliases + (aliases.empty() || formula.empty() ? "" : "; ") + formula;
    materials.push_back(joined({literal(name), literal(both),
                                "{" + density + "}", literal(composition),
                                literal(kind), literal(composition_source),
                                literal(density_source), literal(note)}));
  }
  for (const auto& [word, place] : formulas) {
    if (spellings.has(word)) throw Problem(place + ": a name: " + word);
  }
  for (const std::string& name : names.names) {
    if (spellings.has(name)) throw Problem("a material is called " + name);
  }
  out.list("NamedMaterial", "materials", materials);
  spellings.write("material_spellings", out);
}

// Small letters and digits of a source's name.
std::string folded(const std::string& name) {
  std::string word;
  for (const char c : lower(name)) {
    if (is_letter(c) || is_digit(c)) word += c;
  }
  return word;
}

struct SourceRows {
  std::string name, aliases, half_life;
  std::size_t first = 0, count = 0;
};

void write_sources(const fs::path& sources, Output& out) {
  std::vector<SourceRows> list;
  Entries lines;
  Spellings spellings;
  double last_keV = 0;
  // An anode's K alpha lines, which come first, by themselves: "CuKa".
  const auto end_source = [&list, &lines](std::size_t k_alpha) {
    if (list.empty()) return;
    list.back().count = lines.size() - list.back().first;
    if (!list.back().name.ends_with("-anode") || k_alpha == 0) return;
    const std::string symbol =
        list.back().name.substr(0, list.back().name.find('-'));
    list.push_back({symbol + "Ka", "", "", list.back().first, k_alpha});
  };
  std::size_t k_alpha = 0;
  for (const auto& row :
       read_table<8>(sources / "sources.csv",
                     {"name", "aliases", "half_life", "line", "energy_kev",
                      "intensity", "source", "note"})) {
    const auto& [name, aliases, half_life, line, energy, intensity, origin,
                 note] = row.fields;
    const double keV = plain_number(energy).value_or(0);
    const bool is_next = list.empty() || list.back().name != name;
    row.require(is_positive(intensity) && keV > (is_next ? 0 : last_keV),
                "energy or intensity");
    last_keV = keV;
    if (is_next) {
      end_source(k_alpha);
      k_alpha = 0;
      list.push_back({name, aliases, half_life, lines.size()});
    }
    for (const std::string& word : pieces_of(name + "; " + aliases)) {
      spellings.add(row, folded(word), list.size() - 1);
    }
    if (line.find("K alpha") != line.npos) ++k_alpha;
    if (is_next && line.find("K alpha") != line.npos &&
        name.ends_with("-anode")) {
      spellings.add(row, folded(line.substr(0, line.find(' ')) + "Ka"),
                    list.size());
    }
    lines.push_back(joined({literal(line), "{" + energy + "}", intensity,
                            literal(origin), literal(note)}));
  }
  end_source(k_alpha);
  out.begin("SourceLine", "source_lines");
  for (const std::string& line : lines) out.entry(line);
  out.end();
  Entries entries;
  for (const SourceRows& source : list) {
    entries.push_back(
        joined({literal(source.name), literal(source.aliases),
                literal(source.half_life),
                Output::span("source_lines", source.first, source.count)}));
  }
  out.list("Source", "sources", entries);
  spellings.write("source_spellings", out);
}

void write_uncertainty_rows(const fs::path& sources, Output& out) {
  Entries rows;
  for (const auto& row : read_table<10>(
           sources / "uncertainty.csv",
           {"kind", "energy_from_kev", "energy_to_kev", "shells", "ratio_from",
            "ratio_to", "relative_uncertainty", "source", "status", "note"})) {
    const bool is_base = row.fields[0] == "base";
    row.require(is_base == row.fields[3].empty(), "a base row has no shells");
    const std::size_t from = is_base ? 1 : 4;
    for (const std::size_t field : {from, from + 1, std::size_t{6}}) {
      require_number(row, field);
    }
    rows.push_back(
        joined({row.fields[from], row.fields[from + 1], literal(row.fields[3]),
                row.fields[6], literal(row.fields[7])}));
  }
  out.list("UncertaintyRow", "uncertainty_rows", rows);
}

// The mass number of "119Sn".
std::string mass_number(const std::string& isotope) {
  return isotope.substr(0, isotope.find_first_not_of("0123456789"));
}

// "3/2" as a number.
std::string spin(const std::string& text) {
  return text.ends_with("/2") ? text + ".0" : text;
}

void write_transitions(const fs::path& sources, const Names& names,
                       Output& out) {
  Entries transitions;
  for (const auto& row : read_table<19>(
           sources / "moessbauer.csv",
           {"isotope", "energy_kev", "spin_ground", "spin_excited", "alpha",
            "alpha_uncertainty", "half_life_ns", "half_life_uncertainty_ns",
            "abundance_percent", "sigma0_cm2", "width_mm_s", "parent",
            "parent_half_life", "energy_source", "spin_source", "alpha_source",
            "half_life_source", "abundance_source", "note"})) {
    const std::string& isotope = row.fields[0];
    const std::string a = mass_number(isotope);
    const auto symbol = std::find(names.symbols.begin(), names.symbols.end(),
                                  isotope.substr(a.size()));
    row.require(symbol != names.symbols.end(), "'" + isotope + "'");
    for (const std::size_t field : {1U, 4U, 6U, 8U}) require_number(row, field);
    transitions.push_back(joined(
        {literal(isotope),
         str(static_cast<int>(symbol - names.symbols.begin()) + 1), a,
         "{" + row.fields[1] + "}", spin(row.fields[2]), spin(row.fields[3]),
         row.fields[4], row.fields[6], row.fields[8], literal(row.fields[11]),
         literal(row.fields[15])}));
  }
  out.list("Transition", "transitions", transitions);
}

void write_recoil_free_fractions(const fs::path& sources, Output& out) {
  Entries fractions;
  for (const auto& row : read_table<7>(sources / "recoil-free.csv",
                                       {"material", "isotope", "ion", "f",
                                        "uncertainty", "source", "note"})) {
    row.require(is_positive(row.fields[3]), "no fraction");
    fractions.push_back(joined(
        {literal(row.fields[0]), literal(row.fields[1]), literal(row.fields[2]),
         row.fields[3], or_zero(row.fields[4]), literal(row.fields[5])}));
  }
  out.list("RecoilFree", "recoil_free_fractions", fractions);
}

std::string tables_from(const fs::path& sources) {
  Output out;
  const Names names = write_elements(sources, out);
  const std::vector<ElementRows> tables = read_tables(sources);
  write_tables(tables, out);
  write_blocks(sources, out);
  write_modifications(sources, names, out);
  write_edges(sources, tables, out);
  write_doubts(sources, names, out);
  write_nuclides(sources, out);
  write_materials(sources, names, out);
  write_sources(sources, out);
  write_uncertainty_rows(sources, out);
  write_transitions(sources, names, out);
  write_recoil_free_fractions(sources, out);
  return out.text();
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 3) {
    std::cerr << "usage: maketables SOURCES-DIR OUTPUT.cpp\n";
    return 2;
  }
  try {
    data::write_file(argv[2], tables_from(argv[1]));
  } catch (const std::exception& problem) {
    std::cerr << base::harmless(problem.what()) << '\n';
    return 1;
  }
  return 0;
}
