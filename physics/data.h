// What is known of elements and materials: built in, or from a directory of
// one's own. A Data is a value that is read only; nothing here is global state
// that changes.

#ifndef PHYSICS_DATA_H_
#define PHYSICS_DATA_H_

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "physics/parabola.h"
#include "physics/quantities.h"

namespace physics {

// Elements that have tables: hydrogen (Z = 1) to uranium (Z = 92).
inline constexpr int kElements = 92;

struct Element {
  int z = 0;
  std::string_view symbol;
  std::string_view name;  // lower case, "iron"
  double weight = 0.0;    // standard atomic weight, g/mol
};

// A form of an element.
struct Modification {
  int z = 0;
  std::string_view form;  // "alpha, bcc"
  Density density;
  std::string_view temperature;  // "room" (20 to 25 C), "912 C", "4 K"
  std::string_view origin;
};

struct Nuclide {
  int z = 0;
  int mass_number = 0;
  double mass = 0.0;  // u
};

// A material of the catalogue.
struct NamedMaterial {
  std::string_view name;     // small letters, digits and hyphens
  std::string_view aliases;  // separated by "; "
  Density density;
  std::string_view composition;  // a formula, or "H 0.111898; O 0.888102"
  std::string_view kind;         // "polymer", "mineral", ...
  std::string_view composition_origin;
  std::string_view density_origin;
  std::string_view note;
};

// A line of a source.
struct SourceLine {
  std::string_view name;  // "gamma", "Fe K alpha1"
  Energy energy;
  double intensity = 0.0;  // photons per 100 decays; anodes: K alpha1 = 100
  std::string_view origin;
  std::string_view note;
};

struct Source {
  std::string_view name;     // "57Co", "CuKa"
  std::string_view aliases;  // separated by "; "
  std::string_view half_life;
  std::span<const SourceLine> lines;  // energies rise
};

struct Edge {
  int z = 0;
  std::string_view shell;  // "K", "L1" .. "M5"
  Energy energy;           // the table's own where it has the edge
  double jump = 0.0;       // mu above / mu below of this shell alone; 1 = none
  bool in_table = false;   // the table of the element has this edge
};

// A row of the rule for the uncertainty of mu/rho (k = 1) of one element. Base
// rows have no shells and go by the energy, edge rows by E / E(edge); ranges
// are half open, from <= value < to. The largest that fits holds.
struct UncertaintyRow {
  double from = 0.0;        // keV, or a ratio
  double to = 0.0;          // keV, or a ratio
  std::string_view shells;  // separated by blanks; blank for a base row
  double relative = 0.0;
  std::string_view origin;
};

// A Moessbauer transition.
struct Transition {
  std::string_view isotope;  // "57Fe"
  int z = 0;
  int mass_number = 0;
  Energy energy;
  double spin_ground = 0.0;
  double spin_excited = 0.0;
  double alpha = 0.0;  // total internal conversion coefficient
  double half_life_ns = 0.0;
  double abundance = 0.0;    // natural, percent
  std::string_view parents;  // "57Co", separated by "; "
  std::string_view alpha_origin;
};

// A recoil-free fraction at room temperature.
struct RecoilFree {
  std::string_view material;
  std::string_view isotope;
  std::string_view ion;
  double f = 0.0;
  double uncertainty = 0.0;  // 0 where not given
  std::string_view origin;
};

// One element's coefficients, ready to be evaluated (physics/table.h).
struct Table;

class Data {
 public:
  virtual ~Data() = default;

  // Z from 1 to 92, in order: elements()[z - 1].
  virtual std::span<const Element> elements() const = 0;
  virtual const Table& table(int z) const = 0;
  // Nothing where the parabola has no rows (Z above 82).
  virtual std::optional<Block> block(int z) const = 0;
  // Usual form first; may be empty.
  virtual std::span<const Modification> modifications(int z) const = 0;
  // What is said with an answer for this element at this energy, such as
  // "rhenium, 1.53 to 2.36 keV: the published rows are irregular"; blank for
  // most.
  virtual std::string_view doubt(int z, Energy energy) const = 0;
  // Version and origin of the tables, one line.
  virtual std::string_view version() const = 0;
};

// The tables that are built in.
const Data& builtin();

// Tables, weights and densities from a directory that holds "elements.dat",
// "attenuation.coefficients" and "dichte.dat" (data/README.md), for the
// elements that these have; built-in ones for the others, and mu_en/rho for
// those without any.
// Throws base::FatalEnd: a file is missing or faulty.
std::unique_ptr<const Data> read_data(const std::filesystem::path& directory);

// Look-ups in what is built in and the same for every Data.
const Element* element_with_symbol(std::string_view symbol);  // "Fe", exactly
const Element* element_with_name(std::string_view name);      // "iron"
// Symbol and name of Z = 93 to 118, which have no tables.
struct HeavyElement {
  int z = 0;
  std::string_view symbol;
  std::string_view name;
};
const HeavyElement* heavy_element(std::string_view symbol);
const Nuclide* nuclide(int z, int mass_number);
std::span<const NamedMaterial> materials();
// By name or alias, blanks and hyphens alike; a formula in small letters
// ("fe2o3"), though an alias, is no name.
const NamedMaterial* named_material(std::string_view name);
std::span<const Source> sources();
// By name or alias, capitals and small letters alike ("57co", "Co-57").
const Source* source(std::string_view name);
std::span<const Edge> edges(int z);  // energies fall: K first
std::span<const UncertaintyRow> uncertainty_rows();
std::span<const Transition> transitions();
std::span<const RecoilFree> recoil_free_fractions();

// Up to `most` of the `known` words that are nearest to `word` in letters
// changed, left out, put in or swapped, nearest first; none that is too far to
// be meant.
std::vector<std::string> nearest(std::string_view word,
                                 std::span<const std::string_view> known,
                                 std::size_t most = 3);

}  // namespace physics

#endif  // PHYSICS_DATA_H_
