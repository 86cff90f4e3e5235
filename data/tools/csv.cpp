#include "data/tools/csv.h"

#include <charconv>
#include <fstream>
#include <system_error>
#include <utility>

namespace data {
namespace {

std::vector<std::string> fields_of(const std::string& line,
                                   const std::string& place) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool doubled = line.compare(i, 2, "\"\"") == 0;
    if (line[i] == '"' && quoted && doubled) {
      fields.back() += line[i++];
    } else if (line[i] == '"') {
      quoted = !quoted;
    } else if (line[i] == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += line[i];
    }
  }
  if (quoted) throw Problem(place + ": a quote is not closed");
  return fields;
}

}  // namespace

std::vector<Line> read_lines(const std::filesystem::path& file,
                             std::size_t width) {
  std::ifstream in(file);
  if (!in) throw Problem(file.string() + ": cannot be read");
  std::vector<Line> lines;
  std::string text;
  for (int number = 1; std::getline(in, text); ++number) {
    if (text.ends_with('\r')) text.pop_back();
    if (text.starts_with('#')) continue;
    std::string place = file.string() + ":" + std::to_string(number);
    std::vector<std::string> fields = fields_of(text, place);
    if (fields.size() != width) {
      throw Problem(place + ": " + std::to_string(fields.size()) +
                    " fields instead of " + std::to_string(width));
    }
    lines.push_back({std::move(place), std::move(fields)});
  }
  return lines;
}

std::optional<double> plain_number(const std::string& text) {
  if (text.find_first_not_of("0123456789.") != text.npos) return {};
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || last != end) return {};
  return value;
}

bool is_positive(const std::string& text) {
  return plain_number(text).value_or(0) > 0;
}

void write_file(const std::filesystem::path& file, const std::string& text) {
  std::ofstream out(file, std::ios::binary);
  out << text;
  out.close();
  if (!out) throw Problem(file.string() + ": cannot be written");
}

}  // namespace data
