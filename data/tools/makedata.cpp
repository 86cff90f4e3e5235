// Writes the program's data files from their sources: makedata SOURCES OUTPUT.
//
// The sources are tables of comma-separated values. Nothing is computed: the
// digits of a source are the digits of the data file. Whatever the program
// would misread is refused here, with file and line.

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "base/edit.h"
#include "base/harmless.h"
#include "data/tools/csv.h"
#include "physics/elementlist.h"
#include "physics/parabola.h"

namespace {

namespace fs = std::filesystem;
using data::is_positive;
using data::plain_number;
using data::Problem;
using data::read_table;
using data::Row;
using data::write_file;

constexpr std::size_t kElements = physics::kListedElements;
constexpr std::size_t kMostPoints = physics::kBlockRows;

bool is_digit(char c) { return '0' <= c && c <= '9'; }

// `text` in `width` columns, left- and right-justified.
std::string left(std::string text, std::size_t width) {
  if (text.size() < width) text.resize(width, ' ');
  return text;
}
std::string right(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

struct ElementRow {
  std::string symbol;
  std::string name;
  std::string weight;
};

// In order of the atomic number, from 1 without a gap.
std::vector<ElementRow> read_elements(const fs::path& sources) {
  const fs::path file = sources / "elements.csv";
  std::vector<ElementRow> elements;
  for (const auto& row :
       read_table<4>(file, {"z", "symbol", "name", "weight"})) {
    const auto& [z, symbol, name, weight] = row.fields;
    row.require(z == std::to_string(elements.size() + 1),
                "atomic number '" + z + "' instead of " +
                    std::to_string(elements.size() + 1));
    row.require(symbol.size() == 1 || symbol.size() == 2,
                "symbol '" + symbol + "' is not of 1 or 2 letters");
    // A shorter name would read as a data record with blank fields.
    row.require(3 <= name.size() && name.size() <= 12,
                "name '" + name + "' is not of 3 to 12 letters");
    row.require(is_positive(weight),
                "weight '" + weight + "' is no positive number");
    elements.push_back({symbol, name, weight});
  }
  if (elements.size() != kElements) {
    throw Problem(file.string() + ": " + std::to_string(elements.size()) +
                  " elements instead of " + std::to_string(kElements));
  }
  return elements;
}

// The subscript of the element that a row of another table belongs to: the
// one that the row before belongs to or the next, so that none is missing.
template <std::size_t N>
std::size_t element_of(const Row<N>& row, std::size_t elements_seen) {
  const std::string& z = row.fields[0];
  const bool same = z == std::to_string(elements_seen);
  const bool next = z == std::to_string(elements_seen + 1);
  row.require(
      (same && elements_seen > 0) || (next && elements_seen < kElements),
      "atomic number '" + z + "' out of order");
  return same ? elements_seen - 1 : elements_seen;
}

void require_all_seen(const fs::path& file, std::size_t elements_seen) {
  if (elements_seen == kElements) return;
  throw Problem(file.string() + ": ends with the atomic number " +
                std::to_string(elements_seen));
}

// The element list. A compound's elements are looked up with one character
// less than the record has, so a name of 12 letters is cut; its first 11 still
// find the block.
std::string element_list(const std::vector<ElementRow>& elements) {
  std::string list;
  int z = 0;
  for (const ElementRow& element : elements) {
    list += left(right(std::to_string(++z), 4), 8);
    list += left(element.symbol, 8);
    list += left(element.name.substr(0, 11), 13);
    list += element.weight + '\n';
  }
  return list;
}

struct PointRow {
  std::string label;
  std::string energy;
  std::string mu_rho;
  std::string mu_en_rho;
};

// Whether `text` is a positive number that fills `width` columns like
// 1.00000E-03, so that it reads back as it stands.
bool fills_field(const std::string& text, std::size_t width) {
  const std::optional<double> value = base::read_e(text, 0);
  return text.size() == width && is_digit(text.front()) && text[1] == '.' &&
         value.value_or(0) > 0;
}

// The label in columns 1-3: the edge whose upper side the point is, and a mark
// where it is not as published.
std::string label(const Row<6>& row) {
  const std::string& edge = row.fields[1];
  const std::string& origin = row.fields[5];
  const bool added =
      origin == "xcom" || origin == "xraylib" || origin == "kissel";
  row.require(added || origin == "table" || origin == "corrected",
              "unknown origin '" + origin + "'");
  const std::string mark = added ? "+" : origin == "corrected" ? "*" : "";
  row.require(edge.size() + mark.size() <= 3,
              "edge '" + edge + "' does not fit the label");
  return edge + mark;
}

// Checks the order of a block's points, the last of which is `row`.
void check_order(const Row<6>& row, const std::vector<PointRow>& points) {
  row.require(points.size() <= kMostPoints,
              "more than " + std::to_string(kMostPoints) + " points");
  const auto energy = [&points](std::size_t back) {
    return back < points.size()
               ? *base::read_e(points[points.size() - 1 - back].energy, 0)
               : -static_cast<double>(back);
  };
  row.require(energy(0) >= energy(1), "the energy falls");
  row.require(energy(0) > energy(2), "a third point of the same energy");
  row.require(energy(0) > energy(1) || energy(2) > energy(3),
              "two edges without a point between them: the fit is singular");
}

std::vector<std::vector<PointRow>> read_points(const fs::path& sources) {
  const fs::path file = sources / "coefficients.csv";
  std::vector<std::vector<PointRow>> blocks;
  for (const auto& row :
       read_table<6>(file, {"z", "edge", "energy_MeV", "mu_rho_cm2_g",
                            "mu_en_rho_cm2_g", "origin"})) {
    const auto& [z, edge, energy, mu_rho, mu_en_rho, origin] = row.fields;
    const std::size_t element = element_of(row, blocks.size());
    if (element == blocks.size()) blocks.emplace_back();
    row.require(fills_field(energy, 11),
                "energy '" + energy + "' is not like 1.00000E-03");
    row.require(fills_field(mu_rho, 9),
                "mu/rho '" + mu_rho + "' is not like 1.000E-03");
    row.require(mu_en_rho.empty() || fills_field(mu_en_rho, 9),
                "mu_en/rho '" + mu_en_rho + "' is not like 1.000E-03");
    blocks.back().push_back({label(row), energy, mu_rho, mu_en_rho});
    check_order(row, blocks.back());
  }
  require_all_seen(file, blocks.size());
  return blocks;
}

// The coefficient file. No record is blank (it would read as a point), no
// title reads as a point or begins with a name, and a record that is no point
// follows the last block.
std::string coefficient_file(const std::vector<ElementRow>& elements,
                             const std::vector<std::vector<PointRow>>& blocks) {
  constexpr const char* kTitles =
      "   X-ray mass attenuation coefficients (NISTIR 5632, XCOM)\n"
      "   K, L1 .. M5 above an edge, + added, * corrected\n"
      "   ---------------------------------\n"
      "        Energy     mu/rho  mu_en/rho\n"
      "           MeV      cm2/g      cm2/g\n"
      "   ---------------------------------\n";
  std::string text;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    text += " " + elements[i].name + "\n";
    text += right(std::to_string(i + 1), 10) + "  atomic number\n";
    text += kTitles;
    for (const PointRow& point : blocks[i]) {
      text += left(point.label, 3) + point.energy + "  " + point.mu_rho;
      if (!point.mu_en_rho.empty()) text += "  " + point.mu_en_rho;
      text += '\n';
    }
  }
  return text + " End of the tables\n";
}

// Whether `text` is one of the pieces of `list`, which commas separate.
bool has_piece(const std::string& list, const std::string& text) {
  return (", " + list + ",").find(", " + text + ",") != std::string::npos;
}

// The temperature that the entry of a modification must add to its name, with
// a comma: none at room temperature (20 to 25 C) or where the name tells it.
// What a source says beside the bare temperature stays there.
std::string temperature_note(const std::string& modification,
                             std::string temperature) {
  temperature.erase(
      std::min(temperature.find_first_of(";("), temperature.size()));
  while (temperature.ends_with(' ')) temperature.pop_back();
  for (const std::string word : {"about ", "above "}) {
    if (temperature.starts_with(word)) temperature.erase(0, word.size());
  }
  const std::size_t unit = temperature.find(" C");
  const double celsius =
      unit == std::string::npos
          ? 0.0
          : plain_number(temperature.substr(0, unit)).value_or(0.0);
  const bool room =
      temperature == "room" || (20.0 <= celsius && celsius <= 25.0);
  if (room || has_piece(modification, temperature)) return {};
  return ", " + temperature;
}

// The density file. Its titles, whose first 8 columns must not read as an
// atomic number, stand before the first element, and a record that belongs to
// none follows the last.
std::string density_file(const fs::path& sources,
                         const std::vector<ElementRow>& elements) {
  const fs::path file = sources / "densities.csv";
  std::string text =
      "Densities of the elements in the solid state, usual form first.\n"
      "From handbooks, NIST and X-ray lattice constants.\n";
  std::size_t seen = 0;
  for (const auto& row :
       read_table<6>(file, {"z", "element", "modification", "density",
                            "temperature", "source"})) {
    const auto& [z, symbol, modification, density, temperature, source] =
        row.fields;
    const std::size_t i = element_of(row, seen);
    seen = i + 1;
    row.require(symbol == elements[i].symbol,
                "symbol '" + symbol + "' does not belong to " + z);
    row.require(is_positive(density),
                "density '" + density + "' is no positive number");
    std::string entry = elements[i].name;
    entry.append(" ").append(modification);
    entry += temperature_note(modification, temperature);
    row.require(entry.size() <= 30, "'" + entry + "' is over 30 columns");
    // The points stand below each other in column 41.
    const std::string whole = density.substr(0, density.find('.'));
    const std::string number =
        std::string(whole.size() < 2 ? 1 : 0, ' ') + density;
    row.require(entry.size() < 30 || number.starts_with(' '),
                "'" + entry + "' runs into its density");
    row.require(number.size() <= 6, "density '" + density + "' is too long");
    text +=
        left(right(z, 4), 8) + left(entry, 30) + left(number, 7) + "g/cm3\n";
  }
  require_all_seen(file, seen);
  return text + "End of the densities\n";
}

void make_data(const fs::path& sources, const fs::path& output) {
  const std::vector<ElementRow> elements = read_elements(sources);
  const std::string coefficients =
      coefficient_file(elements, read_points(sources));
  const std::string densities = density_file(sources, elements);
  write_file(output / "elements.dat", element_list(elements));
  write_file(output / "attenuation.coefficients", coefficients);
  write_file(output / "dichte.dat", densities);
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 3) {
    std::cerr << "usage: makedata SOURCES-DIR OUTPUT-DIR\n";
    return 2;
  }
  try {
    make_data(argv[1], argv[2]);
  } catch (const std::exception& problem) {
    std::cerr << base::harmless(problem.what()) << '\n';
    return 1;
  }
  return 0;
}
