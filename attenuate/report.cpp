#include "attenuate/report.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string_view>

#include "attenuate/echo.h"
#include "attenuate/layout.h"
#include "attenuate/number.h"
#include "base/harmless.h"

namespace attenuate {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kLineWidth = 80;
constexpr int kLabelWidth = 27;

void write_line(std::string line, Output& output) {
  line.erase(line.find_last_not_of(' ') + 1);
  output.text(base::harmless(line) + "\n");
}

// `text` behind `start` in lines of at most kLineWidth, all but the first
// behind `indent` blanks.
void write_wrapped(const std::string& start, const std::string& text,
                   int indent, Output& output) {
  std::string line = start;
  bool first_word = true;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    const std::string word = text.substr(at, end - at);
    if (!first_word && width(line) + 1 + width(word) > kLineWidth) {
      write_line(line, output);
      line.assign(static_cast<std::size_t>(indent), ' ');
      first_word = true;
    }
    line += (first_word ? "" : " ") + word;
    first_word = false;
    at = end + 1;
  }
  write_line(line, output);
}

std::string shown(const Fact& fact, int digits) {
  if (!fact.shown.empty()) return fact.shown;
  std::string text = "not known";
  if (const auto* value = std::get_if<double>(&fact.value)) {
    text = rounded(*value, digits);
  } else if (const auto* word = std::get_if<std::string>(&fact.value)) {
    text = *word;
  }
  return fact.unit.empty() ? text : text + " " + fact.unit;
}

std::string padded_left(const std::string& text, int columns) {
  return std::string(
             static_cast<std::size_t>(std::max(columns - width(text), 1)),
             ' ') +
         text;
}

void write_table(const Report& report, int digits, Output& output) {
  // More digits than fit take a wider line.
  const int column_width = std::max(
      std::min(13, kLineWidth / static_cast<int>(report.columns.size())),
      digits + 2);
  std::string headings;
  std::string units;
  for (const auto& column : report.columns) {
    headings += padded_left(column.heading, column_width);
    units += padded_left(column.unit, column_width);
  }
  write_line(headings, output);
  write_line(units, output);
  for (const auto& row : report.rows) {
    std::string line;
    for (const auto& value : row)
      line += padded_left(value ? number(*value, digits) : "", column_width);
    write_line(line, output);
  }
}

void write_text(const Report& report, const Settings& settings,
                Output& output) {
  for (const std::string& line : report.read)
    write_wrapped("", line, 3, output);
  const bool any_fact =
      std::any_of(report.facts.begin(), report.facts.end(),
                  [](const Fact& fact) { return !fact.label.empty(); });
  if (any_fact) output.character('\n');
  for (const Fact& fact : report.facts) {
    if (fact.label.empty()) continue;
    const int blanks = std::max(kLabelWidth - width(fact.label), 1);
    write_wrapped(
        fact.label + std::string(static_cast<std::size_t>(blanks), ' '),
        shown(fact, settings.plan_digits()), kLabelWidth, output);
  }
  if (!report.rows.empty()) {
    output.character('\n');
    write_table(report, settings.plan_digits(5), output);
  }
  if (!report.remarks.empty()) output.character('\n');
  for (const std::string& remark : report.remarks)
    write_wrapped("", remark, 0, output);
  for (const std::string& note : report.notes)
    write_wrapped("note: ", note, 6, output);
}

std::string field(const std::string& text, char separator) {
  const char* const special = separator == ',' ? ",\"\n" : "\t\n";
  if (text.find_first_of(special) == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + "\"";
}

void write_separated(const Report& report, const Settings& settings,
                     char separator, Output& output) {
  const auto comment = [&](const std::string& text) {
    output.text("# " + base::harmless(text) + "\n");
  };
  for (const std::string& line : basis(settings)) comment(line);
  for (const std::string& line : report.read) comment(line);
  for (const std::string& note : report.notes) comment("note: " + note);

  // What all rows share stands in every one of them.
  const std::string between(1, separator);
  std::string names;
  std::string shared;
  for (const Fact& fact : report.facts) {
    const bool first = &fact == &report.facts.front();
    names += (first ? "" : between) + fact.key;
    shared += first ? "" : between;
    if (const auto* value = std::get_if<double>(&fact.value)) {
      shared += number(*value, settings.digits);
    } else if (const auto* word = std::get_if<std::string>(&fact.value)) {
      shared += field(*word, separator);
    }
  }
  for (const auto& column : report.columns)
    names += (names.empty() ? "" : between) + column.key;
  output.text(names + "\n");
  if (report.rows.empty()) {
    output.text(shared + "\n");
    return;
  }
  for (const auto& row : report.rows) {
    output.text(shared);
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0 || !report.facts.empty()) output.character(separator);
      if (row[i]) output.number(*row[i], settings.digits);
    }
    output.character('\n');
  }
}

// The number as it is printed elsewhere, so that the formats agree.
Json json_number(double value, int digits) {
  return Json::parse(number(value, digits));
}

Json row_object(const Report& report,
                const std::vector<std::optional<double>>& row, int digits) {
  Json json = Json::object();
  for (std::size_t i = 0; i < row.size(); ++i) {
    json[report.columns[i].key] =
        row[i] ? json_number(*row[i], digits) : Json();
  }
  return json;
}

void add_facts(const Report& report, int digits, Json& json) {
  for (const Fact& fact : report.facts) {
    if (const auto* value = std::get_if<double>(&fact.value)) {
      json[fact.key] = json_number(*value, digits);
    } else if (const auto* word = std::get_if<std::string>(&fact.value)) {
      json[fact.key] = *word;
    } else {
      json[fact.key] = Json();
    }
  }
}

std::string dumped(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

void write_json(const Report& report, const Settings& settings,
                Output& output) {
  Json json;
  json["program"] = kProgram;
  json["tables"] = settings.data->version();
  json["rule"] = rule_name(settings.rule);
  if (settings.by_energy()) json["weighting"] = "energy";
  json["question"] = report.question;
  json["read"] = report.read;
  add_facts(report, settings.digits, json);
  if (!report.columns.empty()) {
    json["rows"] = Json::array();
    for (const auto& row : report.rows)
      json["rows"].push_back(row_object(report, row, settings.digits));
  }
  json["notes"] = report.notes;
  output.text(dumped(json));
}

void write_json_lines(const Report& report, const Settings& settings,
                      Output& output) {
  Json shared;
  shared["question"] = report.question;
  shared["notes"] = report.notes;
  if (settings.by_energy()) shared["weighting"] = "energy";
  add_facts(report, settings.digits, shared);
  if (report.rows.empty()) output.text(dumped(shared));
  for (const auto& row : report.rows) {
    Json json = shared;
    json.update(row_object(report, row, settings.digits));
    output.text(dumped(json));
  }
}

}  // namespace

std::string rounded(double value, int digits) {
  const double size = std::abs(value);
  return size >= std::pow(10.0, digits) && size < 1e12
             ? number(std::round(value), 12)
             : number(value, digits);
}

void write_report(const Report& report, const Settings& settings,
                  Output& output) {
  switch (settings.format) {
    case Format::kText:
      return write_text(report, settings, output);
    case Format::kTsv:
      return write_separated(report, settings, '\t', output);
    case Format::kCsv:
      return write_separated(report, settings, ',', output);
    case Format::kJson:
      return write_json(report, settings, output);
    case Format::kJsonLines:
      return write_json_lines(report, settings, output);
  }
}

}  // namespace attenuate
