// What a formula says: its atoms, how it was read, and what in it could be read
// otherwise.

#ifndef PHYSICS_FORMULA_H_
#define PHYSICS_FORMULA_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "physics/material.h"

namespace physics {

// Bytes of the longest formula or name.
inline constexpr std::size_t kLongestFormula = 200;
// Brackets inside one another, in formulas and in mixtures.
inline constexpr int kDeepestBrackets = 16;

struct FormulaReading {
  Composition composition;
  // The formula in one way of writing it, "CuSO4 + 5 H2O": reads as the same
  // composition.
  std::string echo;
  std::vector<std::string> notes;
};

// Reads a formula without density. Blanks at the ends belong to it.
//
// column  of the first character, for errors
//
// Throws FormulaError.
FormulaReading read_formula(std::string_view text, int column = 1);

// Throws FormulaError where `text` holds a byte that is no text: no UTF-8, or a
// control character.
void check_text(std::string_view text);

// Atomic number of a symbol of one or two letters ('\0' for none); 0 if there
// is none up to uranium.
int symbol(char first, char second);

// Why an element above uranium is refused.
std::string without_coefficients(const HeavyElement& element);

// The formula that is meant by `text`, which differs from one in capital and
// small letters only: the one with the fewest letters changed. Nothing where
// there is none.
std::optional<std::string> recapitalised(std::string_view text);

// Length of the blank or tab that `text` has at `i`, no-break and thin ones
// included, which come with text out of papers; 0 if it has none.
std::size_t blank_at(std::string_view text, std::size_t i);
std::string_view trimmed(std::string_view text);

// Column of the byte `i`, where `text` begins in column `first`.
int column_of(std::string_view text, std::size_t i, int first = 1);

// Digits, and behind a point more digits, from `i` on: the end of the number,
// or `i` if there is none.
std::size_t number_end(std::string_view text, std::size_t i);
double number(std::string_view digits);

// Without trailing zeros and exponents: "5", "0.25".
std::string plain(double value);

// `text` in a message: between apostrophes, shortened, safe for a terminal.
std::string in_quotes(std::string_view text);

}  // namespace physics

#endif  // PHYSICS_FORMULA_H_
