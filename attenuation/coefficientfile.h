// Finding an element in the coefficient file.

#ifndef ATTENUATION_COEFFICIENTFILE_H_
#define ATTENUATION_COEFFICIENTFILE_H_

#include <string>
#include <string_view>

#include "attenuation/attenuation.h"
#include "base/fatal.h"
#include "base/text.h"
#include "base/unit.h"

namespace attenuation {

inline constexpr std::string_view kCoefficientFile = "attenuation.coefficients";

// Opens the coefficient file as unit 1 and reads to the record after the one
// that names the element, into `element`. Column 1 of a name record does not
// count; one that merely begins with the name also matches.
// The unit stays open before the block's six header records, for attenuation();
// the caller closes it.
// Fatal: no such file or element; a name that does not fit the record.
template <int N>
void find_element(const base::Text<12>& name, base::Text<N>& element) {
  base::Unit& file = base::unit(1);
  file.open(kCoefficientFile);
  const int l = name.length() + 1;
  static_cast<void>(element.columns(2, l, "element"));  // must fit
  try {
    file.read_to(2, name.trimmed(), element);
    file.read(element);
  } catch (base::EndOfFile& end) {
    end.advise("no block for the element \"" + std::string(name.trimmed()) +
               "\"; " + end.advice());
    throw;
  }
}

// attenuation() for the element `name`, which a fatal end then names.
void attenuation_of(const base::Text<12>& name, float energy, float& atc);

}  // namespace attenuation

#endif  // ATTENUATION_COEFFICIENTFILE_H_
