#include "attenuation/elementdensity.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/fatal.h"
#include "base/harmless.h"
#include "base/text.h"
#include "base/unit.h"
#include "help/key.h"
#include "menu/choose.h"
#include "menu/query.h"
#include "physics/densities.h"
#include "terminal/window.h"

namespace attenuation {
namespace {

using Texts = std::vector<std::string>;

Texts texts_of_modifications(int nz) {
  base::Unit& file = base::unit(2);
  file.open("dichte.dat");
  const base::UnitCloser closer(file);
  Texts texts;
  for (const auto& text : physics::read_modifications(file, nz)) {
    texts.push_back(base::harmless(text.full()));
  }
  return texts;
}

// The number of the entry chosen, 0 for none.
int asked_modification(const Texts& texts) {
  std::vector<menu::Entry> entries(texts.size());
  std::transform(texts.begin(), texts.end(), entries.begin(),
                 [](const std::string& text) { return menu::Entry{text}; });
  // There is one page for all modifications, and two lines that show it. A
  // third line shows what the menu before has left for it.
  constexpr help::Key kPage = "read/modification";
  for (std::size_t i = 0; i < std::min<std::size_t>(2, entries.size()); ++i) {
    entries[i].help_key = kPage;
  }
  // Where there is no second line the next menu finds its key all the same.
  menu::scrd.helpar(2) = std::string_view(kPage);
  const auto chosen =
      menu::choose("density of the modifications",
                   std::string_view(texts.front()).substr(0, 10), entries);
  return chosen ? static_cast<int>(*chosen) + 1 : 0;
}

// The density in an entry as the menu shows it. A narrow terminal cuts entries,
// and so the density that they show.
float shown_density(const Texts& texts, int lq) {
  const base::Text<132>& shown = base::with_advice<base::RangeError>(
      [lq]() -> const base::Text<132>& { return menu::scrd.queryar(lq); },
      "no density was chosen: choose a modification with RET");
  const auto density = physics::density_in(shown);
  if (density != physics::density_in(texts[static_cast<std::size_t>(lq - 1)])) {
    base::note("the menu has cut the density off, as the terminal has only " +
               std::to_string(terminal::term.ncol(1)) +
               " columns; for the densities that come with the program 40"
               " are enough");
  }
  return density.value_or(0.0F);
}

}  // namespace

float elementdensity(int nz) {
  const Texts texts = texts_of_modifications(nz);
  if (texts.size() > 1 && base::trimmed(texts.front().substr(0, 10)).empty()) {
    base::note("dichte.dat: the first record of element " + std::to_string(nz) +
               " has no text in columns 9-18, so its last one is taken");
  }
  return shown_density(texts, asked_modification(texts));
}

}  // namespace attenuation
