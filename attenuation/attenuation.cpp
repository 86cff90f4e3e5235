#include "attenuation/attenuation.h"

#include <array>
#include <charconv>
#include <optional>
#include <string>

#include "attenuation/parabel.h"
#include "base/edit.h"
#include "base/fatal.h"
#include "base/text.h"
#include "base/unit.h"

namespace attenuation {
namespace {

// Short and without locale: 14.4, 20000.
std::string keV(double energy) {
  std::array<char, 32> digits{};
  const auto [end, error] =
      std::to_chars(digits.data(), digits.data() + digits.size(), energy,
                    std::chars_format::general, 6);
  return std::string(digits.data(), end) + " keV";
}

// A data record has the edit list (3x,e11.5,2x,e9.3,2x,e9.3).
bool read_point(const base::Text<80>& record, Block& block, int i) {
  const auto energy = base::read_e(record.columns<4, 14>(), 5);
  const auto mu_rho = base::read_e(record.columns<17, 25>(), 3);
  const auto mu_en_rho = base::read_e(record.columns<28, 36>(), 3);
  if (!energy || !mu_rho || !mu_en_rho) return false;
  block.xi(i) = *energy;
  block.yi(i) = *mu_rho;
  block.zi(i) = *mu_en_rho;
  return true;
}

float coefficient(const Block& block, double x) {
  const auto& xi = block.xi;
  const auto& yi = block.yi;

  // Stops at the array's bound at the latest: unread slots are 0.
  int i = 1;
  while (x >= xi(i)) ++i;
  // Below the first point this is 0, in the first interval i - 1 will be:
  // either is the range error of `xi`.
  --i;

  if (xi(i) == x) return static_cast<float>(yi(i));

  // Above the interval there must be a point that was read.
  if (i + 2 > block.points && i + 2 <= xi.kUpper) {
    throw base::RangeError("Index '" + std::to_string(i + 2) +
                           "' of dimension 1 of array 'xi' above the last"
                           " point read, " +
                           std::to_string(block.points));
  }
  // In this order: an interval with an edge at either end is singular. Meant.
  int first = i - 1;
  int ns = 4;
  if (xi(i + 1) == xi(i + 2)) {
    ns = 3;
  } else if (xi(i - 1) == xi(i)) {
    first = i;
    ns = 3;
  }
  FitPoints xs{"xs"};
  FitPoints ys{"ys"};
  for (int n = 1; n <= ns; ++n) {
    xs(n) = xi(first + n - 1);
    ys(n) = yi(first + n - 1);
  }
  float atc = 0.0F;
  parabel(ns, xs, ys, x, atc);
  return atc;
}

}  // namespace

void read_block(Block& block) {
  base::Unit& file = base::unit(1);
  base::Text<80> input;
  for (int header = 0; header < 6; ++header) file.read(input);
  block.points = 0;
  while (block.points < block.xi.kUpper) {
    file.read(input);
    if (!read_point(input, block, block.points + 1)) return;
    ++block.points;
  }
}

void attenuation(float energy, float& atc) {
  Block block;
  read_block(block);
  // Multiplied in single precision: 122 keV is the double nearest to the
  // single-precision 0.122, not 0.122 itself.
  const auto x = static_cast<double>(0.001F * energy);
  try {
    atc = coefficient(block, x);
  } catch (base::RangeError& error) {
    std::string advice = "the photon energy " +
                         keV(static_cast<double>(energy)) +
                         " is outside the usable table";
    if (block.points >= 3) {
      advice += ", which runs from " + keV(1000.0 * block.xi(2)) + " to " +
                keV(1000.0 * block.xi(block.points - 1));
    }
    error.advise(advice);
    throw;
  }
}

}  // namespace attenuation
