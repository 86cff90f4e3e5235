#include "attenuate/records.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace attenuate {
namespace {

constexpr std::size_t kWidth = 80;

std::size_t width_of(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(),
      [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// The names of the columns have their units behind underscores.
std::string cell(const RecordColumn& column, std::string_view text) {
  const std::size_t width = width_of(text);
  const std::size_t blanks = column.width > width ? column.width - width : 1;
  std::string padding(column.width == 0 ? 0 : blanks, ' ');
  return column.show == Show::kNumber ? padding + std::string(text)
                                      : std::string(text) + padding;
}

void write_text_line(std::string line, bool whole, Output& output) {
  line.erase(line.find_last_not_of(' ') + 1);
  if (!whole && width_of(line) > kWidth) {
    std::size_t end = kWidth - 3;
    while ((static_cast<unsigned char>(line[end]) & 0xC0) == 0x80) --end;
    line.replace(end, line.npos, "...");
  }
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
    if (records.columns[i].show != Show::kDetail || text.empty()) continue;
    if (is_repeated(records, row, i)) continue;
    std::string name(records.columns[i].name);
    std::replace(name.begin(), name.end(), '_', ' ');
    output.text("    " + name + ": " + text + "\n");
  }
}

void write_text(const Records& records, bool details, Output& output) {
  std::string heading;
  for (const auto& column : records.columns) {
    if (column.show == Show::kDetail) continue;
    heading += cell(column, column.name);
    if (column.show == Show::kNumber) heading += "  ";
  }
  write_text_line(heading, details, output);
  for (std::size_t r = 0; r < records.rows.size(); ++r) {
    const auto& row = records.rows[r];
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (records.columns[i].show == Show::kDetail) continue;
      line += cell(records.columns[i], row[i]);
      if (records.columns[i].show == Show::kNumber) line += "  ";
    }
    write_text_line(line, details, output);
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
    if (records.columns[i].show == Show::kNumber) {
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
