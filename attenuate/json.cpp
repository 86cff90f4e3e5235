// JSON: a document for each question, or an object a line for each row. Keys
// come in the same order always, rows as they are computed.

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "attenuate/columns.h"
#include "attenuate/echo.h"
#include "attenuate/writers.h"

namespace attenuate {
namespace {

using Json = nlohmann::ordered_json;

// Bytes that are no text become U+FFFD.
std::string dumped(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json rounded(double value, const Settings& settings) {
  return Json::parse(number(value, settings.digits));
}

Json fractions(const physics::Material& material, const Settings& settings) {
  Json json = Json::object();
  for (const auto& part : material.constituents) {
    const auto& element =
        settings.data->elements()[static_cast<std::size_t>(part.z) - 1];
    json[std::string(element.symbol)] = rounded(part.mass_fraction, settings);
  }
  return json;
}

Json layer(const Question& question, std::size_t i, const Settings& settings) {
  const auto& layer = question.layers[i];
  const auto& material = layer.material;
  const Thickness& thickness = question.thicknesses[i];
  Json json;
  json["typed"] = material.typed;
  json["read"] = material.read;
  json["molar_mass_g_mol"] =
      material.molar_mass ? rounded(*material.molar_mass, settings) : Json();
  json["density_g_cm3"] =
      material.density ? rounded(material.density->g_cm3, settings) : Json();
  json["density_origin"] = material.density_origin;
  json["mass_fractions"] = fractions(material, settings);
  const bool given =
      thickness.given == Given::kLength || thickness.given == Given::kAreaMass;
  json["thickness_typed"] =
      thickness.typed.empty() ? Json() : Json(thickness.typed);
  json["area_mass_g_cm2"] = given ? rounded(layer.d.g_cm2, settings) : Json();
  return json;
}

// What is common to all writers: a row as an object, without the brace that
// opens it.
class RowWriter : public AnswerWriter {
 public:
  RowWriter(Output& output, const Settings& settings)
      : output_(output), settings_(settings), columns_(columns(settings)) {}

  void at_line(std::size_t line) override { line_ = line; }

 protected:
  void write_row(const Row& row) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      output_.text(i == 0 ? "\"" : ",\"");
      output_.text(columns_[i].name);
      output_.text("\":");
      if (const auto value = columns_[i].value(row)) {
        output_.number(*value, digits_of(i, settings_));
      } else {
        output_.text("null");
      }
    }
    write_name(",\"source\":", source_name(row));
    write_name(",\"line\":", line_name(row));
    output_.character('}');
  }

  Output& output() { return output_; }
  const Settings& settings() const { return settings_; }
  std::size_t line() const { return line_; }

 private:
  // Names of the tables: nothing in them needs an escape.
  void write_name(std::string_view key, std::string_view name) {
    output_.text(key);
    if (name.empty()) {
      output_.text("null");
      return;
    }
    output_.character('"');
    output_.text(name);
    output_.character('"');
  }

  Output& output_;
  const Settings& settings_;
  std::span<const Column> columns_;
  std::size_t line_ = 0;
};

class JsonWriter : public RowWriter {
 public:
  JsonWriter(Output& output, const Settings& settings, Shape shape)
      : RowWriter(output, settings), batch_(shape == Shape::kBatch) {
    if (batch_) output.text("[\n");
  }

  void begin(const Question& question) override {
    if (!first_) output().text(",\n");
    first_ = false;
    first_row_ = true;
    // Without the brace that closes it: rows follow.
    const std::string text = dumped(head(question));
    output().text(std::string_view(text).substr(0, text.size() - 1));
    output().text(",\"rows\":[");
  }

  void row(const Row& row) override {
    output().text(first_row_ ? "\n{" : ",\n{");
    first_row_ = false;
    write_row(row);
  }

  void end() override { output().text(batch_ ? "\n]}" : "\n]}\n"); }

  void finish() override {
    if (batch_) output().text("\n]\n");
  }

 private:
  Json head(const Question& question) const {
    Json json;
    json["program"] = kProgram;
    json["tables"] = settings().data->version();
    json["rule"] = rule_name(settings().rule);
    if (settings().by_energy()) json["weighting"] = "energy";
    if (batch_) json["input_line"] = line();
    json["question"] = question.typed;
    json["layers"] = Json::array();
    for (std::size_t i = 0; i < question.layers.size(); ++i) {
      json["layers"].push_back(layer(question, i, settings()));
    }
    json["wanted_transmission"] =
        question.unknown ? rounded(question.wanted.transmission(), settings())
                         : Json();
    json["notes"] = question.notes;
    return json;
  }

  bool batch_;
  bool first_ = true;
  bool first_row_ = true;
};

class JsonLinesWriter : public RowWriter {
 public:
  JsonLinesWriter(Output& output, const Settings& settings, Shape shape)
      : RowWriter(output, settings), batch_(shape == Shape::kBatch) {}

  void begin(const Question& question) override {
    std::string read = materials_read(question);
    if (read != read_) {
      read_ = std::move(read);
      material_ = "\"material\":" + dumped(Json(read_)) + ",\"notes\":";
    }
    notes_ =
        question.notes.empty() ? "[]," : dumped(Json(question.notes)) + ",";
  }

  void row(const Row& row) override {
    output().character('{');
    if (batch_) {
      output().text("\"input_line\":");
      output().count(line());
      output().character(',');
    }
    output().text(material_);
    output().text(notes_);
    if (settings().by_energy()) output().text("\"weighting\":\"energy\",");
    write_row(row);
    output().character('\n');
  }

  void end() override {}

 private:
  bool batch_;
  std::string read_ = "\n";  // no material
  std::string material_;
  std::string notes_;
};

}  // namespace

std::unique_ptr<AnswerWriter> json_writer(Output& output,
                                          const Settings& settings,
                                          Shape shape) {
  return std::make_unique<JsonWriter>(output, settings, shape);
}

std::unique_ptr<AnswerWriter> json_lines_writer(Output& output,
                                                const Settings& settings,
                                                Shape shape) {
  return std::make_unique<JsonLinesWriter>(output, settings, shape);
}

}  // namespace attenuate
