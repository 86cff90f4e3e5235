// Writes the text file of substances that are ready to be pasted into the
// dialogue: makecompounds SOURCES-DIR OUTPUT-FILE.
//
// SOURCES-DIR/compounds.csv names materials of the catalogue; formula, density
// and its origin are the catalogue's.

#include <algorithm>
#include <cmath>
#include <exception>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>

#include "base/harmless.h"
#include "data/tools/csv.h"
#include "physics/data.h"
#include "physics/formula.h"
#include "physics/material.h"

namespace {

// `text` in `width` columns.
std::string left(std::string text, std::size_t width) {
  if (text.size() < width) text.resize(width, ' ');
  return text;
}

// Words of `text` in lines of at most 78 columns, each behind four blanks.
std::string wrapped(const std::string& text) {
  constexpr std::size_t kWidest = 78;
  const std::string indent(4, ' ');
  std::istringstream words(text);
  std::string lines, line = indent;
  for (std::string word; words >> word;) {
    if (line.size() + 1 + word.size() > kWidest) {
      lines += line + '\n';
      line = indent;
    }
    line += line.size() > indent.size() ? " " + word : word;
  }
  return lines + line + '\n';
}

// Where the catalogue has mass fractions, the formula of the row, which must
// agree with them.
std::string formula_of(const data::Row<2>& row,
                       const physics::NamedMaterial& known) {
  constexpr double kAgreement = 0.001;
  const auto& [name, formula] = row.fields;
  if (formula.empty()) {
    row.require(known.composition.find(' ') == known.composition.npos,
                "the composition of " + name + " is no formula");
    return std::string(known.composition);
  }
  const physics::Material by_mass = physics::material(known.name);
  const physics::Material by_atoms = physics::material(formula);
  for (const physics::Constituent& part : by_mass.constituents) {
    const auto same = std::find_if(
        by_atoms.constituents.begin(), by_atoms.constituents.end(),
        [&part](const physics::Constituent& c) { return c.z == part.z; });
    row.require(
        same != by_atoms.constituents.end() &&
            std::fabs(same->mass_fraction - part.mass_fraction) < kAgreement,
        formula + " is not what " + name + " is made of");
  }
  return formula;
}

std::string entry_of(const data::Row<2>& row) {
  const std::string& name = row.fields[0];
  const physics::NamedMaterial* const known = physics::named_material(name);
  row.require(known != nullptr, "no material is called " + name);
  const std::string formula = formula_of(row, *known);
  const std::optional<std::string> flat =
      physics::flat_notation(physics::formula(formula));
  row.require(flat.has_value(),
              "the dialogue's notation cannot hold " + formula);
  return left(name, 32) + left(*flat, 36) +
         physics::plain(known->density.g_cm3) + '\n' +
         wrapped(std::string(known->density_origin));
}

std::string text_of(const std::filesystem::path& sources) {
  std::string text =
      "Compounds ready to paste: formula, density in g/cm3 at 20 to 25 C, and\n"
      "where the density is from. It is that of the compact substance; "
      "powders\n"
      "and pressed disks are lighter: take mg/cm2 for them.\n\n";
  for (const auto& row :
       data::read_table<2>(sources / "compounds.csv", {"name", "formula"})) {
    text += entry_of(row);
  }
  return text;
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 3) {
    std::cerr << "usage: makecompounds SOURCES-DIR OUTPUT-FILE\n";
    return 2;
  }
  try {
    data::write_file(argv[2], text_of(argv[1]));
  } catch (const std::exception& problem) {
    std::cerr << base::harmless(problem.what()) << '\n';
    return 1;
  }
  return 0;
}
