// The answer for people: what was understood, a heading with units, a line for
// each energy, notes. At most 80 columns wide.

#include <algorithm>
#include <numbers>
#include <string>
#include <string_view>

#include "attenuate/columns.h"
#include "attenuate/echo.h"
#include "attenuate/explain.h"
#include "attenuate/writers.h"
#include "base/harmless.h"

namespace attenuate {
namespace {

constexpr std::size_t kWidth = 80;
// Layers whose own exponents have room in a line.
constexpr std::size_t kShownLayers = 3;

// How many columns `text` takes: characters, not bytes.
std::size_t width_of(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(),
      [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// A column of the table: heading, unit and a cell for every row.
struct Cells {
  std::string heading;
  std::string unit;
  std::size_t width;
  std::string (*cell)(const Row& row, int digits);
};

std::string shown(const std::optional<double>& value, int digits) {
  return value ? number(*value, digits) : std::string();
}

std::string depth(const Row& row, double exponents, int digits) {
  if (!row.mu) return {};
  return length_in_words(exponents / row.mu->per_cm, digits);
}

// The longest name of a line, and a blank.
const Cells kLine{"line", "", 17,
                  [](const Row& r, int) { return std::string(line_name(r)); }};
std::string energy_cell(const Row& row, int /*digits*/) {
  return row.energy ? number(row.energy->keV, 8) : "";
}
const Cells kEnergy{"energy", "keV", 10, energy_cell};
const Cells kWeight{"weight", "", 8, [](const Row& r, int) {
                      return r.line != nullptr ? number(r.weight, 4) : "";
                    }};
const Cells kMuRho{"mu/rho", "cm2/g", 12, [](const Row& r, int digits) {
                     return r.mu_rho ? number(r.mu_rho->cm2_g, digits) : "";
                   }};
const Cells kU{
    "u", "%", 5, [](const Row& r, int) {
      return r.mu_rho ? number(100 * *r.u_mu_rho / r.mu_rho->cm2_g, 2) : "";
    }};
const Cells kMuEn{"mu_en/rho", "cm2/g", 12, [](const Row& r, int digits) {
                    return r.mu_en_rho ? number(r.mu_en_rho->cm2_g, digits)
                                       : "";
                  }};
const Cells kMu{"mu", "1/cm", 12, [](const Row& r, int digits) {
                  return r.mu ? number(r.mu->per_cm, digits) : "";
                }};
const Cells kPath{"mean free", "path", 13,
                  [](const Row& r, int digits) { return depth(r, 1, digits); }};
const Cells kHalf{"half", "value", 13, [](const Row& r, int digits) {
                    return depth(r, std::numbers::ln2, digits);
                  }};
const Cells kTenth{"tenth", "value", 13, [](const Row& r, int digits) {
                     return depth(r, std::numbers::ln10, digits);
                   }};
const Cells kAreaMass{
    "mass", "per area", 15, [](const Row& r, int digits) {
      return r.area_mass ? area_mass_in_words(r.area_mass->g_cm2, digits) : "";
    }};
const Cells kUThickness{
    "u", "%", 5, [](const Row& r, int) {
      return r.u_area_mass && r.area_mass->g_cm2 > 0
                 ? number(100 * r.u_area_mass->g_cm2 / r.area_mass->g_cm2, 2)
                 : "";
    }};
std::string thickness_cell(const Row& row, int digits) {
  return row.thickness ? length_in_words(row.thickness->cm, digits) : "";
}
const Cells kThickness{"thickness", "", 13, thickness_cell};
// The lines of a source and what they ask for are just 80 columns.
const Cells kLineThickness{"thickness", "", 12, thickness_cell};
const Cells kMuX{"mu x", "", 11, [](const Row& r, int digits) {
                   return shown(r.mu_x, digits);
                 }};
std::string transmission_cell(const Row& row, int digits) {
  return shown(row.transmission, digits);
}
const Cells kTransmission{"transmission", "", 14, transmission_cell};
const Cells kLineTransmission{"transmission", "", 13, transmission_cell};
const Cells kUTransmission{"u(T)", "", 10, [](const Row& r, int) {
                             return shown(r.u_transmission, 2);
                           }};
template <std::size_t kLayer>
std::string layer_cell(const Row& row, int digits) {
  if (kLayer >= row.layers.size()) return {};
  return number(row.layers[kLayer].mu_x, digits);
}
const Cells kLayers[kShownLayers] = {{"mu x of", "layer 1", 11, layer_cell<0>},
                                     {"mu x of", "layer 2", 11, layer_cell<1>},
                                     {"mu x of", "layer 3", 11, layer_cell<2>}};

class TextWriter : public AnswerWriter {
 public:
  TextWriter(Output& output, const Settings& settings)
      : output_(output), settings_(settings) {}

  void at_line(std::size_t line) override { line_ = line; }

  void begin(const Question& question) override {
    question_ = &question;
    if (!first_) output_.character('\n');
    first_ = false;
    write_echo(question);
    if (settings_.by_energy()) output_.text(std::string(kByEnergy) + "\n");
    choose_cells(question);
    write_line([](const Cells& cells) { return cells.heading; });
    write_line([](const Cells& cells) { return cells.unit; });
  }

  void row(const Row& row) override {
    write_line(
        [&](const Cells& cells) { return cells.cell(row, settings_.digits); });
    if (settings_.explain && row.energy) {
      explain(*question_, row, settings_, output_);
    }
  }

  void end() override {
    for (const auto& note : question_->notes) {
      output_.text("note: " + base::harmless(note) + "\n");
    }
  }

 private:
  void write_echo(const Question& question) {
    if (line_ > 0) output_.text("line " + std::to_string(line_) + ": ");
    for (std::size_t i = 0; i < question.layers.size(); ++i) {
      std::string text;
      if (question.layers.size() > 1) text = std::to_string(i + 1) + "  ";
      output_.text(base::harmless(text + echo(question, i)) + "\n");
      const auto origin = density_origin(question.layers[i].material);
      if (!origin.empty()) output_.text("   " + origin + "\n");
      for (const auto& line :
           fractions(question.layers[i].material, kWidth - 3)) {
        output_.text("   " + line + "\n");
      }
    }
  }

  void choose_cells(const Question& question) {
    const bool single = question.layers.size() == 1;
    const bool source =
        std::any_of(question.beams.begin(), question.beams.end(),
                    [](const Beam& b) { return b.source != nullptr; });
    cells_.clear();
    if (source) cells_.push_back(&kLine);
    cells_.push_back(&kEnergy);
    if (source) cells_.push_back(&kWeight);
    // The lines of a source and a thickness leave no room for it.
    if (single && !(source && question.unknown)) {
      cells_.insert(cells_.end(), {&kMuRho, &kU});
    }
    if (single && settings_.energy_absorption) cells_.push_back(&kMuEn);
    if (!question.has_thickness()) {
      choose_depths(question, source);
    } else if (question.unknown) {
      choose_unknown(question, source);
    } else {
      choose_transmission(question, source);
    }
  }

  void choose_depths(const Question& question, bool source) {
    if (!question.layers[0].material.density) return;
    if (!source) cells_.push_back(&kMu);
    cells_.push_back(&kPath);
    cells_.push_back(&kHalf);
    if (!source && !settings_.energy_absorption) cells_.push_back(&kTenth);
  }

  void choose_unknown(const Question& question, bool source) {
    const auto& layer = question.layers[*question.unknown];
    if (layer.material.density) {
      cells_.push_back(source ? &kLineThickness : &kThickness);
    }
    cells_.push_back(&kAreaMass);
    cells_.push_back(&kUThickness);
    // Known from the question, where room is short.
    if (!settings_.energy_absorption) {
      cells_.push_back(source ? &kLineTransmission : &kTransmission);
    }
  }

  void choose_transmission(const Question& question, bool source) {
    const std::size_t layers = question.layers.size();
    if (layers == 1) {
      if (question.layers[0].material.density && !source &&
          !settings_.energy_absorption) {
        cells_.push_back(&kMu);
      }
    } else if (layers <= kShownLayers && !source) {
      for (std::size_t i = 0; i < layers; ++i) cells_.push_back(&kLayers[i]);
    }
    if (!source || layers > 1) cells_.push_back(&kMuX);
    cells_.push_back(&kTransmission);
    // The lines of a source and mu_en/rho leave no room for it.
    if (!source || !settings_.energy_absorption) {
      cells_.push_back(&kUTransmission);
    }
  }

  template <typename Text>
  void write_line(Text text) {
    std::string line;
    for (const Cells* cells : cells_) {
      const std::string cell = text(*cells);
      const std::size_t width = width_of(cell);
      const std::size_t blanks =
          cells->width > width ? cells->width - width : 1;
      if (cells == &kLine) {
        line += cell + std::string(blanks, ' ');
      } else {
        line += std::string(blanks, ' ') + cell;
      }
    }
    line.erase(line.find_last_not_of(' ') + 1);
    output_.text(line + "\n");
  }

  Output& output_;
  const Settings& settings_;
  const Question* question_ = nullptr;
  std::vector<const Cells*> cells_;
  bool first_ = true;
  std::size_t line_ = 0;
};

}  // namespace

std::unique_ptr<AnswerWriter> text_writer(Output& output,
                                          const Settings& settings,
                                          Shape /*shape*/) {
  return std::make_unique<TextWriter>(output, settings);
}

}  // namespace attenuate
