#include "attenuation/dialogue.h"

#include "attenuation/catalogue.h"
#include "attenuation/elementlist.h"
#include "attenuation/sample.h"
#include "base/text.h"
#include "base/unit.h"
#include "help/help.h"
#include "menu/query.h"
#include "terminal/window.h"

namespace attenuation {
namespace {

using base::Text;

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
  for (;;) {
    int lq = 0;
    for (const Sample& sample : kCatalogue) {
      ++lq;
      menu::scrd.queryar(lq) = sample.text;
      menu::scrd.helpar(lq) = sample.help_key;
      menu::scrd.ext(lq) = "";
    }
    int lk = lq;
    Text<132> title = "select";
    Text<80> ch80 = "Nickel";
    ch80.at(80, "ch80") = '#';
    menu::query(lq, lk, title, ch80);
    if (lq > 0) return kCatalogue[static_cast<std::size_t>(lq - 1)];
  }
}

}  // namespace

void dialogue() {
  measure_terminal();
  write_banner();
  ElementList elements;
  read_element_list(elements);
  help::localpath.localhepath = "/attenuation.help";
  menu::show_help = help::help;

  const Sample& sample = asked_sample();
  const SampleInBeam in_beam = set_up(sample, elements);
  thickness_loop(in_beam);
}

}  // namespace attenuation
