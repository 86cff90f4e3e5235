#include "data/tools/datacheck.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "base/edit.h"
#include "base/fatal.h"
#include "base/text.h"
#include "physics/densities.h"
#include "physics/elementlist.h"
#include "physics/freetext.h"
#include "physics/parabola.h"

namespace data {
namespace {

namespace fs = std::filesystem;
using base::Text;

constexpr int kRecord = 80;  // columns that are read
constexpr int kFewestPoints = 4;
using physics::kBlockRows;
using physics::kBlockTitles;
using physics::kListedElements;
using physics::kMostModifications;

// Ends the reason of a fault: the program tells the end of an element's
// records only by the record behind them.
constexpr const char* kCutOff =
    " is cut off by the end of the file: another record must follow";

// Whether the number that `field` begins with ends in the middle of its word,
// as in "1x8.91", which reads as 1. A unit or an uncertainty in parentheses
// may follow directly.
bool is_broken_number(std::string_view field) {
  field.remove_prefix(std::min(field.find_first_not_of(' '), field.size()));
  std::string_view rest = field.substr(0, field.find_first_of(" /("));
  const auto skip_digits = [&rest] {
    const std::size_t digits = rest.find_first_not_of("0123456789");
    rest.remove_prefix(std::min(digits, rest.size()));
  };
  const std::size_t whole = rest.size();
  skip_digits();
  if (rest.starts_with('.')) rest.remove_prefix(1);
  skip_digits();
  return rest.size() < whole && rest.find_first_of("0123456789.-") != rest.npos;
}

bool is_positive(double value) { return value > 0 && std::isfinite(value); }

// An atomic number as the program reads it from 8 columns.
struct Code {
  int number = 0;
  bool fits = true;   // else reading it ends the run
  bool plain = true;  // digits only, apart from what is read as blank
};

// `read` is the program's own reader of `field`.
template <typename Read>
Code read_code(std::string_view field, const Read& read) {
  Code code;
  try {
    code.number = read();
  } catch (const base::RangeError&) {
    code.fits = false;
  }
  code.plain = field.find_first_not_of("0123456789 ") == std::string_view::npos;
  return code;
}

// A record of the element list where it stands.
struct Listed : physics::ListedElement {
  int line = 0;  // also its record number

  std::string shown() const { return std::string(name.trimmed()); }
};

void check_element(DataFile& file, const Listed& element,
                   std::map<std::string, int>& symbols) {
  const int line = element.line;
  const std::string symbol(element.symbol.trimmed());
  if (symbol.empty() || symbol.front() == ' ') {
    file.fault(line, "no symbol from column 9 on");
  } else if (const auto [known, fresh] = symbols.emplace(symbol, line);
             !fresh) {
    file.fault(line, "the symbol " + symbol + " stands in line " +
                         str(known->second) + " already");
  }
  if (element.name.blank()) {
    file.fault(line, "no name in columns 17-28");
  } else if (element.name.length() == 12) {
    file.fault(
        line, "compounds cannot look up a name of 12 characters: cut it to 11");
  }
  if (!element.weight) {
    file.fault(line, "no molar weight in columns 30-49");
  } else if (is_broken_number(file.record(line).columns<30, 80>())) {
    file.fault(line, "the molar weight is no plain number");
  } else if (!is_positive(static_cast<double>(*element.weight))) {
    file.fault(line, "the molar weight is not positive");
  }
}

std::vector<Listed> check_element_list(DataFile& file) {
  std::vector<Listed> elements;
  std::map<std::string, int> symbols;
  for (int line = 1; line <= std::min(file.last(), kListedElements); ++line) {
    elements.push_back({physics::element_in(file.record(line)), line});
    check_element(file, elements.back(), symbols);
  }
  if (0 < file.last() && file.last() < kListedElements) {
    file.fault(file.last(), "the file ends after " + str(file.last()) + " of " +
                                str(kListedElements) + " elements");
  }
  return elements;
}

// Where an element's block begins, 0 if nowhere.
int find_block(const DataFile& file, const Listed& element) {
  for (int line = 1; line <= file.last(); ++line) {
    if (physics::heads_block(file.text(line), element.name)) return line;
  }
  return 0;
}

// A point where it stands.
struct PlacedPoint : physics::Point {
  int line = 0;
  bool blank = false;
  bool complete = false;  // neither of the two fields is blank
};

std::optional<PlacedPoint> read_point(const DataFile& file, int line) {
  const Text<80> record = file.record(line);
  const std::optional<physics::Point> point = physics::point_in(record);
  if (!point) return std::nullopt;
  const bool complete = !base::trimmed(record.columns<4, 14>()).empty() &&
                        !base::trimmed(record.columns<17, 25>()).empty();
  return PlacedPoint{*point, line, record.blank(), complete};
}

// Whether a record that is no point was meant as one: a field of it reads.
bool is_damaged_point(const DataFile& file, int line) {
  const Text<80> record = file.record(line);
  const auto reads = [](std::string_view field, int decimals) {
    return !base::trimmed(field).empty() && base::read_e(field, decimals);
  };
  return reads(record.columns<4, 14>(), 5) ||
         reads(record.columns<17, 25>(), 3) ||
         reads(record.columns<28, 36>(), 3);
}

// Whether a number of a point runs out of its columns, where it is not read.
bool is_beside_fields(const Text<80>& record) {
  constexpr std::string_view kNumber = "-.0123456789";
  const bool before_energy =
      kNumber.find(record.at(3, "record")) != kNumber.npos &&
      record.at(4, "record") != ' ';
  return before_energy || record.columns<15, 16>() != "  " ||
         record.columns<26, 27>() != "  ";
}

// The block of one element.
class BlockCheck {
 public:
  // name  of its element, for messages
  // line  of its name record
  // next  where the next block of a listed element begins, or past the end
  BlockCheck(DataFile& file, std::string name, int line, int next)
      : file_(file), name_(std::move(name)), line_(line), next_(next) {}

  // Returns the atomic number, if there is one.
  std::optional<int> check() {
    const std::optional<int> number = check_number();
    if (check_headers()) {
      read_points();
      for (std::size_t i = 0; i < points_.size(); ++i) check_point(i);
      check_end();
    }
    return number;
  }

 private:
  std::optional<int> check_number() {
    const Text<16> record = file_.record(line_ + 1);
    const Code code = read_code(record.columns<4, 11>(), [&record] {
      return physics::atomic_number_in(record);
    });
    if (code.fits && code.plain && code.number > 0) return code.number;
    fault(line_ + 1, "no atomic number in columns 4-11 for " + name_);
    return std::nullopt;
  }

  // False if the block cannot be told from the next one.
  bool check_headers() {
    for (int line = line_ + 2; line <= line_ + 1 + kBlockTitles; ++line) {
      const std::optional<PlacedPoint> point = read_point(file_, line);
      const bool is_point = point && point->complete;
      if (line != next_ && !is_point) continue;
      fault(line, name_ + " has fewer than 6 header records: " +
                      (is_point ? "this point is passed over"
                                : "the next block begins here"));
      return is_point;
    }
    return true;
  }

  void read_points() {
    end_ = line_ + 2 + kBlockTitles;
    for (; end_ <= file_.last() && count() < kBlockRows; ++end_) {
      const std::optional<PlacedPoint> point = read_point(file_, end_);
      if (!point) break;
      points_.push_back(*point);
    }
    if (count() < kFewestPoints && end_ <= file_.last()) {
      fault(end_, name_ + " has only " + str(count()) + " points, not " +
                      str(kFewestPoints));
    }
  }

  void check_point(std::size_t i) {
    const PlacedPoint& point = points_[i];
    if (point.blank) {
      fault(point.line, "a blank record reads as a point 0, 0, 0");
      return;
    }
    if (is_beside_fields(file_.record(point.line))) {
      fault(point.line, "the numbers must keep to columns 4-14, 17-25, 28-36");
    }
    if (!is_positive(point.energy)) {
      fault(point.line, "the energy is not positive");
    }
    if (!is_positive(point.mu_rho)) {
      fault(point.line, "mu/rho is not positive");
    }
    if (i == 0 || points_[i - 1].blank) return;
    if (point.energy < points_[i - 1].energy) {
      fault(point.line, "the energy falls");
    } else if (point.energy == points_[i - 1].energy) {
      check_edge(i);
    }
  }

  // Point `i` has the energy of the one before.
  void check_edge(std::size_t i) {
    const auto equal = [this](std::size_t k) {
      return points_[k - 1].energy == points_[k].energy;
    };
    const int line = points_[i].line;
    if (i >= 2 && equal(i - 1)) {
      fault(line, "a third point of the same energy");
    } else if (i >= 3 && equal(i - 2)) {
      fault(line, "two edges without a point between: the fit is singular");
    } else if (points_[i].mu_rho <= points_[i - 1].mu_rho) {
      fault(line, "the same energy twice, but mu/rho does not rise");
    }
  }

  // What stands behind the last point. A damaged point ends a block as well
  // as a name does: some of it still reads, or points follow within the eight
  // records that even a block of an unlisted element needs before its first.
  void check_end() {
    if (count() < kBlockRows && end_ > file_.last()) {
      fault(file_.last(), name_ + kCutOff);
      return;
    }
    if (count() < kBlockRows && end_ < next_ && is_damaged_point(file_, end_)) {
      fault(end_, name_ + " ends here: a field is no number");
      return;
    }
    for (int line = end_; line < std::min(end_ + 2 + kBlockTitles, next_);
         ++line) {
      const std::optional<PlacedPoint> point = read_point(file_, line);
      if (!point || !point->complete) continue;
      fault(line, count() == kBlockRows
                      ? name_ + " has more than 64 points: this is not read"
                      : name_ + " ended in line " + str(end_) +
                            ", which is no point: this is not read");
      return;
    }
  }

  int count() const { return static_cast<int>(points_.size()); }
  void fault(int line, std::string reason) {
    file_.fault(std::min(line, file_.last()), std::move(reason));
  }

  DataFile& file_;
  const std::string name_;
  const int line_;
  const int next_;
  std::vector<PlacedPoint> points_;
  int end_ = 0;  // the record behind the last point
};

// The elements of the list by the line of the block that is found for them. A
// block that several find belongs to the longest name; the others are faults.
std::map<int, Listed> find_blocks(DataFile& list,
                                  const std::vector<Listed>& elements,
                                  const DataFile& file) {
  std::map<int, Listed> owners;
  std::vector<std::pair<int, Listed>> found;
  for (const Listed& element : elements) {
    const int line = find_block(file, element);
    if (line == 0 && !element.name.blank()) {
      list.fault(element.line, "attenuation.coefficients has no block for " +
                                   element.shown());
    }
    if (line == 0) continue;
    found.emplace_back(line, element);
    const auto [owner, fresh] = owners.emplace(line, element);
    if (!fresh && owner->second.name.length() < element.name.length()) {
      owner->second = element;
    }
  }
  for (const auto& [line, element] : found) {
    const Listed& owner = owners.at(line);
    if (owner.line == element.line) continue;
    list.fault(element.line, "the name " + element.shown() +
                                 " finds the block of " + owner.shown() +
                                 " in line " + str(line) +
                                 " of attenuation.coefficients");
  }
  return owners;
}

// Tells of a second block for a name: only the first is ever found.
void check_repeated_names(DataFile& file, const std::map<int, Listed>& owners) {
  std::map<std::string, int> names;
  for (const auto& [line, element] : owners) {
    names.emplace(file.record(line).columns<2, 80>(), line);
  }
  for (int line = 1; line <= file.last(); ++line) {
    const auto known =
        names.find(std::string(file.record(line).columns<2, 80>()));
    if (known == names.end() || known->second == line) continue;
    file.fault(line, "a second block with the name of line " +
                         str(known->second) + ": it is never read");
  }
}

// The atomic numbers of the elements, whose densities are looked up by them,
// with the line of the element list.
using AtomicNumbers = std::map<int, int>;

AtomicNumbers check_coefficients(DataFile& list,
                                 const std::vector<Listed>& elements,
                                 DataFile& file) {
  const std::map<int, Listed> owners = find_blocks(list, elements, file);
  check_repeated_names(file, owners);
  AtomicNumbers numbers;
  for (auto owner = owners.begin(); owner != owners.end(); ++owner) {
    const auto& [line, element] = *owner;
    const auto after = std::next(owner);
    const int next = after == owners.end() ? file.last() + 1 : after->first;
    const auto number = BlockCheck(file, element.shown(), line, next).check();
    if (number && *number != element.line) {
      file.fault(line + 1, element.shown() + " has the atomic number " +
                               str(*number) + " but is record " +
                               str(element.line) +
                               " of elements.dat: presets would go wrong");
    }
    numbers.emplace(number.value_or(element.line), element.line);
  }
  return numbers;
}

std::optional<float> density_in(const Text<80>& record) {
  return physics::density_in(record.columns<9, 80>());
}

void check_density(DataFile& file, int line) {
  const Text<80> record = file.record(line);
  const std::optional<float> density = density_in(record);
  const std::string_view around = record.columns<38, 39>();
  if (around.find_first_not_of(".0123456789") == around.npos) {
    file.fault(line, "a number runs across column 39, where densities begin");
  } else if (!density) {
    file.fault(line, "no density from column 39 on");
  } else if (is_broken_number(record.columns<39, 80>())) {
    file.fault(line, "the density is no plain number");
  } else if (!is_positive(static_cast<double>(*density))) {
    file.fault(line, "the density is not positive");
  }
}

// A title may begin with anything that reads as no element; but since signs
// and points count as digits, it may read as one, and an atomic number that is
// mistyped as another.
void check_code(DataFile& file, int line, const Code& code, bool listed) {
  const bool meant = listed || density_in(file.record(line));
  if (!code.fits) {
    file.fault(line, "what begins in columns 1-8 must end before column 8");
  } else if (!code.plain && code.number != 0 && meant) {
    file.fault(line, "no plain number in columns 1-8: they read as " +
                         str(code.number));
  }
}

// First line and number of records of each element's group.
using Groups = std::map<int, std::pair<int, int>>;

// A record of the listed element `number`; `before` is the number in the
// record before.
void check_modification(DataFile& file, int line, int number, int before,
                        Groups& groups) {
  const auto [group, fresh] = groups.try_emplace(number, line, 0);
  auto& [first, count] = group->second;
  if (!fresh && number != before) {
    file.fault(line, "apart from the records of element " + str(number) +
                         " in line " + str(first) + ": it is never read");
  } else if (++count == kMostModifications + 1) {
    file.fault(line, "more than 64 records of element " + str(number));
  }
  if (fresh && base::trimmed(file.record(line).columns<9, 18>()).empty()) {
    file.fault(line, "no text in columns 9-18: the menu would not ask");
  }
  check_density(file, line);
}

void check_densities(DataFile& list, const AtomicNumbers& numbers,
                     DataFile& file) {
  Groups groups;
  int before = 0;
  for (int line = 1; line <= file.last(); ++line) {
    const Text<80> record = file.record(line);
    const Code code = read_code(record.columns<1, 8>(), [&record] {
      return physics::density_code_in(record);
    });
    const bool listed = code.fits && numbers.contains(code.number);
    check_code(file, line, code, listed);
    if (listed) check_modification(file, line, code.number, before, groups);
    before = code.fits ? code.number : 0;
  }
  if (numbers.contains(before)) {
    file.fault(file.last(), "element " + str(before) + kCutOff);
  }
  for (const auto& [number, line] : numbers) {
    if (groups.contains(number)) continue;
    list.fault(line,
               "no record of dichte.dat has the atomic number " + str(number));
  }
}

}  // namespace

std::vector<Fault> check_data(const fs::path& directory) {
  DataFile list(directory / "elements.dat", kRecord);
  DataFile coefficients(directory / "attenuation.coefficients", kRecord);
  DataFile densities(directory / "dichte.dat", kRecord);

  const std::vector<Listed> elements = check_element_list(list);
  AtomicNumbers numbers;
  if (coefficients.readable()) {
    numbers = check_coefficients(list, elements, coefficients);
  } else {
    for (const Listed& element : elements) {
      numbers.emplace(element.line, element.line);
    }
  }
  if (densities.readable()) check_densities(list, numbers, densities);

  std::vector<Fault> faults;
  list.append_faults_to(faults);
  coefficients.append_faults_to(faults);
  densities.append_faults_to(faults);
  return faults;
}

}  // namespace data
