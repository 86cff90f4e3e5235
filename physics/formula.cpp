#include "physics/formula.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>

#include "base/harmless.h"

namespace physics {
namespace {

using namespace std::string_view_literals;

constexpr double kLargestCount = 1e6;

// What crystals hold for certain, so that a dot and a number in front of it are
// an adduct.
constexpr std::array kSolvents = {"H2O"sv, "D2O"sv, "NH3"sv, "CH3OH"sv,
                                  "C2H5OH"sv};

bool is_digit(char c) { return '0' <= c && c <= '9'; }
bool is_small(char c) { return 'a' <= c && c <= 'z'; }
bool is_capital(char c) { return 'A' <= c && c <= 'Z'; }
bool is_letter(char c) { return is_small(c) || is_capital(c); }
bool is_ascii(char c) { return static_cast<unsigned char>(c) < 0x80; }
char small(char c) { return is_capital(c) ? static_cast<char>(c + 32) : c; }
char capital(char c) { return is_small(c) ? static_cast<char>(c - 32) : c; }

unsigned byte_of(std::string_view text, std::size_t i) {
  return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
}
char char_at(std::string_view text, std::size_t i) {
  return i < text.size() ? text[i] : '\0';
}

// Bytes of the UTF-8 character at `i`; 0 if there is none, or one that steers
// a terminal.
std::size_t character_at(std::string_view text, std::size_t i) {
  const unsigned lead = byte_of(text, i), next = byte_of(text, i + 1);
  if (lead == '\t' || (0x20 <= lead && lead < 0x7F)) return 1;
  const auto continues = [&](std::size_t length) {
    for (std::size_t k = 1; k < length; ++k) {
      if ((byte_of(text, i + k) & 0xC0) != 0x80) return std::size_t{0};
    }
    return length;
  };
  // Overlong forms, surrogates and what lies beyond Unicode are no text.
  if (lead == 0xC2) return next >= 0xA0 ? continues(2) : 0;
  if (0xC3 <= lead && lead <= 0xDF) return continues(2);
  if (lead == 0xE0) return next >= 0xA0 ? continues(3) : 0;
  if (lead == 0xED) return next < 0xA0 ? continues(3) : 0;
  if (0xE1 <= lead && lead <= 0xEF) return continues(3);
  if (lead == 0xF0) return next >= 0x90 ? continues(4) : 0;
  if (lead == 0xF4) return next < 0x90 ? continues(4) : 0;
  if (0xF1 <= lead && lead <= 0xF3) return continues(4);
  return 0;
}

// Length of the one of `marks` that stands at `i`, or 0.
std::size_t mark_at(std::string_view text, std::size_t i,
                    std::span<const std::string_view> marks) {
  for (const std::string_view mark : marks) {
    if (text.substr(i, mark.size()) == mark) return mark.size();
  }
  return 0;
}

// The digit of a subscript at `i`, three bytes long, or -1.
int subscript_at(std::string_view text, std::size_t i) {
  const bool is = byte_of(text, i) == 0xE2 && byte_of(text, i + 1) == 0x82 &&
                  byte_of(text, i + 2) >= 0x80 && byte_of(text, i + 2) <= 0x89;
  return is ? static_cast<int>(byte_of(text, i + 2)) - 0x80 : -1;
}

// Length of the mark of an adduct, but for the dot, which may be a point.
std::size_t adduct_at(std::string_view text, std::size_t i) {
  constexpr std::array dots = {"\u00B7"sv, "\u22C5"sv, "\u2022"sv, "\u2219"sv,
                               "\u2027"sv};
  const char c = char_at(text, i);
  if (c == '*' || c == '+') return 1;
  return is_ascii(c) ? 0 : mark_at(text, i, dots);
}

std::size_t skip_blanks(std::string_view text, std::size_t i) {
  while (const std::size_t length = blank_at(text, i)) i += length;
  return i;
}

// Behind the solvent that stands at `i`, subscripts and "_" and a bracket
// around it allowed; `i` if there is none.
std::size_t solvent_end(std::string_view text, std::size_t i) {
  for (const std::string_view solvent : kSolvents) {
    std::size_t at = i;
    const char open = char_at(text, at);
    const bool bracket = open == '(' || open == '[';
    if (bracket) ++at;
    const bool matches =
        std::all_of(solvent.begin(), solvent.end(), [&](char c) {
          if (!is_digit(c)) return char_at(text, at++) == c;
          if (char_at(text, at) == '_') ++at;
          const bool subscript = subscript_at(text, at) == c - '0';
          const bool is = subscript || char_at(text, at) == c;
          at += subscript ? 3 : 1;
          return is;
        });
    const char close = open == '(' ? ')' : ']';
    if (matches && (!bracket || char_at(text, at++) == close)) return at;
  }
  return i;
}

// The solvent at `i` is the last of its group or adduct.
bool solvent_to_end(std::string_view text, std::size_t i) {
  const std::size_t end = solvent_end(text, i);
  if (end == i) return false;
  const std::size_t next = skip_blanks(text, end);
  const char c = char_at(text, next);
  return next >= text.size() || c == ')' || c == ']' || c == '.' ||
         adduct_at(text, next) > 0;
}

// One of the isotopes that occur or are in use, which lie near the element's
// weight: a count such as 12 in front of C is more often a count.
bool likely_isotope(int z, double mass_number) {
  const double weight =
      builtin().elements()[static_cast<std::size_t>(z - 1)].weight;
  return mass_number == std::floor(mass_number) &&
         std::abs(mass_number - weight) <= std::max(2.0, 0.06 * weight) &&
         nuclide(z, static_cast<int>(mass_number));
}

struct Atom {
  int z = 0;
  int mass_number = 0;
  double atoms = 1.0;
};

class Reader {
 public:
  Reader(std::string_view text, int column) : text_(text), first_(column) {
    reading_.echo.reserve(text.size() + 16);
  }

  FormulaReading read() {
    if (text_.size() > kLongestFormula) {
      fail("the formula is longer than 200 characters",
           kLongestFormula - (kLongestFormula > 0 && is_continuation()));
    }
    group();
    if (at_ < text_.size())
      fail(in_quotes(text_.substr(at_, 1)) + " closes nothing");
    merge();
    note_capitals();
    return std::move(reading_);
  }

 private:
  [[noreturn]] void fail(const std::string& message, std::size_t at,
                         std::string hint = {}) const {
    throw FormulaError(message, column_of(text_, at, first_), std::move(hint));
  }
  [[noreturn]] void fail(const std::string& message) const {
    fail(message, at_);
  }

  bool is_continuation() const {
    return (byte_of(text_, kLongestFormula) & 0xC0) == 0x80;
  }
  char peek(std::size_t ahead = 0) const { return char_at(text_, at_ + ahead); }
  std::string written(std::size_t from, std::size_t to) const {
    return std::string(text_.substr(from, to - from));
  }
  void note(std::string text) { reading_.notes.push_back(std::move(text)); }

  // The dot of an adduct at `at_`: one between digits is taken by the count.
  bool at_dot() const { return peek() == '.'; }
  bool at_end_of_group() const {
    return at_ >= text_.size() || peek() == ')' || peek() == ']';
  }

  // formula = units { adduct [ number ] units }
  void group() {
    std::size_t begin = atoms_used_;
    double factor = 1.0;
    std::size_t factor_at = at_;
    at_ = skip_blanks(text_, at_);
    if (depth_ > 0) factor = leading_count(factor_at);
    units_begin_ = at_;
    bool empty = true;
    for (;;) {
      const std::size_t blanks = at_;
      at_ = skip_blanks(text_, at_);
      const std::size_t mark = at_dot() ? 1 : adduct_at(text_, at_);
      if (mark == 0 && !at_end_of_group()) {
        unit(empty, at_ > blanks);
        empty = false;
        continue;
      }
      if (mark == 0 && empty && depth_ == 0 && begin == 0) break;
      if (mark > 0 && empty) nothing_before(mark);
      if (empty) fail("a count without a formula behind it", factor_at);
      multiply(begin, factor, factor_at);
      protect_echo();
      if (mark == 0) return;
      const std::size_t mark_begin = at_;
      adduct(mark);
      begin = atoms_used_;
      factor = leading_count(factor_at);
      if (at_end_of_group() || adduct_at(text_, at_) > 0 || at_dot()) {
        nothing_behind(mark_begin, mark);
      }
      units_begin_ = at_;
      empty = true;
    }
    // Only the whole can be empty: brackets look before they read.
    if (at_ < text_.size())
      fail(in_quotes(text_.substr(at_, 1)) + " closes nothing");
    fail("no material given", 0,
         "a formula (Fe2O3), a name (kapton) or a mixture (18% Cr // 8% Ni // "
         "Fe)");
  }

  [[noreturn]] void nothing_before(std::size_t mark) const {
    if (peek() == '.' && is_digit(peek(1))) {
      fail("a number does not begin with a point", at_);
    }
    fail("no formula in front of " + in_quotes(text_.substr(at_, mark)));
  }

  [[noreturn]] void nothing_behind(std::size_t mark_at,
                                   std::size_t mark) const {
    if (text_[mark_at] == '+' && blank_before(mark_at) == 0) {
      charge_hint(mark_at, '+');
    }
    if (text_[mark_at] == '.' && peek() == '.' && at_ == mark_at + 1) {
      fail("'..' is not part of a formula", mark_at);
    }
    fail("no formula behind " + in_quotes(text_.substr(mark_at, mark)),
         mark_at);
  }

  // Past an adduct's mark; a dot that could be taken for a point gets a note.
  void adduct(std::size_t mark) {
    const bool dot = at_dot();
    const bool behind_unit = at_ > 0 && blank_before(at_) == 0;
    at_ += mark;
    if (dot && !dot_decided_ && is_digit(peek()) &&
        !(behind_unit && is_digit(text_[at_ - 2]))) {
      const std::size_t end = number_end(text_, at_);
      // "CuSO4 .5H2O" may be half a water, "Fe.5H2O" hardly.
      if (!behind_unit || !solvent_to_end(text_, skip_blanks(text_, end))) {
        note("the dot in front of " + written(at_, end) +
             " begins an adduct, as a number does not begin with a point; * "
             "says the same without doubt");
      }
    }
    dot_decided_ = false;
    behind_atom_ = false;
    at_ = skip_blanks(text_, at_);
    reading_.echo += " + ";
  }

  std::size_t blank_before(std::size_t i) const {
    for (std::size_t length = 1; length <= 3 && length <= i; ++length) {
      if (blank_at(text_, i - length) == length) return length;
    }
    return 0;
  }

  // The count in front of units, behind an adduct's mark or a bracket.
  double leading_count(std::size_t& begin) {
    begin = at_;
    const std::size_t end = number_end(text_, at_);
    if (end == at_) return 1.0;
    if (char_at(text_, end) == '.' && is_digit(char_at(text_, end + 1))) {
      not_a_number();
    }
    const std::string_view digits = text_.substr(at_, end - at_);
    const double count = checked_count(digits, at_, "adduct");
    at_ = end;
    refuse_exponent(digits);
    at_ = skip_blanks(text_, end);
    const std::string_view atom = symbol_here();
    if (const int z = z_of(atom);
        end == at_ && z > 1 && likely_isotope(z, count)) {
      note(std::string(digits) + " in front of " + std::string(atom) +
           " is a count; ^" + std::string(digits) + std::string(atom) +
           " is the isotope");
    }
    reading_.echo += plain(count);
    reading_.echo += ' ';
    return count;
  }

  double checked_count(std::string_view digits, std::size_t at,
                       const char* what) {
    const std::size_t end = at + digits.size();
    if (char_at(text_, end) == ',' && is_digit(char_at(text_, end + 1))) {
      at_ = end;
      no_unit(false, false);  // "0,7" is no count of 0
    }
    const double count = number(digits);
    if (count <= 0.0) {
      fail("a count must be above 0", at,
           "leave the " + std::string(what) + " out instead");
    }
    if (count > kLargestCount) {
      fail("a count of " + std::string(digits) +
               " is above the limit of 1000000",
           at);
    }
    return count;
  }

  [[noreturn]] void not_a_number() const {
    std::size_t end = at_;
    while (is_digit(char_at(text_, end)) || char_at(text_, end) == '.') ++end;
    while (text_[end - 1] == '.') --end;
    fail(in_quotes(text_.substr(at_, end - at_)) + " is not a number");
  }

  // "1e-3": stands behind `digits`.
  void refuse_exponent(std::string_view digits) const {
    if (small(peek()) != 'e') return;
    std::size_t end = at_ + 1;
    if (char_at(text_, end) == '-' || char_at(text_, end) == '+') ++end;
    if (!is_digit(char_at(text_, end))) return;
    end = std::min(number_end(text_, end), at_ + 8);
    std::string power = written(at_, end);
    power.erase(std::remove(power.begin(), power.end(), '+'), power.end());
    const std::string all = std::string(digits) + power;
    double value = 0.0;
    std::from_chars(all.data(), all.data() + all.size(), value);
    const bool fits = 1e-12 < value && value <= kLargestCount;
    fail("no exponents in a formula", at_, fits ? "write " + plain(value) : "");
  }

  // unit = ( atom | "(" formula ")" | "[" formula "]" ) [ count ] [ charge ]
  void unit(bool first, bool behind_blank) {
    const std::size_t begin = atoms_used_, text_begin = at_;
    const char c = peek();
    bool bracket = false;
    if (is_capital(c) || c == '^') {
      atom();
    } else if (c == '(' || c == '[') {
      brackets();
      bracket = true;
    } else {
      no_unit(first, behind_blank);
    }
    const bool explicit_count = peek() == '_';
    count(begin, bracket);
    behind_atom_ = !bracket && !explicit_count;
    charge(text_begin);
  }

  std::string_view symbol_here() const {
    if (!is_capital(peek())) return {};
    return text_.substr(at_,
                        is_small(peek(1)) && symbol(peek(), peek(1)) ? 2 : 1);
  }
  static int z_of(std::string_view atom) {
    return atom.empty() ? 0 : symbol(atom[0], char_at(atom, 1));
  }

  // atom = symbol [ "[" digits "]" ] | "^" digits symbol | "D" | "T"
  void atom() {
    const std::size_t begin = at_;
    Atom read;
    if (peek() == '^') read.mass_number = mass_number_in_front();
    const std::size_t name_at = at_;
    const std::string_view name = symbol_here();
    read.z = z_of(name);
    if (read.z == 0 && read.mass_number == 0 && !is_small(peek(1))) {
      if (name == "D") read = {1, 2};
      if (name == "T") read = {1, 3};
    }
    if (read.z == 0 || (name.size() == 1 && is_small(peek(1)))) no_element();
    at_ += name.size();
    if (read.mass_number == 0 && peek() == '[' && is_digit(peek(1))) {
      const std::size_t end = number_end(text_, at_ + 1);
      if (char_at(text_, end) == ']') {
        read.mass_number = mass_number(at_ + 1, end);
        at_ = end + 1;
      }
    }
    const bool named = name == "D" || name == "T";
    if (read.mass_number > 0 && !named) {
      check_nuclide(read, name, begin);
      reading_.echo += '^' + std::to_string(read.mass_number);
    }
    saw_small_ = saw_small_ || name.size() == 2;
    reading_.echo += text_.substr(name_at, name.size());
    atoms_[atoms_used_++] = read;
  }

  int mass_number_in_front() {
    const std::size_t begin = at_;
    const bool braces = peek(1) == '{';
    const std::size_t digits = at_ + (braces ? 2 : 1);
    const std::size_t end = number_end(text_, digits);
    const std::size_t behind = end + (braces ? 1 : 0);
    if (end == digits || (braces && char_at(text_, end) != '}') ||
        !is_capital(char_at(text_, behind))) {
      fail("'^' names neither an isotope nor a charge", begin,
           "an isotope is written ^57Fe, a charge Fe{2+}");
    }
    at_ = behind;
    return mass_number(digits, end);
  }

  int mass_number(std::size_t begin, std::size_t end) const {
    const std::string_view digits = text_.substr(begin, end - begin);
    const double value = number(digits);
    if (digits.find('.') != digits.npos || value < 1 || value > 999) {
      fail(in_quotes(digits) + " is no mass number", begin);
    }
    return static_cast<int>(value);
  }

  void check_nuclide(const Atom& read, std::string_view name,
                     std::size_t at) const {
    if (nuclide(read.z, read.mass_number)) return;
    std::string known;
    for (int mass = 1; mass <= 3 * read.z; ++mass) {
      if (!likely_isotope(read.z, mass)) continue;
      known += (known.empty() ? "" : ", ") + std::to_string(mass);
    }
    fail("no isotope " + std::to_string(read.mass_number) + std::string(name) +
             " is known",
         at, known.empty() ? "" : std::string(name) + " has " + known);
  }

  [[noreturn]] void no_element() const {
    const std::string_view two = text_.substr(at_, is_small(peek(1)) ? 2 : 1);
    if (const HeavyElement* heavy = heavy_element(two)) {
      fail(without_coefficients(*heavy));
    }
    const auto meant = recapitalised(text_);
    // "Uuo" is not meant for U2O.
    const bool likely =
        meant &&
        std::adjacent_find(meant->begin(), meant->end(), [](char a, char b) {
          return a == b && is_capital(a);
        }) == meant->end();
    fail(in_quotes(two) + " is not an element", at_,
         likely
             ? "did you mean " + *meant + "? Capital and small letters differ"
             : "`attenuate elements` lists all 92");
  }

  void brackets() {
    const std::size_t open = at_;
    const char closing = peek() == '(' ? ')' : ']';
    const std::size_t inside = skip_blanks(text_, at_ + 1);
    if (char_at(text_, inside) == closing) fail("empty brackets");
    if (behind_atom_) refuse_oxidation_state(closing);
    if (++depth_ > kDeepestBrackets) {
      fail("brackets are nested deeper than " +
           std::to_string(kDeepestBrackets));
    }
    if (inside >= text_.size()) not_closed(open);
    const std::size_t echo_open = reading_.echo.size();
    const bool behind_atom = behind_atom_;
    reading_.echo += text_[open];
    ++at_;
    const std::size_t outer = units_begin_;
    behind_atom_ = false;
    group();
    units_begin_ = outer;
    if (at_ >= text_.size()) not_closed(open);
    if (peek() != closing) {
      fail(in_quotes(text_.substr(open, 1)) + " of column " +
               std::to_string(column_of(text_, open, first_)) +
               " is closed by " + in_quotes(text_.substr(at_, 1)),
           at_, std::string("write ") + closing + " here");
    }
    if (behind_atom) protect_iodine(echo_open);
    reading_.echo += closing;
    ++at_;
    --depth_;
  }

  [[noreturn]] void not_closed(std::size_t open) const {
    fail(in_quotes(text_.substr(open, 1)) + " is not closed", open);
  }

  void refuse_oxidation_state(char closing) const {
    std::size_t end = at_ + 1;
    while ("IVXivx"sv.find(char_at(text_, end)) != std::string_view::npos &&
           end < text_.size()) {
      ++end;
    }
    if (end == at_ + 1 || char_at(text_, end) != closing) return;
    fail(in_quotes(text_.substr(at_, end + 1 - at_)) +
             " is an oxidation state, which no formula has",
         at_,
         "leave it out, or write a charge: Fe{3+}; iodine is I without "
         "brackets");
  }

  // What stands where a unit is due and is none.
  [[noreturn]] void no_unit(bool first, bool behind_blank) const {
    const char c = peek();
    if (is_digit(c)) {
      const std::size_t end = number_end(text_, at_);
      if (char_at(text_, skip_blanks(text_, end)) == '%') {
        fail("a percentage stands in front of its part", at_,
             "18% Cr // 8% Ni // Fe");
      }
      if (first) count_in_front();
      if (behind_blank) count_behind_blank();
      fail("a count stands in front of the charge", at_,
           "Fe2{3+} for two Fe{3+}");
    }
    if (is_small(c)) no_symbol();
    const std::size_t length =
        std::max<std::size_t>(character_at(text_, at_), 1);
    const std::string_view shown = text_.substr(at_, length);
    const std::string message = in_quotes(shown) + " is not part of a formula";
    constexpr std::array minus = {"\u2212"sv, "\u2013"sv, "\u207B"sv};
    constexpr std::array plus = {"\u207A"sv};
    if (c == '-' || mark_at(text_, at_, minus)) charge_hint(at_, '-', message);
    if (mark_at(text_, at_, plus)) charge_hint(at_, '+', message);
    if (c == ',') {
      std::string points(text_);
      std::replace(points.begin(), points.end(), ',', '.');
      const bool decimal =
          at_ > 0 && is_digit(text_[at_ - 1]) && is_digit(peek(1));
      fail(message, at_, decimal ? "decimals take a point: " + points : "");
    }
    constexpr std::array superscripts = {"\u00B2"sv, "\u00B3"sv, "\u00B9"sv,
                                         "\u2070"sv, "\u2074"sv, "\u2075"sv,
                                         "\u2076"sv, "\u2077"sv};
    if (mark_at(text_, at_, superscripts)) {
      fail(message, at_, "a charge is written Fe{2+}, an isotope ^57Fe");
    }
    if (c == '%')
      fail(message, at_, "a mixture is written 18% Cr // 8% Ni // Fe");
    if (c == '/') fail(message, at_, "// parts a mixture: Fe // Ni");
    if (c == '@')
      fail(message, at_, "the density stands at the end: Fe2O3@5.24");
    fail(message);
  }

  // "Fe-2", "Fe3+": `at` is that of the sign.
  [[noreturn]] void charge_hint(std::size_t at, char sign,
                                std::string message = {}) const {
    std::size_t digits = at + std::max<std::size_t>(character_at(text_, at), 1);
    std::size_t end = number_end(text_, digits);
    std::size_t ion = at;
    if (end == digits) {  // "Fe3+"
      while (ion > 0 && is_digit(text_[ion - 1])) --ion;
      digits = ion;
      end = at;
    }
    const bool shows = units_begin_ < ion && ion - units_begin_ <= 20;
    if (message.empty())
      message = "no formula behind " + in_quotes(text_.substr(at, 1));
    if (skip_blanks(text_, 0) == at) fail(message, at);  // "-5% Fe"
    // "C-14"
    const int z = atoms_used_ > 0 ? atoms_[atoms_used_ - 1].z : 0;
    const double mass_number = number(text_.substr(digits, end - digits));
    if (z > 1 && digits > at && likely_isotope(z, mass_number)) {
      fail(message, at,
           "an isotope is written ^" + written(digits, end) +
               std::string(builtin()
                               .elements()[static_cast<std::size_t>(z - 1)]
                               .symbol));
    }
    fail(message, at,
         "a charge is written " + (shows ? written(units_begin_, ion) : "Fe") +
             '{' + written(digits, end) + sign + '}');
  }

  [[noreturn]] void no_symbol() const {
    std::size_t end = at_;
    while (is_small(char_at(text_, end))) ++end;
    constexpr std::array states = {"(s)"sv, "(l)"sv, "(g)"sv, "(aq)"sv};
    if (at_ > 0 && mark_at(text_, at_ - 1, states)) {
      fail("a formula has no state " + written(at_ - 1, end + 1), at_ - 1,
           "leave it out");
    }
    // A capital in place of the first small letter, and nothing else.
    std::string capitals(text_);
    capitals[at_] = capital(peek());
    const auto meant = recapitalised(text_);
    const bool likely =
        meant &&
        std::equal(meant->begin() + static_cast<std::ptrdiff_t>(at_),
                   meant->begin() + static_cast<std::ptrdiff_t>(end),
                   capitals.begin() + static_cast<std::ptrdiff_t>(at_));
    fail(in_quotes(text_.substr(at_, 1)) +
             " does not continue an element symbol",
         at_,
         likely ? "did you mean " + *meant + "?"
                : "symbols begin with a capital");
  }

  // "57Fe2O3".
  [[noreturn]] void count_in_front() const {
    const std::size_t end = number_end(text_, at_);
    const std::size_t units = skip_blanks(text_, end);
    std::size_t last = units;
    while (
        last < text_.size() && adduct_at(text_, last) == 0 &&
        (char_at(text_, last) != '.' || is_digit(char_at(text_, last + 1)))) {
      ++last;
    }
    const std::string digits = written(at_, end),
                      counted = written(units, last),
                      rest = written(last, text_.size());
    Reader ahead(text_.substr(units), 1);
    const std::string_view atom = ahead.symbol_here();
    const int z = z_of(atom);
    if (z == 0) {
      fail(in_quotes(digits) + " does not begin a formula", at_,
           char_at(text_, end) == ',' ? "decimals take a point" : "");
    }
    const bool isotope = likely_isotope(z, number(digits));
    const std::string count =
        "(" + counted + ")" + digits + rest + " for the count";
    if (!isotope) {
      fail("a count does not begin a formula", at_, count);
    }
    fail(in_quotes(digits) + " may count " + counted +
             " units or name the isotope " + digits + std::string(atom),
         at_, "^" + digits + counted + rest + " for the isotope, " + count);
  }

  // "Fe 2O3".
  [[noreturn]] void count_behind_blank() const {
    const std::string hint = "write it without the blank, or with *";
    const std::size_t end = number_end(text_, at_);
    std::string together, all;
    for (std::size_t i = 0; i < text_.size(); ++i) {
      if (const std::size_t length = blank_at(text_, i)) {
        i += length - 1;
        continue;
      }
      all += text_[i];
      if (i < at_) together += text_[i];
    }
    try {
      const auto rest = read_formula(text_.substr(end)).composition;
      const double count = number(text_.substr(at_, end - at_));
      for (const Part& part : rest) {
        if (part.mass_number > 0)
          together += '^' + std::to_string(part.mass_number);
        together +=
            builtin().elements()[static_cast<std::size_t>(part.z - 1)].symbol;
        if (part.atoms * count != 1.0) together += plain(part.atoms * count);
      }
    } catch (const FormulaError&) {
      fail("a blank before a count", at_, hint);
    }
    fail("a blank before a count: " + together + ", " + all + " or an adduct?",
         at_, hint);
  }

  // count = number | "_" number | "_{" number "}" | subscript digits
  void count(std::size_t begin, bool bracket) {
    const std::size_t text_begin = at_;
    const char* what = bracket ? "bracket" : "element";
    if (subscript_at(text_, at_) >= 0) {
      std::string digits;
      for (;;) {
        const int digit = subscript_at(text_, at_);
        const bool point = peek() == '.' && subscript_at(text_, at_ + 1) >= 0;
        if (digit < 0 && !point) break;
        digits += point ? '.' : static_cast<char>('0' + digit);
        at_ += point ? 1 : 3;
      }
      if (std::count(digits.begin(), digits.end(), '.') > 1) {
        fail(in_quotes(digits) + " is not a number", text_begin);
      }
      apply(begin, checked_count(digits, text_begin, what), text_begin);
      return;
    }
    const bool explicit_count = peek() == '_';
    if (explicit_count) ++at_;
    const bool braces = explicit_count && peek() == '{';
    if (braces) ++at_;
    const std::size_t digits_at = at_;
    if (!is_digit(peek())) {
      if (explicit_count) fail("no count behind '_'", text_begin);
      return;
    }
    const std::size_t end = braces ? number_end(text_, at_) : end_of_count();
    const std::string_view digits = text_.substr(digits_at, end - digits_at);
    const double value = checked_count(digits, digits_at, what);
    at_ = end;
    refuse_exponent(digits);
    if (braces) {
      if (peek() != '}') fail("'{' is not closed", text_begin + 1);
      ++at_;
    } else if (bracket && !explicit_count) {
      refuse_hydrate(digits_at, end);
    }
    apply(begin, value, digits_at);
  }

  void apply(std::size_t begin, double value, std::size_t at) {
    multiply(begin, value, at);
    if (value != 1.0) reading_.echo += plain(value);
  }

  // "K4[Fe(CN)6]3H2O": the dialogue's presets are written that way for the
  // hydrate, and whoever copies one must not triple the bracket.
  void refuse_hydrate(std::size_t begin, std::size_t end) const {
    const std::size_t solvent = skip_blanks(text_, end);
    if (!is_letter(char_at(text_, solvent)) ||
        !solvent_to_end(text_, solvent)) {
      return;
    }
    const std::string digits = written(begin, end);
    const std::size_t behind = solvent_end(text_, solvent);
    const std::string name = written(solvent, behind),
                      front = written(0, begin),
                      rest = written(behind, text_.size());
    constexpr std::array words = {"two", "three", "four",  "five",
                                  "six", "seven", "eight", "nine"};
    const bool word = digits.size() == 1 && '2' <= digits[0];
    std::string brackets =
        word ? words[static_cast<std::size_t>(digits[0] - '2')] : digits;
    brackets += digits == "1" ? " bracket" : " brackets";
    fail(in_quotes(digits) + " may count the bracket or " + name, begin,
         front + "*" + digits + name + rest + " for the hydrate, " + front +
             digits + "(" + name + ")" + rest + " for " + brackets);
  }

  // The end of the count at `at_`: a dot between digits is a decimal point or
  // begins an adduct.
  std::size_t end_of_count() {
    const std::size_t one = digits_end(at_);
    if (!dot_and_digit(one)) return one;
    const std::size_t two = digits_end(one + 1);
    if (number(text_.substr(at_, one - at_)) > 0.0 && begins_adduct(one)) {
      return adduct_dot(one);
    }
    if (dot_and_digit(two)) {
      if (begins_adduct(two)) return adduct_dot(two);
      not_a_number();
    }
    note_point(one, two);
    return two;
  }

  std::size_t digits_end(std::size_t i) const {
    while (is_digit(char_at(text_, i))) ++i;
    return i;
  }
  bool dot_and_digit(std::size_t i) const {
    return char_at(text_, i) == '.' && is_digit(char_at(text_, i + 1));
  }
  // A number that counts something does not begin with 0, but for "0.5".
  bool counts(std::size_t i) const {
    return text_[i] != '0' ||
           (char_at(text_, i + 1) == '.' && is_digit(char_at(text_, i + 2)));
  }

  // The dot at `dot` is followed by a number and by a solvent to the end.
  bool begins_adduct(std::size_t dot) const {
    const std::size_t end = number_end(text_, dot + 1);
    return counts(dot + 1) && !dot_and_digit(end) &&
           solvent_to_end(text_, skip_blanks(text_, end));
  }

  std::size_t adduct_dot(std::size_t dot) {
    const std::size_t number = number_end(text_, dot + 1);
    const std::size_t solvent = skip_blanks(text_, number);
    note("the dot in " + written(at_, number) + " begins an adduct: + " +
         written(dot + 1, number) + ' ' +
         written(solvent, solvent_end(text_, solvent)) +
         "; * says the same without doubt");
    dot_decided_ = true;
    return dot;
  }

  // The rest of the group would make an adduct too: two or more elements, no
  // decimals.
  void note_point(std::size_t dot, std::size_t end) {
    if (number(text_.substr(at_, dot - at_)) <= 0.0 || !counts(dot + 1)) return;
    int depth = 0;
    std::string_view first;
    bool two = false;
    std::size_t i = end;
    for (; i < text_.size() && depth >= 0 && adduct_at(text_, i) == 0; ++i) {
      const char c = text_[i];
      if (c == '(' || c == '[') ++depth;
      if (c == ')' || c == ']') --depth;
      if (dot_and_digit(i) && is_digit(text_[i - 1])) return;
      if (c == '.' && depth == 0) break;
      if (!is_capital(c)) continue;
      const std::string_view name =
          text_.substr(i, is_small(char_at(text_, i + 1)) ? 2 : 1);
      if (first.empty()) first = name;
      two = two || name != first;
    }
    if (depth < 0) --i;
    if (!two) return;
    note("the dot in " + written(at_, end) +
         " is a decimal point; an adduct of " + written(dot + 1, end) + ' ' +
         written(end, i) + " is written with *");
  }

  // charge = "{" [digits] sign "}" | "^" [digits] sign | "^{" [digits] sign "}"
  void charge(std::size_t unit_begin) {
    std::size_t i = at_;
    const bool caret = peek() == '^';
    if (caret) ++i;
    const bool braces = char_at(text_, i) == '{';
    if (!caret && !braces) return;
    if (braces) ++i;
    const std::size_t sign = digits_end(i);
    const char c = char_at(text_, sign);
    if ((c == '+' || c == '-') &&
        (!braces || char_at(text_, sign + 1) == '}')) {
      at_ = sign + (braces ? 2 : 1);
      return;
    }
    if (caret) return;  // an isotope, which is the next unit
    const std::size_t close = std::min(text_.find('}', at_), text_.size() - 1);
    fail(in_quotes(text_.substr(at_, close + 1 - at_)) + " is no charge", at_,
         "a charge is written " + written(unit_begin, at_) + "{2+}");
  }

  void multiply(std::size_t begin, double factor, std::size_t at) {
    if (factor == 1.0) return;
    for (std::size_t i = begin; i < atoms_used_; ++i) {
      atoms_[i].atoms *= factor;
      if (atoms_[i].atoms > kLargestCount) {
        fail("counts that multiply to " + plain(atoms_[i].atoms) +
                 " are above the limit of 1000000",
             at);
      }
    }
  }

  // What was said without doubt, with "_" or a bracket or a 1, must not come to
  // doubt where the echo leaves that out.
  void protect_echo() {
    std::string& echo = reading_.echo;
    const bool bracket =
        echo.size() > 2 && (echo.back() == ')' || echo.back() == ']');
    for (const std::string_view solvent : kSolvents) {
      const std::size_t length = solvent.size() + (bracket ? 2 : 0);
      if (echo.size() <= length) continue;
      const std::size_t at = echo.size() - length;
      if (echo.compare(at + (bracket ? 1 : 0), solvent.size(), solvent) != 0)
        continue;
      if (bracket && echo[at] != '(' && echo[at] != '[') continue;
      std::size_t begin = at;
      while (begin > 0 && (is_digit(echo[begin - 1]) || echo[begin - 1] == '.'))
        --begin;
      if (begin == at || begin == 0) return;
      const bool decimal = echo.find('.', begin) < at && echo[begin] != '0';
      const bool counts = echo[begin - 1] == ')' || echo[begin - 1] == ']';
      if (decimal) {
        echo.insert(at, "}");
        echo.insert(begin, "_{");
      } else if (counts && !bracket) {
        echo.insert(begin, "_");
      }
      return;
    }
  }

  // "Fe(I1)" comes out as "Fe_1(I)", as "Fe(I)" is refused.
  void protect_iodine(std::size_t open) {
    std::string& echo = reading_.echo;
    if (echo.find_first_not_of("IV", open + 1) != echo.npos) return;
    std::size_t begin = open;
    while (is_digit(echo[begin - 1]) || echo[begin - 1] == '.') --begin;
    echo.insert(begin, begin == open ? "_1" : "_");
  }

  void merge() {
    Composition& all = reading_.composition;
    all.reserve(std::min<std::size_t>(atoms_used_, 16));
    for (std::size_t i = 0; i < atoms_used_; ++i) {
      const Atom& atom = atoms_[i];
      const auto same =
          std::find_if(all.begin(), all.end(), [&](const Part& part) {
            return part.z == atom.z && part.mass_number == atom.mass_number;
          });
      if (same == all.end()) {
        all.push_back({atom.z, atom.atoms, atom.mass_number});
      } else {
        same->atoms += atom.atoms;
      }
    }
  }

  // "SIO2" is sulphur, iodine and oxygen, though few will mean that.
  void note_capitals() {
    if (saw_small_) return;
    // Pairs that are common inside a formula (carbonates, acids, phosphates,
    // thiocyanates), and what is common everywhere.
    constexpr std::array common = {"CO"sv, "CS"sv, "HO"sv,
                                   "OS"sv, "PO"sv, "SC"sv};
    constexpr std::array groups = {"CO(N"sv, "CS(N"sv, "HOC"sv, "HOO"sv,
                                   "CD3"sv,  "ND3"sv,  "ND4"sv};
    const std::string_view text = trimmed(text_);
    if (text == "CO2") return;
    const auto begins = [&text](std::size_t i, const auto& all) {
      return std::any_of(all.begin(), all.end(), [&](std::string_view one) {
        return text.substr(i, one.size()) == one;
      });
    };
    std::string meant(text);
    bool doubtful = false;
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
      if (!is_capital(text[i]) || !is_capital(text[i + 1])) continue;
      if (symbol(text[i], small(text[i + 1])) == 0) continue;
      const bool is_common = begins(i, groups) || (i > 0 && begins(i, common));
      doubtful = doubtful || !is_common;
      meant[i + 1] = small(text[i + 1]);
      ++i;
    }
    if (!doubtful) return;
    note(std::string(text) + " is read as written, each capital an element; " +
         meant + " would be another formula");
  }

  std::string_view text_;
  int first_;
  std::size_t at_ = 0;
  int depth_ = 0;
  std::size_t units_begin_ = 0;  // of the adduct that is being read
  bool behind_atom_ = false;
  bool dot_decided_ = false;  // the next dot was found to begin an adduct
  bool saw_small_ = false;
  std::array<Atom, kLongestFormula> atoms_;
  std::size_t atoms_used_ = 0;
  FormulaReading reading_;
};

// The run of letters that begins at `i`, respelt with the fewest changes and
// appended to `to`. False where it cannot be split into symbols.
bool respell(std::string_view run, std::string& to) {
  constexpr int kNever = std::numeric_limits<int>::max() / 2;
  std::vector<int> changes(run.size() + 1, kNever);
  std::vector<std::size_t> taken(run.size() + 1, 0);
  changes[run.size()] = 0;
  for (std::size_t i = run.size(); i-- > 0;) {
    const int first = is_capital(run[i]) ? 0 : 1;
    const char c = capital(run[i]);
    if (i + 1 < run.size() && symbol(c, small(run[i + 1])) > 0) {
      changes[i] = first + (is_small(run[i + 1]) ? 0 : 1) + changes[i + 2];
      taken[i] = 2;
    }
    const bool one = symbol(c, '\0') > 0 || c == 'D' || c == 'T';
    if (one && first + changes[i + 1] < changes[i]) {
      changes[i] = first + changes[i + 1];
      taken[i] = 1;
    }
  }
  if (changes[0] >= kNever) return false;
  for (std::size_t i = 0; i < run.size(); i += taken[i]) {
    to += capital(run[i]);
    if (taken[i] == 2) to += small(run[i + 1]);
  }
  return true;
}

}  // namespace

Composition formula(std::string_view text) {
  check_text(text);
  return read_formula(text).composition;
}

FormulaReading read_formula(std::string_view text, int column) {
  return Reader(text, column).read();
}

void check_text(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = character_at(text, i);
    if (length == 0) {
      constexpr std::string_view hex = "0123456789ABCDEF";
      const unsigned byte = byte_of(text, i);
      const int column = column_of(text, i);
      throw FormulaError(std::string("byte 0x") + hex[byte / 16] +
                             hex[byte % 16] + " in column " +
                             std::to_string(column) + " is no text",
                         column);
    }
    i += length;
  }
}

int symbol(char first, char second) {
  using Symbols = std::array<std::array<std::uint8_t, 27>, 26>;
  static const Symbols table = [] {
    Symbols all{};
    for (const Element& element : builtin().elements()) {
      const auto row = static_cast<std::size_t>(element.symbol[0] - 'A');
      const auto column =
          element.symbol.size() > 1
              ? static_cast<std::size_t>(element.symbol[1] - 'a' + 1)
              : 0;
      all[row][column] = static_cast<std::uint8_t>(element.z);
    }
    return all;
  }();
  if (!is_capital(first) || (second != '\0' && !is_small(second))) return 0;
  const auto column =
      second == '\0' ? 0 : static_cast<std::size_t>(second - 'a' + 1);
  return table[static_cast<std::size_t>(first - 'A')][column];
}

std::string without_coefficients(const HeavyElement& element) {
  return "no coefficients for " + std::string(element.name) +
         " (Z = " + std::to_string(element.z) +
         "): the NIST tables end with uranium (Z = 92)";
}

std::optional<std::string> recapitalised(std::string_view text) {
  std::string meant;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t end = i;
    while (is_letter(char_at(text, end))) ++end;
    if (end == i) {
      meant += text[i++];
    } else if (!respell(text.substr(i, end - i), meant)) {
      return std::nullopt;
    }
    i = std::max(i, end);
  }
  if (meant == text) return std::nullopt;
  try {
    read_formula(meant);
  } catch (const FormulaError&) {
    return std::nullopt;
  }
  return meant;
}

std::size_t blank_at(std::string_view text, std::size_t i) {
  constexpr std::array wide = {"\u00A0"sv, "\u2009"sv, "\u202F"sv};
  const char c = char_at(text, i);
  if (c == ' ' || c == '\t') return 1;
  return is_ascii(c) ? 0 : mark_at(text, i, wide);
}

std::string_view trimmed(std::string_view text) {
  text.remove_prefix(skip_blanks(text, 0));
  for (std::size_t length = 1; length <= 3 && length <= text.size();) {
    if (blank_at(text, text.size() - length) == length) {
      text.remove_suffix(length);
      length = 1;
    } else {
      ++length;
    }
  }
  return text;
}

int column_of(std::string_view text, std::size_t i, int first) {
  const std::string_view before = text.substr(0, i);
  return first + static_cast<int>(
                     std::count_if(before.begin(), before.end(), [](char c) {
                       return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
                     }));
}

std::size_t number_end(std::string_view text, std::size_t i) {
  const std::size_t begin = i;
  while (is_digit(char_at(text, i))) ++i;
  if (i == begin || char_at(text, i) != '.' ||
      !is_digit(char_at(text, i + 1))) {
    return i;
  }
  for (++i; is_digit(char_at(text, i));) ++i;
  return i;
}

double number(std::string_view digits) {
  double value = 0.0;
  // The caller's characters live through the call.
  // cppcheck-suppress invalidLifetime
  std::from_chars(digits.data(), digits.data() + digits.size(), value,
                  std::chars_format::fixed);
  return value;
}

std::string plain(double value) {
  std::array<char, 400> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                 value, std::chars_format::fixed);
  return {buffer.data(), end.ptr};
}

std::string in_quotes(std::string_view text) {
  constexpr std::size_t kLongest = 60;
  std::string shown = base::harmless(text.substr(0, kLongest));
  if (text.size() > kLongest) {
    std::size_t end = kLongest;
    while ((byte_of(text, end) & 0xC0) == 0x80) --end;
    shown = base::harmless(text.substr(0, end)) + "...";
  }
  return "'" + shown + "'";
}

}  // namespace physics
