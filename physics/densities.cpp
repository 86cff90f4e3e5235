#include "physics/densities.h"

#include <string>

#include "base/array.h"
#include "base/fatal.h"
#include "physics/freetext.h"

namespace physics {
namespace {

// A list whose range error has the name of the menu's texts, which it feeds.
void append(std::vector<ModificationText>& list, const ModificationText& text) {
  if (list.size() == kMostModifications) {
    throw base::RangeError("Index '" + std::to_string(list.size() + 1) +
                           "' of dimension 1 of array 'queryar' above upper"
                           " bound of " +
                           std::to_string(kMostModifications));
  }
  list.push_back(text);
}

}  // namespace

std::optional<float> density_in(const base::Text<132>& text) {
  constexpr int kColumns = 60;
  return first_number(text.columns<31, 132>(), kColumns);
}

int density_code_in(const base::Text<80>& record) {
  return whole_number(record.columns<1, 8>());
}

std::vector<ModificationText> read_modifications(base::Unit& file, int z) {
  std::vector<ModificationText> found;
  base::Text<80> record;
  const auto next_code = [&] {
    file.read(record);
    return density_code_in(record);
  };
  const auto read = [&] {
    int code = 0;
    while (code != z) code = next_code();
    while (code == z) {
      append(found, record.columns<9, 80>());
      code = next_code();
    }
  };
  const auto too_short = [&](const base::EndOfFile& end) {
    return (found.empty()
                ? "no density for the element with the atomic number "
                : "no record follows the densities of the element with the"
                  " atomic number ") +
           std::to_string(z) + "; " + end.advice();
  };
  const auto too_much = [&] {
    return "dichte.dat: an element has at most " +
           std::to_string(kMostModifications) +
           " modifications, an atomic number at most 7 columns; the record"
           " is \"" +
           std::string(record.trimmed()) + "\"";
  };
  base::with_advice<base::RangeError>(
      [&] { base::with_advice<base::EndOfFile>(read, too_short); }, too_much);
  return found;
}

}  // namespace physics
