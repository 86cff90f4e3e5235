#include "attenuation/sample.h"

#include <array>
#include <cmath>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "attenuation/ask.h"
#include "attenuation/atcoefficient.h"
#include "attenuation/coefficientfile.h"
#include "attenuation/contentformula.h"
#include "attenuation/elementdensity.h"
#include "attenuation/elementlist.h"
#include "attenuation/notes.h"
#include "attenuation/report.h"
#include "base/fatal.h"
#include "base/text.h"
#include "base/unit.h"
#include "help/key.h"
#include "menu/choose.h"
#include "physics/beam.h"
#include "physics/flatformula.h"

namespace attenuation {
namespace {

using base::Text;

physics::Components preset(const Sample& sample, const physics::Symbols& es) {
  physics::Components components;
  for (const Atoms& atoms : sample.atoms) {
    if (atoms.count == 0) break;
    // Whatever the list has in the record is taken: with a list of one's own
    // the presets become samples of one's own.
    if (es(atoms.index) != atoms.symbol) {
      base::note(
          "elements.dat:" + std::to_string(atoms.index) +
          ": the sample takes " + std::string(es(atoms.index).trimmed()) +
          ", which stands in this line, for " + std::string(atoms.symbol));
    }
    components.add({atoms.index, atoms.count});
  }
  return components;
}

int atomic_number_of(const Text<12>& name, const Text<16>& record) {
  const std::string advice =
      "the record after \"" + std::string(name.trimmed()) +
      "\" must hold it in columns 4-11, with a blank behind it";
  const int nz = base::with_advice<base::RangeError>(
      [&record] { return physics::atomic_number_in(record); }, advice);
  if (nz < 1) {
    base::fatal("No atomic number in '" + std::string(kCoefficientFile) + "'",
                advice);
  }
  return nz;
}

SampleInBeam set_up_element(const Text<12>& name, const Sample& sample) {
  constexpr int kWidth = 7;
  constexpr int kRecord = 16;
  const float energy = ask_value("Photon energy in keV", sample.form,
                                 sample.energy, "read/energy");
  // Open over the density menu, whose help uses units 2 and 3.
  const base::UnitCloser closer(base::unit(1));
  const int nz = atomic_number_of(name, find_element<kRecord>(name));
  const float density = elementdensity(nz);
  const float mu_rho = attenuation_of(name, energy);
  report_coefficient(mu_rho, density, kWidth);
  return {density, {{1.0F, mu_rho}}};
}

const Text<12>& asked_element(const physics::ElementList& elements) {
  const Text<132> answer =
      ask_string("symbol for the element", "Cu", "read/element");
  const int element =
      physics::index_of_symbol(elements.es, answer.columns<1, 2>());
  note_symbol(answer, element, elements);
  return name_of(elements.ename, element);
}

// Asks the energy of each line, with the line's own as the default, and looks
// the coefficient up before it asks the next.
std::vector<physics::BeamLine> lines_through(
    const physics::Components& components, const physics::ElementList& elements,
    std::span<const SourceLine> lines) {
  note_weights(components, elements);
  std::vector<physics::BeamLine> in_beam;
  for (const SourceLine& line : lines) {
    const float energy =
        asked_energy(line.energy, base::kTerminalInput, base::kTerminalOutput);
    in_beam.push_back(
        {line.share, coefficient_of(components, elements.ename,
                                    elements.emolweight, energy)});
  }
  return in_beam;
}

SampleInBeam set_up_compound(const physics::Components& components,
                             float density, const Sample& sample,
                             const physics::ElementList& elements) {
  constexpr int kWidth = 6;
  const SourceLine single{sample.energy, 1.0F};
  SampleInBeam in_beam{density,
                       lines_through(components, elements, {&single, 1})};
  report_coefficient(in_beam.lines.front().mu_rho, density, kWidth);
  return in_beam;
}

SampleInBeam set_up_asked_compound(const Sample& sample,
                                   const physics::ElementList& elements) {
  const Text<132> answer = ask_string(
      "formula of the compound", "N_2H_8Fe_1S_2O_8H_12O_6", "read/compound");
  const float density = ask_value("density of the compound g/cm3", "f8.2",
                                  sample.density, "read/density");
  note_density(density);
  const physics::Components components = read_formula(answer, elements.es);
  note_reading(answer, components, elements.es);
  if (sample.kind == Kind::kTwoLines) {
    return {density, lines_through(components, elements, kCobaltLines)};
  }
  return set_up_compound(components, density, sample, elements);
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
  return physics::areal_mass(
      ask_value("thickness in mm", "f8.4", 0.125F, "read/mgcm2"), density);
}

void report(const SampleInBeam& sample, float thick) {
  report_areal_mass(thick);
  if (sample.lines.size() == kCobaltLines.size()) {
    report_exponents(physics::exponent(sample.lines[0], thick),
                     physics::exponent(sample.lines[1], thick));
  }
  report_transmission(physics::transmission(sample.lines, thick));
}

}  // namespace

SampleInBeam set_up(const Sample& sample,
                    const physics::ElementList& elements) {
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
  bool answered = false;
  try {
    do {
      if (sample.density > 0.0F) unit = asked_unit(unit);
      const float thick = asked_thickness(unit, sample.density);
      note_areal_mass(thick);
      report(sample, thick);
      answered = true;
    } while (ask_yes("new value for the thickness", "read/repeat"));
  } catch (base::EndOfFile& end) {
    // To close the input is a way to leave, once there is an answer.
    if (answered) end.be_brief("End of input: the session ends here.");
    throw;
  }
}

}  // namespace attenuation
