// Tables of comma-separated values, as data/sources has them.

#ifndef DATA_TOOLS_CSV_H_
#define DATA_TOOLS_CSV_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace data {

// What is wrong with a source, or with a file that cannot be written.
struct Problem : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A row of N fields and where it stands.
template <std::size_t N>
struct Row {
  std::string place;  // file and line
  std::array<std::string, N> fields;

  // Unless `good`, the row is what `message` says.
  void require(bool good, const std::string& message) const {
    if (!good) throw Problem(place + ": " + message);
  }
};

// The rows of a file in fields, each `width` long, the column titles first.
struct Line {
  std::string place;  // file and line
  std::vector<std::string> fields;
};
// Lines that begin with "#" are left out; a field may be quoted, with "" for a
// quote in it. Throws Problem: the file cannot be read, or a line has another
// number of fields.
std::vector<Line> read_lines(const std::filesystem::path& file,
                             std::size_t width);

// Reads the rows below the line of column titles, which must be `titles`.
// Throws Problem, also if there are none.
template <std::size_t N>
std::vector<Row<N>> read_table(const std::filesystem::path& file,
                               const std::array<std::string, N>& titles) {
  std::vector<Row<N>> rows;
  for (Line& line : read_lines(file, N)) {
    rows.push_back({std::move(line.place), {}});
    std::move(line.fields.begin(), line.fields.end(),
              rows.back().fields.begin());
  }
  if (rows.size() < 2) throw Problem(file.string() + ": has no rows");
  rows.front().require(rows.front().fields == titles, "unknown column titles");
  rows.erase(rows.begin());
  return rows;
}

// The value of digits with at most one point; nothing if `text` is none.
std::optional<double> plain_number(const std::string& text);

bool is_positive(const std::string& text);

// Throws Problem: it cannot be written.
void write_file(const std::filesystem::path& file, const std::string& text);

}  // namespace data

#endif  // DATA_TOOLS_CSV_H_
