#include "attenuation/elementdensity.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "base/array.h"
#include "base/fatal.h"
#include "base/harmless.h"
#include "base/text.h"
#include "base/unit.h"
#include "help/key.h"
#include "menu/choose.h"
#include "menu/query.h"
#include "terminal/window.h"
#include "text/itoc8.h"
#include "text/trlch.h"

namespace attenuation {
namespace {

using base::Text;
using menu::scrd;

// The next record of the density file and its element code.
int read_record(base::Unit& file, Text<80>& ch80) {
  file.read(ch80);
  Text<8> ch8 = ch80.columns<1, 8>();
  int mz = 0;
  toolkit::c8toi(ch8, mz);
  return mz;
}

struct Modifications {
  int count = 0;
  base::Array<Text<132>, 64> text{"queryar"};  // as many as a menu holds
};

// The modifications of `nz`. The file is closed before the menu: its help reads
// details files by this unit.
Modifications read_modifications(int nz) {
  base::Unit& file = base::unit(2);
  file.open("dichte.dat");
  const base::UnitCloser closer(file);
  Text<80> ch80;
  Modifications found;
  try {
    int mz = 0;
    while (mz != nz) mz = read_record(file, ch80);
    while (mz == nz) {
      found.text(++found.count) = base::harmless(ch80.columns<9, 80>());
      mz = read_record(file, ch80);
    }
  } catch (base::EndOfFile& end) {
    end.advise((found.count == 0
                    ? "no density for the element with the atomic number "
                    : "no record follows the densities of the element with"
                      " the atomic number ") +
               std::to_string(nz) + "; " + end.advice());
    throw;
  } catch (base::RangeError& error) {
    error.advise(
        "dichte.dat: an element has at most 64 modifications, an atomic number"
        " at most 7 columns; the record is \"" +
        std::string(ch80.trimmed()) + "\"");
    throw;
  }
  return found;
}

// The density is the first number from column 39 of a record on, which is
// column 31 of the menu's entry.
float density_in(const Text<132>& entry) {
  int iout = 0;
  base::Array<float, 32> out{"out"};
  toolkit::trlch(60, entry.columns<31, 132>(), iout, out);
  return out(1);
}

}  // namespace

float elementdensity(int nz) {
  const Modifications known = read_modifications(nz);
  const std::string_view wanted = known.text(1).columns<1, 10>();
  if (base::trimmed(wanted).empty() && known.count > 1) {
    base::note("dichte.dat: the first record of element " + std::to_string(nz) +
               " has no text in columns 9-18, so its last one is taken");
  }
  std::vector<menu::Entry> entries;
  for (int i = 1; i <= known.count; ++i) {
    entries.push_back({known.text(i).full()});
  }
  // There is one page for all modifications, and two lines that show it. A
  // third line shows what the menu before has left for it.
  constexpr help::Key kPage = "read/modification";
  for (std::size_t i = 0; i < std::min<std::size_t>(2, entries.size()); ++i) {
    entries[i].help_key = kPage;
  }
  // Where there is no second line the next menu finds its key all the same.
  scrd.helpar(2) = std::string_view(kPage);
  const auto chosen =
      menu::choose("density of the modifications", wanted, entries);
  const int lq = chosen ? static_cast<int>(*chosen) + 1 : 0;

  try {
    const float density = density_in(scrd.queryar(lq));
    if (density != density_in(known.text(lq))) {
      base::note("the menu has cut the density off, as the terminal has only " +
                 std::to_string(terminal::term.ncol(1)) +
                 " columns; for the densities that come with the program 40"
                 " are enough");
    }
    return density;
  } catch (base::RangeError& error) {
    error.advise("no density was chosen: choose a modification with RET");
    throw;
  }
}

}  // namespace attenuation
