#include "attenuate/records.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "attenuate/layout.h"

namespace attenuate {
namespace {

constexpr int kWidth = 80;

bool is_detail(const RecordColumn& column) {
  return column.show == Show::kDetail || column.show == Show::kNumberDetail;
}

bool is_number(const RecordColumn& column) {
  return column.show == Show::kNumber || column.show == Show::kNumberDetail;
}

// The last cell, of words, takes what is left of the line; numbers are never
// cut.
std::string cell(const RecordColumn& column, std::string_view text, int room) {
  if (column.width == 0) return shortened(text, std::max(room, 1));
  const int blanks = static_cast<int>(column.width) - width(text);
  const std::string padding(static_cast<std::size_t>(std::max(blanks, 1)), ' ');
  return is_number(column) ? padding + std::string(text) + "  "
                           : std::string(text) + padding;
}

template <typename Text>
void write_text_line(const Records& records, bool whole, Text text,
                     Output& output) {
  std::string line;
  for (std::size_t i = 0; i < records.columns.size(); ++i) {
    if (is_detail(records.columns[i])) continue;
    const std::string_view shown = text(i);
    const int room = whole ? width(shown) : kWidth - width(line);
    line += cell(records.columns[i], shown, room);
  }
  line.erase(line.find_last_not_of(' ') + 1);
  output.text(line + "\n");
}

// Whether the record above has said the same of the same.
bool is_repeated(const Records& records, std::size_t row, std::size_t column) {
  return row > 0 && records.rows[row][0] == records.rows[row - 1][0] &&
         records.rows[row][column] == records.rows[row - 1][column];
}

void write_details(const Records& records, std::size_t row, Output& output) {
  for (std::size_t i = 0; i < records.columns.size(); ++i) {
    const auto& text = records.rows[row][i];
    if (!is_detail(records.columns[i]) || text.empty()) continue;
    if (is_repeated(records, row, i)) continue;
    std::string name(records.columns[i].name);
    std::replace(name.begin(), name.end(), '_', ' ');
    output.text("    " + name + ": " + text + "\n");
  }
}

void write_text(const Records& records, bool details, Output& output) {
  write_text_line(
      records, details, [&](std::size_t i) { return records.columns[i].name; },
      output);
  for (std::size_t r = 0; r < records.rows.size(); ++r) {
    write_text_line(
        records, details,
        [&](std::size_t i) -> const std::string& { return records.rows[r][i]; },
        output);
    if (details) write_details(records, r, output);
  }
}

void write_separated(const Records& records, char separator, Output& output) {
  const std::string between(1, separator);
  for (std::size_t i = 0; i < records.columns.size(); ++i) {
    output.text((i > 0 ? between : "") + std::string(records.columns[i].name));
  }
  output.character('\n');
  for (const auto& row : records.rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      output.text((i > 0 ? between : "") + field(row[i], separator));
    }
    output.character('\n');
  }
}

nlohmann::ordered_json object(const Records& records,
                              const std::vector<std::string>& row) {
  nlohmann::ordered_json json;
  for (std::size_t i = 0; i < row.size(); ++i) {
    auto& value = json[std::string(records.columns[i].name)];
    if (row[i].empty()) continue;
    if (is_number(records.columns[i])) {
      value = nlohmann::ordered_json::parse(row[i]);
    } else {
      value = row[i];
    }
  }
  return json;
}

void write_json(const Records& records, bool lines, Output& output) {
  if (!lines) output.text("[\n");
  for (std::size_t i = 0; i < records.rows.size(); ++i) {
    if (i > 0) output.text(lines ? "\n" : ",\n");
    output.text(object(records, records.rows[i]).dump());
  }
  output.text(lines ? "\n" : "\n]\n");
}

}  // namespace

void write_records(const Records& records, Format format, bool details,
                   Output& output) {
  switch (format) {
    case Format::kTsv:
      return write_separated(records, '\t', output);
    case Format::kCsv:
      return write_separated(records, ',', output);
    case Format::kJson:
      return write_json(records, false, output);
    case Format::kJsonLines:
      return write_json(records, true, output);
    case Format::kText:
      return write_text(records, details, output);
  }
}

}  // namespace attenuate
