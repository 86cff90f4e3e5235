// Finding an element in the coefficient file.

#ifndef ATTENUATION_COEFFICIENTFILE_H_
#define ATTENUATION_COEFFICIENTFILE_H_

#include <string>
#include <string_view>

#include "base/fatal.h"
#include "base/text.h"
#include "base/unit.h"
#include "physics/elementlist.h"

namespace attenuation {

inline constexpr std::string_view kCoefficientFile = "attenuation.coefficients";

// Opens the coefficient file as unit 1, finds the block of an element and
// returns the record after the one that names it, cut to `N` columns.
// The unit stays open before the titles of the block, for attenuation(); the
// caller closes it.
// Fatal: no such file or element; a name that does not fit N - 1 columns.
template <int N>
base::Text<N> find_element(const base::Text<12>& name) {
  base::Unit& file = base::unit(1);
  file.open(kCoefficientFile);
  return base::with_advice<base::EndOfFile>(
      [&] { return physics::find_block<N>(file, name); },
      [&name](const base::EndOfFile& end) {
        return "no block for the element \"" + std::string(name.trimmed()) +
               "\"; " + end.advice();
      });
}

// attenuation() for the element `name`, which a fatal end then names.
float attenuation_of(const base::Text<12>& name, float energy);

}  // namespace attenuation

#endif  // ATTENUATION_COEFFICIENTFILE_H_
