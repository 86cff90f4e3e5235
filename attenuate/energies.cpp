#include "attenuate/energies.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "attenuate/number.h"
#include "attenuate/quantity.h"
#include "attenuate/words.h"
#include "physics/data.h"
#include "physics/errors.h"
#include "physics/formula.h"

namespace attenuate {
namespace {

using physics::InputError;

std::string quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

// Runs `read` on `part` of `word`; the column of its errors counts from `word`.
template <typename Read>
auto in_part(std::string_view word, std::string_view part, Read read) {
  try {
    return read(part);
  } catch (const InputError& error) {
    const auto before = static_cast<int>(part.data() - word.data());
    throw InputError(error.message(), error.column() + before, error.hint());
  }
}

// Digits in front of what could be a symbol: "57Fe", "119mSn".
struct IsotopeLike {
  std::string_view mass;
  std::string_view symbol;
};

std::optional<IsotopeLike> isotope_like(std::string_view word) {
  const std::size_t digits = word.find_first_not_of("0123456789");
  if (digits == 0 || digits > 3 || digits == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view symbol = word.substr(digits);
  if (symbol.size() > 2 || symbol[0] < 'A' || symbol[0] > 'Z') {
    return std::nullopt;
  }
  return IsotopeLike{word.substr(0, digits), symbol};
}

physics::Energy energy_in(std::string_view word, std::string_view part) {
  return in_part(word, part, [](std::string_view p) { return energy(p); });
}

std::size_t limited(double count, int column) {
  if (count <= static_cast<double>(kMostEnergies)) {
    return static_cast<std::size_t>(count);
  }
  throw InputError(
      "more than " + std::to_string(kMostEnergies) + " energies are asked for",
      column);
}

// "500log" counts the energies of a range.
std::optional<std::size_t> log_count(std::string_view part, int column) {
  if (!part.ends_with("log")) return std::nullopt;
  const std::string_view digits = part.substr(0, part.size() - 3);
  double count = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, count);
  if (error != std::errc() || stop != end || count != std::floor(count) ||
      count < 2) {
    throw InputError(quoted(digits) + " counts no energies", column,
                     "at least 2, as in 5:30:100log");
  }
  return limited(count, column);
}

// "5:30:100", where the step at `begin` was perhaps meant for a count, or
// "1:3:0.5MeV".
[[noreturn]] void refuse_wide_step(std::string_view word, std::size_t begin) {
  const std::string step(word.substr(begin));
  std::string hint;
  if (step.find_first_not_of("0123456789") == step.npos) {
    hint = std::string(word) + "log for " + step + " energies";
  } else if (step.ends_with("eV")) {
    hint = "a unit counts for its own number only";
  }
  throw InputError("the step is wider than the range",
                   static_cast<int>(begin) + 1, hint);
}

Beam range(std::string_view word) {
  const std::size_t first = word.find(':');
  const std::size_t second = word.find(':', first + 1);
  if (second == std::string_view::npos || second + 1 == word.size()) {
    throw InputError("a range needs a step or a count",
                     static_cast<int>(word.size()) + 1,
                     "5:30:0.5 in steps of 0.5 keV, 5:30:100log for 100 "
                     "energies");
  }
  Beam beam;
  beam.from = energy_in(word, word.substr(0, first));
  beam.to = energy_in(word, word.substr(first + 1, second - first - 1));
  if (beam.to <= beam.from) {
    throw InputError("a range rises", static_cast<int>(first) + 2,
                     "the lower energy first");
  }
  const int column = static_cast<int>(second) + 2;
  if (const auto count = log_count(word.substr(second + 1), column)) {
    beam.kind = Beam::Kind::kLogSteps;
    beam.count = *count;
    return beam;
  }
  beam.kind = Beam::Kind::kSteps;
  beam.step = energy_in(word, word.substr(second + 1));
  // A step that ends next to the last energy reaches it: 0.1 is no exact
  // number.
  const double steps = (beam.to.keV - beam.from.keV) / beam.step.keV;
  beam.count = limited(std::floor(steps * (1 + 1e-12) + 1e-9) + 1, column);
  if (beam.count == 1) refuse_wide_step(word, second + 1);
  return beam;
}

const physics::Edge* find_edge(int z, std::string_view shell) {
  const auto edges = physics::edges(z);
  const auto found =
      std::find_if(edges.begin(), edges.end(),
                   [shell](const auto& edge) { return edge.shell == shell; });
  return found == edges.end() ? nullptr : &*found;
}

const physics::Edge& edge_named(std::string_view word, std::size_t colon,
                                std::string_view shell) {
  const std::string_view symbol = word.substr(0, colon);
  const physics::Element* element = physics::element_with_symbol(symbol);
  if (element == nullptr) {
    if (const auto* heavy = physics::heavy_element(symbol)) {
      throw InputError(physics::without_coefficients(*heavy), 1);
    }
    const auto meant = physics::recapitalised(symbol);
    throw InputError(
        quoted(symbol) + " is not an element", 1,
        meant ? "did you mean " + *meant + std::string(word.substr(colon)) + "?"
              : "an edge is written Fe:K or Fe:K+50eV");
  }
  const physics::Edge* edge = find_edge(element->z, shell);
  if (edge != nullptr) return *edge;
  std::string shells;
  for (const auto& known : physics::edges(element->z)) {
    shells += (shells.empty() ? "" : " ") + std::string(known.shell);
  }
  throw InputError(std::string(element->name) + " has no edge " + quoted(shell),
                   static_cast<int>(colon) + 2, shells);
}

// 0 too, as a script that steps through the edge has it.
double offset_in(std::string_view word, std::string_view part) {
  return in_part(word, part, [](std::string_view p) {
    const auto number = leading_number(p);
    const bool zero =
        number && number->value == 0 &&
        (number->rest.empty() || energy_unit(number->rest) != nullptr);
    return zero ? 0.0 : energy(p).keV;
  });
}

// "Fe:K", "Fe:L3-20eV".
Beam edge(std::string_view word, std::vector<std::string>& notes) {
  const std::size_t colon = word.find(':');
  const std::size_t sign = word.find_first_of("+-", colon);
  const std::string_view shell = word.substr(
      colon + 1, sign == std::string_view::npos ? std::string_view::npos
                                                : sign - colon - 1);
  Beam beam;
  beam.from = edge_named(word, colon, shell).energy;
  if (sign != std::string_view::npos) {
    const std::string_view typed = word.substr(sign + 1);
    const double offset = offset_in(word, typed);
    beam.from.keV += word[sign] == '+' ? offset : -offset;
    if (offset > 0 && !typed.ends_with("eV")) {
      notes.push_back("the offset is " + energy_in_words(offset) + "; " +
                      std::string(word) + "eV means " + std::string(typed) +
                      " eV");
    }
  }
  if (!(beam.from.keV > 0)) {
    throw InputError("an energy must be above 0", static_cast<int>(sign) + 1);
  }
  return beam;
}

bool looks_like_edge(std::string_view item) {
  const std::size_t colon = item.find(':');
  const char first = item.empty() ? '\0' : item[0];
  return colon != std::string_view::npos &&
         (('A' <= first && first <= 'Z') || ('a' <= first && first <= 'z'));
}

Beam beam(std::string_view item, std::vector<std::string>& notes) {
  Beam found;
  constexpr std::string_view kDigits = "0123456789.";
  if (!item.empty() && item.find_first_not_of(kDigits) == item.npos) {
    found.from = energy(item);
    return found;
  }
  if (const auto* source = physics::source(item); source != nullptr) {
    found.kind = Beam::Kind::kSource;
    found.source = source;
    found.count = source->lines.size();
    return found;
  }
  if (looks_like_edge(item)) return edge(item, notes);
  if (item.find(':') != std::string_view::npos) return range(item);
  if (item.empty()) throw InputError("an energy is missing here", 1);
  refuse_isotope(item);
  found.from = energy(item);
  return found;
}

// "14,4" and "14,4keV" were perhaps one number.
bool decimal_comma(std::string_view word) {
  const std::size_t comma = word.find(',');
  if (comma == 0 || comma == word.npos) return false;
  constexpr std::string_view kDigits = "0123456789";
  const std::string_view behind = word.substr(comma + 1);
  const std::size_t end =
      std::min(behind.find_first_not_of(kDigits), behind.size());
  return word.find_first_not_of(kDigits) == comma && end > 0 &&
         (end == behind.size() || energy_unit(behind.substr(end)) != nullptr);
}

// Calls `action` with the text of each number of a word, the separator in front
// of it, and whether it is the step of a range.
template <typename Action>
void for_each_number(std::string_view word, Action action) {
  int colons = 0;
  for (std::size_t begin = 0; begin <= word.size();) {
    const std::size_t end =
        std::min(word.find_first_of(",:", begin), word.size());
    const char before = begin == 0 ? ',' : word[begin - 1];
    colons = before == ':' ? colons + 1 : 0;
    action(word.substr(begin, end - begin), before, colons == 2);
    begin = end + 1;
  }
}

// A unit counts for its own number only, which "1,2,3MeV" hides. A note says so
// where all the others are energies of the tables with that unit too.
void note_bare(std::string_view word, std::vector<std::string>& notes) {
  const Unit* unit = nullptr;
  for_each_number(word, [&](std::string_view typed, char, bool) {
    const auto number = leading_number(typed);
    const Unit* own = number ? energy_unit(number->rest) : nullptr;
    if (own != nullptr && own->factor != 1) unit = own;
  });
  if (unit == nullptr) return;
  std::string repeated;
  std::string bare;
  bool possible = true;
  for_each_number(word, [&](std::string_view typed, char before, bool step) {
    if (!repeated.empty()) repeated += before;
    repeated += typed;
    const auto number = leading_number(typed);
    if (!number || !number->rest.empty()) return;
    repeated += unit->name;
    bare += (bare.empty() ? "" : ", ") + std::string(typed);
    const double keV = number->value * unit->factor;
    possible = possible && (step || (1 <= keV && keV <= 20000));
  });
  if (bare.empty() || !possible) return;
  notes.push_back("a unit counts for its own number: " + bare +
                  " keV without one; " + repeated + " has " +
                  std::string(unit->name) + " throughout");
}

}  // namespace

std::string nearest_source(std::string_view word) {
  std::vector<std::string_view> names;
  for (const auto& source : physics::sources()) names.push_back(source.name);
  const auto nearest = physics::nearest(word, names, 1);
  return nearest.empty() ? std::string() : nearest.front();
}

void refuse_isotope(std::string_view word) {
  const auto isotope = isotope_like(word);
  if (!isotope) return;
  const std::string message = "no source is called " + std::string(word);
  if (physics::element_with_symbol(isotope->symbol) != nullptr) {
    throw InputError(
        message + "; ^" + std::string(word) + " names the isotope in a formula",
        1);
  }
  const std::string source = nearest_source(word);
  if (!source.empty()) {
    throw InputError(message + "; did you mean " + source + "?", 1);
  }
}

bool names_energies(std::string_view word) {
  const std::string_view item = word.substr(0, word.find(','));
  return looks_like_edge(item) || physics::source(item) != nullptr;
}

void read_energies(std::string_view word, std::size_t at,
                   std::vector<Beam>& beams, std::vector<std::string>& notes) {
  std::size_t begin = 0;
  while (true) {
    const std::size_t comma = std::min(word.find(',', begin), word.size());
    const std::string_view item = word.substr(begin, comma - begin);
    beams.push_back(in_part(
        word, item, [&](std::string_view part) { return beam(part, notes); }));
    beams.back().at = at + begin;
    if (comma == word.size()) break;
    begin = comma + 1;
  }
  if (decimal_comma(word)) {
    notes.emplace_back("',' separates energies; a decimal takes a point");
  }
  if (word.find('V') != std::string_view::npos) note_bare(word, notes);
}

}  // namespace attenuate
