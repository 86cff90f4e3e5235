// Tab or comma separated values: a header line of names, above it what was
// understood, behind "# ".

#include <string>
#include <string_view>

#include "attenuate/columns.h"
#include "attenuate/echo.h"
#include "attenuate/writers.h"
#include "base/harmless.h"

namespace attenuate {
namespace {

class SeparatedWriter : public AnswerWriter {
 public:
  SeparatedWriter(Output& output, const Settings& settings, Shape shape,
                  char separator)
      : output_(output),
        settings_(settings),
        columns_(columns(settings)),
        batch_(shape == Shape::kBatch),
        separator_(separator) {}

  void at_line(std::size_t line) override { line_ = line; }

  void begin(const Question& question) override {
    if (first_) write_head(&question);
    if (batch_) {
      material_ = field(materials_read(question), separator_);
      notes_ = field(joined(question.notes), separator_);
    }
  }

  void row(const Row& row) override {
    if (batch_) {
      output_.count(line_);
      output_.character(separator_);
      output_.text(material_);
      output_.character(separator_);
    }
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (const auto value = columns_[i].value(row)) {
        output_.number(*value, digits_of(i, settings_));
      }
      output_.character(separator_);
    }
    output_.text(source_name(row));
    output_.character(separator_);
    output_.text(field(std::string(line_name(row)), separator_));
    if (batch_) {
      output_.character(separator_);
      output_.text(notes_);
    }
    output_.character('\n');
  }

  void end() override {}

  // A list without answers has its columns all the same.
  void finish() override {
    if (first_) write_head(nullptr);
  }

 private:
  static std::string joined(const std::vector<std::string>& notes) {
    std::string text;
    for (const auto& note : notes) {
      text += (text.empty() ? "" : "; ") + note;
    }
    return text;
  }

  void comment(const std::string& text) {
    output_.text("# " + base::harmless(text) + "\n");
  }

  // A batch has questions of its own in every row.
  void write_head(const Question* question) {
    first_ = false;
    for (const auto& line : basis(settings_)) comment(line);
    if (!batch_ && question != nullptr) write_echo(*question);
    if (batch_) {
      output_.text("input_line");
      output_.character(separator_);
      output_.text("material");
      output_.character(separator_);
    }
    for (const auto& column : columns_) {
      output_.text(column.name);
      output_.character(separator_);
    }
    output_.text("source");
    output_.character(separator_);
    output_.text("line");
    if (batch_) {
      output_.character(separator_);
      output_.text("notes");
    }
    output_.character('\n');
  }

  void write_echo(const Question& question) {
    for (std::size_t i = 0; i < question.layers.size(); ++i) {
      comment("layer " + std::to_string(i + 1) + ": " + echo(question, i));
      const auto origin = density_origin(question.layers[i].material);
      if (!origin.empty()) comment("  " + origin);
      for (const auto& line : fractions(question.layers[i].material, 1000)) {
        comment("  " + line);
      }
    }
    for (const auto& note : question.notes) comment("note: " + note);
  }

  Output& output_;
  const Settings& settings_;
  std::span<const Column> columns_;
  bool batch_;
  char separator_;
  bool first_ = true;
  std::size_t line_ = 0;
  std::string material_;
  std::string notes_;
};

}  // namespace

std::unique_ptr<AnswerWriter> separated_writer(Output& output,
                                               const Settings& settings,
                                               Shape shape, char separator) {
  return std::make_unique<SeparatedWriter>(output, settings, shape, separator);
}

}  // namespace attenuate
