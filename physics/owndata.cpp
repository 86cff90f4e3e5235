// Tables of one's own: read_data (physics/data.h).

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/fatal.h"
#include "base/text.h"
#include "base/unit.h"
#include "physics/curve.h"
#include "physics/data.h"
#include "physics/densities.h"
#include "physics/elementlist.h"
#include "physics/parabola.h"
#include "physics/table.h"

namespace physics {
namespace {

namespace fs = std::filesystem;

// Unit number that messages name; the files are open one after the other.
constexpr int kUnit = 1;
constexpr const char* kElementFile = "elements.dat";
constexpr const char* kCoefficientFile = "attenuation.coefficients";
constexpr const char* kDensityFile = "dichte.dat";

std::size_t index(int z) { return static_cast<std::size_t>(z) - 1; }

// The first number in `text`, in double precision; 0 if there is none.
double number_in(std::string_view text) {
  const std::size_t first =
      std::min(text.find_first_of("0123456789"), text.size());
  double value = 0.0;
  std::from_chars(text.data() + first, text.data() + text.size(), value,
                  std::chars_format::fixed);
  return value;
}

// An energy of a file in keV: of 1.09610E-03 MeV 1.0961 keV, as typed.
double keV_of(double MeV) {
  std::array<char, 40> digits{};
  char* end = std::to_chars(digits.begin(), digits.end(), MeV,
                            std::chars_format::scientific)
                  .ptr;
  char* const exponent = std::find(digits.begin(), end, 'e') + 1;
  int power = 0;
  std::from_chars(*exponent == '+' ? exponent + 1 : exponent, end, power);
  end = std::to_chars(exponent, digits.end(), power + 3).ptr;
  double keV = 0.0;
  std::from_chars(digits.begin(), end, keV);
  return keV;
}

// Rows as curves, which keep views of what is beside them.
struct OwnTable {
  OwnTable(int z, const Block& rows, const Curve& published)
      : block(rows),
        total(pchip(points(rows, rows.yi))),
        total_grid(grid_of(total)),
        absorption(of_absorption(rows)),
        absorption_grid(absorption.empty() ? std::vector<std::uint8_t>{}
                                           : grid_of(absorption)),
        table{z,
              {total, total_grid},
              absorption.empty() ? published
                                 : Curve(absorption, absorption_grid)} {}
  OwnTable(const OwnTable&) = delete;
  OwnTable& operator=(const OwnTable&) = delete;

  Block block;
  std::vector<Cubic> total;
  std::vector<std::uint8_t> total_grid;
  std::vector<Cubic> absorption;
  std::vector<std::uint8_t> absorption_grid;
  Table table;

 private:
  using Column = base::Array<double, kBlockRows>;

  // Rows without a value are left out.
  static std::vector<CurvePoint> points(const Block& rows,
                                        const Column& column) {
    std::vector<CurvePoint> list;
    for (int i = 1; i <= rows.points; ++i) {
      if (column(i) == 0.0) continue;
      list.push_back({keV_of(rows.xi(i)), column(i)});
    }
    return list;
  }

  static std::vector<Cubic> of_absorption(const Block& rows) {
    const auto list = points(rows, rows.zi);
    return list.empty() ? std::vector<Cubic>{} : pchip(list);
  }
};

class OwnData final : public Data {
 public:
  explicit OwnData(const fs::path& directory)
      : version_("tables of " + directory.string() + "; others " +
                 std::string(builtin().version())) {
    const auto published = builtin().elements();
    std::copy(published.begin(), published.end(), elements_.begin());
    read_coefficients(directory, read_elements(directory / kElementFile));
    read_densities(directory / kDensityFile);
  }

  std::span<const Element> elements() const override { return elements_; }
  const Table& table(int z) const override {
    const auto& own = tables_.at(index(z));
    return own ? own->table : builtin().table(z);
  }
  std::optional<Block> block(int z) const override {
    const auto& own = tables_.at(index(z));
    return own ? own->block : builtin().block(z);
  }
  std::span<const Modification> modifications(int z) const override {
    const auto& own = modifications_.at(index(z));
    return own.empty() ? builtin().modifications(z) : own;
  }
  std::string_view doubt(int z, Energy energy) const override {
    if (tables_.at(index(z))) return {};
    return builtin().doubt(z, energy);
  }
  std::string_view version() const override { return version_; }

 private:
  // Where the block of an element is found.
  struct Listed {
    int z;
    base::Text<12> name;
  };

  std::vector<Listed> read_elements(const fs::path& file) {
    std::vector<Listed> list;
    base::Unit unit(kUnit);
    unit.open(file.string());
    for (int i = 1; i <= kListedElements; ++i) {
      base::Text<80> record;
      unit.read(record);
      const ListedElement listed = element_in(record);
      const Element* const known = element_with_symbol(listed.symbol.trimmed());
      const double weight = number_in(record.columns<30, 49>());
      if (!known || !(weight > 0.0)) {
        base::fatal(file.string() + ":" + std::to_string(i) +
                    ": no element or no weight");
      }
      elements_[index(known->z)].weight = weight;
      list.push_back({known->z, listed.name});
    }
    return list;
  }

  // An element whose name is not in the file keeps its built-in table.
  void read_coefficients(const fs::path& directory,
                         const std::vector<Listed>& list) {
    const std::string file = (directory / kCoefficientFile).string();
    base::Unit unit(kUnit);
    unit.open(file);
    for (const Listed& listed : list) {
      unit.rewind();
      try {
        static_cast<void>(find_block<16>(unit, listed.name));
      } catch (const base::EndOfFile&) {
        continue;
      }
      auto& table = tables_[index(listed.z)];
      const Block rows = read_block(unit);
      try {
        table = std::make_unique<const OwnTable>(
            listed.z, rows, builtin().table(listed.z).absorption);
      } catch (const std::invalid_argument& problem) {
        base::fatal(file + ": " + std::string(listed.name.trimmed()) + ": " +
                    problem.what());
      }
    }
  }

  void read_densities(const fs::path& file) {
    base::Unit unit(kUnit);
    unit.open(file.string());
    base::Text<80> record;
    while (unit.try_read(record)) {
      const int z = density_code_in(record);
      if (z < 1 || z > kElements) continue;
      const double density = number_in(record.columns<39, 80>());
      if (!(density > 0.0)) {
        base::fatal(file.string() + ": no density in \"" +
                    std::string(record.trimmed()) + "\"");
      }
      const std::string_view form =
          kept(std::string(base::Text<30>(record.columns<9, 38>()).trimmed()));
      modifications_[index(z)].push_back(
          {z, form, {density}, temperature_in(form), kDensityFile});
    }
  }

  // Behind the last comma, where a temperature stands there.
  static std::string_view temperature_in(std::string_view form) {
    const std::size_t comma = form.rfind(", ");
    const bool told =
        comma != form.npos && (form.ends_with(" C") || form.ends_with(" K"));
    return told ? form.substr(comma + 2) : "room";
  }

  std::string_view kept(std::string text) {
    return texts_.emplace_back(std::move(text));
  }

  std::string version_;
  std::deque<std::string> texts_;
  std::array<Element, kElements> elements_;
  std::array<std::unique_ptr<const OwnTable>, kElements> tables_;
  std::array<std::vector<Modification>, kElements> modifications_;
};

}  // namespace

std::unique_ptr<const Data> read_data(const fs::path& directory) {
  return std::make_unique<const OwnData>(directory);
}

}  // namespace physics
