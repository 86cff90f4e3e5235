// What the physics refuses, as values: who asks decides how to say it.

#ifndef PHYSICS_ERRORS_H_
#define PHYSICS_ERRORS_H_

#include <stdexcept>
#include <string>
#include <utility>

#include "physics/quantities.h"

namespace physics {

// A number for a message, short and without locale: 14.4, 20000.
std::string short_number(double value);

// An input that cannot be understood, or that has no answer.
class InputError : public std::runtime_error {
 public:
  // message  what is wrong: one line, no full stop
  // column   where, in characters from 1; 0 for the input as a whole
  // hint     what to type instead; blank where nobody knows
  InputError(const std::string& message, int column, std::string hint = {})
      : std::runtime_error(message),
        message_(message),
        column_(column),
        hint_(std::move(hint)) {}

  const std::string& message() const { return message_; }
  int column() const { return column_; }
  const std::string& hint() const { return hint_; }

 private:
  std::string message_;  // what() would end at a code 0 that was typed
  int column_;
  std::string hint_;
};

// A formula, name or mixture that cannot be read.
class FormulaError : public InputError {
  using InputError::InputError;
};

// An energy outside the table of an element.
class OutsideTable : public std::runtime_error {
 public:
  // z  atomic number, or 0 for no element's; first, last  the range that the
  //    table can answer
  OutsideTable(int z, Energy energy, Energy first, Energy last);

  int z() const { return z_; }
  Energy energy() const { return energy_; }
  Energy first() const { return first_; }
  Energy last() const { return last_; }

 private:
  int z_;
  Energy energy_, first_, last_;
};

}  // namespace physics

#endif  // PHYSICS_ERRORS_H_
