#include "attenuation/elementdensity.h"

#include <string>

#include "base/array.h"
#include "base/fatal.h"
#include "base/harmless.h"
#include "base/text.h"
#include "base/unit.h"
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

// Fills the query tables with the modifications of `nz`; returns how many. The
// file is closed before the menu: its help reads details files by this unit.
int read_modifications(int nz) {
  base::Unit& file = base::unit(2);
  file.open("dichte.dat");
  const base::UnitCloser closer(file);
  Text<80> ch80;
  int lq = 0;
  try {
    int mz = 0;
    while (mz != nz) mz = read_record(file, ch80);
    while (mz == nz) {
      scrd.queryar(++lq) = base::harmless(ch80.columns<9, 80>());
      mz = read_record(file, ch80);
    }
  } catch (base::EndOfFile& end) {
    end.advise((lq == 0 ? "no density for the element with the atomic number "
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
  for (int i = 1; i <= lq; ++i) scrd.ext(i) = "";
  return lq;
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
  int lq = read_modifications(nz);
  int lk = lq;
  const auto as_read = scrd.queryar;

  Text<80> chdf = scrd.queryar(1).columns<1, 10>();
  if (chdf.blank() && lq > 1) {
    base::note("dichte.dat: the first record of element " + std::to_string(nz) +
               " has no text in columns 9-18, so its last one is taken");
  }
  chdf.at(80, "chdf") = '#';
  // Meant: only the first two lines have the help of modifications.
  scrd.helpar(1) = scrd.helpar(2) = "read/modification";
  Text<132> title = "density of the modifications";
  menu::query(lq, lk, title, chdf);

  try {
    const float density = density_in(scrd.queryar(lq));
    if (density != density_in(as_read(lq))) {
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
