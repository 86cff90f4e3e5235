// Answers of planners: facts with names and units, and a table where there are
// several of a kind.

#ifndef ATTENUATE_REPORT_H_
#define ATTENUATE_REPORT_H_

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "attenuate/output.h"
#include "attenuate/settings.h"

namespace attenuate {

struct Fact {
  std::string key;    // for programs, with its unit: "best_mg_cm2"
  std::string label;  // for people; blank: for programs only
  // Nothing is "not known".
  std::variant<std::monostate, double, std::string> value;
  std::string unit;
  // What people see in place of value and unit, such as a range of two facts.
  std::string shown;
};

struct Report {
  std::string question;              // as typed
  std::vector<std::string> read;     // what was understood, a line each
  std::vector<Fact> facts;           // in the order of output
  std::vector<std::string> remarks;  // sentences, below the facts
  std::vector<std::string> notes;    // what could surprise

  // Columns and rows of numbers below the facts; where there are rows, they are
  // the records of tsv, csv and jsonl.
  struct Column {
    std::string key, heading, unit;
  };
  std::vector<Column> columns;
  std::vector<std::vector<std::optional<double>>> rows;
};

// `digits` significant digits, but all of those in front of the point: "19932"
// reads better than "1.993e+04".
std::string rounded(double value, int digits);

// In the format of `settings`; text at most 80 columns wide.
void write_report(const Report& report, const Settings& settings,
                  Output& output);

}  // namespace attenuate

#endif  // ATTENUATE_REPORT_H_
