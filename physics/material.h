// Materials: what a formula, a name or a mixture stands for.
//
//   material = mixture | compound | name
//   mixture  = part "//" part { "//" part }
//   part     = [ number ( "%" | "wt%" | "at%" | "vol%" | "mg" | "g" | "mL" ) ]
//              ( compound | name | "(" mixture ")" )
//   compound = formula [ "@" number ]            density in g/cm3
//   formula  = units { adduct [ number ] units }
//   adduct   = "*" | "·" | "⋅" | "•" | "+" | "."
//   units    = unit { unit }
//   unit     = ( atom | "(" formula ")" | "[" formula "]" ) [count] [charge]
//   atom     = symbol [ "[" digits "]" ] | "^" digits symbol | "D" | "T"
//   charge   = "{" [digits] ("+"|"-") "}" | "^" [digits] ("+"|"-") | "^{"..."}"
//   count    = number | "_" number | "_{" number "}" | subscript digits
//   number   = digits [ "." digits ]
//   name     = small letter { small letter | digit | "-" }
//
// docs/formulas.md tells what a dot means and what is refused.

#ifndef PHYSICS_MATERIAL_H_
#define PHYSICS_MATERIAL_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "physics/data.h"
#include "physics/errors.h"
#include "physics/quantities.h"

namespace physics {

// Atoms of one kind in a formula.
struct Part {
  int z = 0;
  double atoms = 0.0;   // per formula unit, above 0; may be a fraction
  int mass_number = 0;  // of a nuclide; 0 for the element as it occurs
};
// In the order of first appearance, every kind once.
using Composition = std::vector<Part>;

// Reads a formula without density, such as "CuSO4.5H2O".
// Throws FormulaError.
Composition formula(std::string_view text);

// g/mol. Nuclides count with their own mass, elements with `data`'s weight.
double molar_mass(const Composition& composition, const Data& data = builtin());

// The share of one element in a material.
struct Constituent {
  int z = 0;
  double mass_fraction = 0.0;  // of all isotopes together; they add up to 1
  // What mu/rho of the element counts with: the mass fraction but for nuclides,
  // whose atoms attenuate like the element's.
  double weight = 0.0;
};

struct Material {
  std::string typed;  // without blanks at the ends
  std::string read;   // as understood: "CuSO4 + 5 H2O", "kapton (C22H10N2O5)"
  std::vector<Constituent> constituents;   // in the order of first appearance
  std::optional<double> molar_mass;        // g/mol; of formulas only
  std::optional<Composition> composition;  // of formulas only
  std::optional<Density> density;
  std::string density_origin;      // "typed", "X-ray", a handbook, ...
  std::vector<std::string> notes;  // readings that could surprise
};

// Reads a material: formula, name or mixture, with or without "@density". An
// element alone has the density of its usual form where that is solid or
// liquid at room temperature.
// Throws FormulaError, with the column in `text`.
Material material(std::string_view text, const Data& data = builtin());

// What gives a material without density one: "add @1.38". The figure is that of
// the catalogue's material of this composition, if it has one; a gas is named
// with it.
std::string density_advice(const Material& material);

// The composition in the dialogue's notation, which has neither brackets nor
// implied counts: "K_4Fe_1C_6N_6H_6O_3". Nothing where that cannot hold it:
// counts that are no integers, nuclides, elements above lead, more than 12
// components. A two-letter symbol holds counts up to 9, so that Fe12 takes two
// of them, Fe_9Fe_3.
std::optional<std::string> flat_notation(const Composition& composition);

// Which rule interpolates between the rows of a table.
enum class Rule {
  kPchip,     // the monotone cubic of physics/table.h
  kParabola,  // the dialogue's, single precision (physics/parabola.h)
};

// Sum of the elements' coefficients by mass (Bragg's additivity rule).
// Throws OutsideTable; InputError: the parabola has no rows for an element.
MassAttenuation mass_attenuation(const Material& material, Energy energy,
                                 Rule rule = Rule::kPchip,
                                 const Data& data = builtin());
MassAttenuation energy_absorption(const Material& material, Energy energy,
                                  const Data& data = builtin());

// Relative uncertainty (k = 1) of mu/rho: for each element the largest of the
// uncertainty rows that fit, added up linearly by the element's share of mu,
// since the errors of one table are not independent; then that of the
// interpolation in quadrature.
// Throws OutsideTable.
double relative_uncertainty(const Material& material, Energy energy,
                            const Data& data = builtin());

}  // namespace physics

#endif  // PHYSICS_MATERIAL_H_
