#include "attenuation/dialogue.h"

#include <vector>

#include "attenuation/catalogue.h"
#include "attenuation/elementlist.h"
#include "attenuation/sample.h"
#include "base/unit.h"
#include "help/help.h"
#include "menu/choose.h"
#include "menu/query.h"
#include "terminal/window.h"

namespace attenuation {
namespace {

void measure_terminal() {
  terminal::window(1);
  // The menus may use lines wider than the cap that window() sets.
  terminal::term.npl = terminal::term.ncol(1);
}

void write_banner() {
  constexpr const char* kLines[] = {
      "",
      " The program uses the tables:",
      " X-Ray Mass Attenuation Coefficients",
      " published by National Institute of Standards and Technology (NIST)",
      " by J. H. Hubbell, S. M. Seltzer and M. J. Berger",
      " and",
      (" Das Periodensystem der Elemente online:Dichte der Elemente im"
       " Festzustand"),
      " with densities from handbooks, NIST and X-ray lattice constants",
      "",
      "",
      "",
  };
  for (const char* line : kLines) base::unit(base::kTerminalOutput).write(line);
}

// The chosen sample; asks until there is one.
const Sample& asked_sample() {
  std::vector<menu::Entry> entries;
  entries.reserve(kCatalogue.size());
  for (const Sample& sample : kCatalogue) {
    entries.push_back({sample.text, sample.help_key});
  }
  for (;;) {
    const auto chosen = menu::choose("select", "Nickel", entries);
    if (chosen) return kCatalogue[*chosen];
  }
}

}  // namespace

void dialogue() {
  measure_terminal();
  write_banner();
  const physics::ElementList elements = read_element_list();
  help::localpath.localhepath = "/attenuation.help";
  menu::show_help = help::help;

  const Sample& sample = asked_sample();
  const SampleInBeam in_beam = set_up(sample, elements);
  thickness_loop(in_beam);
}

}  // namespace attenuation
