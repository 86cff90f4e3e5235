#include "attenuation/report.h"

#include <string>
#include <string_view>
#include <vector>

#include "attenuation/notes.h"
#include "base/edit.h"
#include "base/unit.h"
#include "physics/beam.h"

namespace attenuation {
namespace {

// A number of a report line: its field, and what a note calls it.
struct Number {
  float value;
  std::string_view name;
  std::string_view unit;
};

bool is_stars(const std::string& field) {
  return field.find_first_not_of('*') == field.npos;
}

class ReportLine {
 public:
  ReportLine(int width, int decimals) : width_(width), decimals_(decimals) {}

  ReportLine& text(std::string_view text) {
    line_ += text;
    return *this;
  }
  ReportLine& number(const Number& number) {
    const std::string field =
        base::fixed_field(number.value, width_, decimals_);
    line_ += field;
    if (is_stars(field)) too_wide_.push_back(number);
    return *this;
  }
  // Writes the line; notes on what it cannot show follow.
  void write() const {
    base::unit(base::kTerminalOutput).write(line_);
    for (const Number& number : too_wide_) {
      note_too_wide(number.name, number.value, number.unit);
    }
  }

 private:
  int width_;
  int decimals_;
  std::string line_;
  std::vector<Number> too_wide_;
};

void write_empty_line() { base::unit(base::kTerminalOutput).write(""); }

}  // namespace

void report_coefficient(float atc, float density, int width) {
  constexpr int kDecimals = 3;
  const float mu = physics::linear_attenuation(atc, density);
  ReportLine(width, kDecimals)
      .text(" mue/rho=")
      .number({atc, "mue/rho", "cm2/g"})
      .text(" [cm^2/g]  density=")
      .number({density, "density", "g/cm3"})
      .text(" [g/cm^3]  mu_e=")
      .number({mu, "mu_e", "1/mm"})
      .text(" [mm^-1]")
      .write();
  write_empty_line();
}

void report_areal_mass(float thick) {
  write_empty_line();
  write_empty_line();
  ReportLine(10, 2)
      .text("       mg/cm2=")
      .number({thick * 1000.0F, "areal mass", "mg/cm2"})
      .write();
}

void report_exponents(float lower, float upper) {
  ReportLine(12, 4)
      .text("122keV:")
      .number({lower, "mu x at the lower line", ""})
      .text(" 136keV:")
      .number({upper, "mu x at the upper line", ""})
      .write();
}

void report_transmission(float trm) {
  ReportLine(10, 4)
      .text(" transmission=")
      .number({trm, "transmission", ""})
      .write();
  write_empty_line();
}

}  // namespace attenuation
