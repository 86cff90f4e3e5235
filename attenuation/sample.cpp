#include "attenuation/sample.h"

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "attenuation/ask.h"
#include "attenuation/atcoefficient.h"
#include "attenuation/coefficientfile.h"
#include "attenuation/contentformula.h"
#include "attenuation/elementdensity.h"
#include "attenuation/report.h"
#include "base/fatal.h"
#include "base/text.h"
#include "base/unit.h"
#include "help/key.h"
#include "menu/choose.h"
#include "text/itoc8.h"

namespace attenuation {
namespace {

using base::Text;

// A composition as contentformula gives it.
struct Formula {
  int j = 0;
  Composition indx{"indx"};
  Composition mult{"mult"};
};

Formula preset(const Sample& sample, const Symbols& es) {
  Formula formula;
  for (const Atoms& atoms : sample.atoms) {
    if (atoms.count == 0) break;
    // Meant: whatever the list has there is taken.
    if (es(atoms.index) != atoms.symbol) {
      base::note(
          "elements.dat:" + std::to_string(atoms.index) +
          ": the sample takes " + std::string(es(atoms.index).trimmed()) +
          ", which stands in this line, for " + std::string(atoms.symbol));
    }
    formula.indx(++formula.j) = atoms.index;
    formula.mult(formula.j) = atoms.count;
  }
  return formula;
}

// Tells of elements that count for nothing, or for less.
void note_weights(const Formula& formula, const ElementList& elements) {
  for (int i = 1; i <= formula.j; ++i) {
    const int index = formula.indx(i);
    const float weight = elements.emolweight(index);
    if (weight > 0.0F && std::isfinite(weight)) continue;
    base::note("elements.dat:" + std::to_string(index) +
               ": no molar weight for " +
               std::string(elements.es(index).trimmed()) +
               ", so the coefficient is wrong");
  }
}

float coefficient_at(float default_energy, const Formula& formula,
                     const ElementList& elements) {
  float value = default_energy;
  float atc = 0.0F;
  atcoefficient(base::kTerminalInput, base::kTerminalOutput, formula.j,
                formula.indx, formula.mult, elements.ename, elements.emolweight,
                value, atc);
  return atc;
}

Text<12> asked_element(const ElementList& elements) {
  const Text<132> answer =
      ask_string("symbol for the element", "Cu", "read/element");
  return elements.ename(
      element_with_symbol(elements.es, answer.columns<1, 2>()));
}

SampleInBeam set_up_element(const Text<12>& name, const Sample& sample) {
  constexpr int kWidth = 7;
  const float energy = ask_value("Photon energy in keV", sample.form,
                                 sample.energy, "read/energy");
  // Open over the density menu, whose help uses units 2 and 3.
  const base::UnitCloser closer(base::unit(1));
  Text<16> element;
  find_element(name, element);
  Text<8> ch8 = element.columns<4, 11>();
  int nz = 0;
  toolkit::c8toi(ch8, nz);
  if (nz < 1) {
    base::fatal("No atomic number in '" + std::string(kCoefficientFile) + "'",
                "the record after \"" + std::string(name.trimmed()) +
                    "\" must hold it in columns 4 to 10");
  }
  SampleInBeam in_beam;
  in_beam.density = elementdensity(nz);
  attenuation_of(name, energy, in_beam.atc);
  report_coefficient(in_beam.atc, in_beam.density, kWidth);
  return in_beam;
}

SampleInBeam set_up_compound(const Formula& formula, float density,
                             const Sample& sample,
                             const ElementList& elements) {
  constexpr int kWidth = 6;
  SampleInBeam in_beam;
  in_beam.density = density;
  note_weights(formula, elements);
  in_beam.atc = coefficient_at(sample.energy, formula, elements);
  report_coefficient(in_beam.atc, in_beam.density, kWidth);
  return in_beam;
}

SampleInBeam set_up_asked_compound(const Sample& sample,
                                   const ElementList& elements) {
  const Text<132> answer = ask_string(
      "formula of the compound", "N_2H_8Fe_1S_2O_8H_12O_6", "read/compound");
  const float density = ask_value("density of the compound g/cm3", "f8.2",
                                  sample.density, "read/density");
  Formula formula;
  contentformula(answer, elements.es, formula.j, formula.indx, formula.mult);
  const std::string as_read =
      written_out(elements.es, formula.j, formula.indx, formula.mult);
  if (answer != as_read) {
    base::note("the formula " + std::string(answer.trimmed()) + " is read as " +
               as_read);
  }
  if (sample.kind == Kind::kFormula) {
    return set_up_compound(formula, density, sample, elements);
  }
  SampleInBeam in_beam;
  in_beam.source = Source::kTwoLines;
  note_weights(formula, elements);
  in_beam.density = density;
  in_beam.atc1 = coefficient_at(sample.energy, formula, elements);
  in_beam.atc2 = coefficient_at(kUpperLine, formula, elements);
  return in_beam;
}

enum class ThicknessUnit { kArealMass, kMillimetres };

struct UnitEntry {
  ThicknessUnit unit;
  menu::Entry entry;
  std::string_view wanted;  // what highlights it
};

constexpr std::array<UnitEntry, 2> kUnits{{
    {ThicknessUnit::kArealMass,
     {"thickness mg/cm2", help::Key("read/mgcm2")},
     "mg/cm2"},
    {ThicknessUnit::kMillimetres,
     {"thickness in mm", help::Key("read/thickness")},
     "mm"},
}};

// The unit for the next thickness, nothing when the menu was left without a
// choice. `last_choice` is proposed, mg/cm2 where there was none.
std::optional<ThicknessUnit> asked_unit(
    std::optional<ThicknessUnit> last_choice) {
  std::string_view wanted = kUnits.front().wanted;
  std::vector<menu::Entry> entries;
  for (const UnitEntry& unit : kUnits) {
    entries.push_back(unit.entry);
    if (unit.unit == last_choice) wanted = unit.wanted;
  }
  const auto chosen = menu::choose("thickness of the sample", wanted, entries);
  if (!chosen) return std::nullopt;
  return kUnits[*chosen].unit;
}

// The areal mass in g/cm2. Without a unit millimetres are asked.
float asked_thickness(std::optional<ThicknessUnit> unit, float density) {
  if (unit == ThicknessUnit::kArealMass) {
    return ask_value("thickness mg/cm2", "f8.2", 100.0F, "read/mgcm2") /
           1000.0F;
  }
  const float mm = ask_value("thickness in mm", "f8.4", 0.125F, "read/mgcm2");
  return mm * density / 10.0F;
}

void report(const SampleInBeam& sample, float thick) {
  report_areal_mass(thick);
  if (sample.source == Source::kTwoLines) {
    const float trm = kLowerShare * std::exp(-sample.atc1 * thick) +
                      kUpperShare * std::exp(-sample.atc2 * thick);
    report_exponents(sample.atc1 * thick, sample.atc2 * thick);
    report_transmission(trm);
  } else {
    report_transmission(std::exp(-sample.atc * thick));
  }
}

}  // namespace

SampleInBeam set_up(const Sample& sample, const ElementList& elements) {
  switch (sample.kind) {
    case Kind::kElement:
      return set_up_element(sample.element, sample);
    case Kind::kSymbol:
      return set_up_element(asked_element(elements), sample);
    case Kind::kComposition:
      return set_up_compound(preset(sample, elements.es), sample.density,
                             sample, elements);
    case Kind::kFormula:
    case Kind::kTwoLines:
      return set_up_asked_compound(sample, elements);
  }
  return {};
}

void thickness_loop(const SampleInBeam& sample) {
  // Without a density there is no menu, and no thickness in mm.
  std::optional unit = ThicknessUnit::kArealMass;
  do {
    if (sample.density > 0.0F) unit = asked_unit(unit);
    const float thick = asked_thickness(unit, sample.density);
    if (thick < 0.0F) base::note("no sample has a negative areal mass");
    report(sample, thick);
  } while (ask_yes("new value for the thickness", "read/repeat"));
}

}  // namespace attenuation
