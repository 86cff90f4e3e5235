#include "physics/parabola.h"

#include <string>

#include "base/edit.h"
#include "physics/errors.h"

namespace physics {
namespace {

// `x` in MeV.
float value_at(const Block& block, double x) {
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
  // An edge above is looked for first: with an edge at both ends the fit is
  // singular either way, and no table has such an interval.
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
    xs(n) = 1000.0 * xi(first + n - 1);
    ys(n) = yi(first + n - 1);
  }
  return ns == 4 ? four_point_fit(xs, ys, x) : three_point_fit(xs, ys, x);
}

std::string advice_on(Energy energy, Energy first, Energy last) {
  std::string advice = "the photon energy " + short_number(energy.keV) +
                       " keV is outside the usable table";
  if (last.keV > 0.0) {
    advice += ", which runs from " + short_number(first.keV) + " keV to " +
              short_number(last.keV) + " keV";
  }
  return advice;
}

}  // namespace

OutsideBlock::OutsideBlock(const base::RangeError& cause, Energy energy,
                           Energy first, Energy last)
    : base::RangeError(cause), energy_(energy), first_(first), last_(last) {
  advise(advice_on(energy, first, last));
}

std::optional<Point> point_in(const base::Text<80>& record) {
  const auto energy = base::read_e(record.columns<4, 14>(), 5);
  const auto mu_rho = base::read_e(record.columns<17, 25>(), 3);
  const auto mu_en_rho = base::read_e(record.columns<28, 36>(), 3);
  if (!energy || !mu_rho || !mu_en_rho) return std::nullopt;
  return Point{*energy, *mu_rho, *mu_en_rho};
}

Block read_block(base::Unit& file) {
  base::Text<80> record;
  for (int title = 0; title < kBlockTitles; ++title) file.read(record);
  Block block;
  while (block.points < kBlockRows) {
    file.read(record);
    const std::optional<Point> point = point_in(record);
    if (!point) break;
    const int i = ++block.points;
    block.xi(i) = point->energy;
    block.yi(i) = point->mu_rho;
    block.zi(i) = point->mu_en_rho;
  }
  return block;
}

float parabola(const Block& block, float keV) {
  // Multiplied in single precision: 122 keV is the double nearest to the
  // single-precision 0.122, not 0.122 itself.
  const auto x = static_cast<double>(0.001F * keV);
  try {
    return value_at(block, x);
  } catch (const base::RangeError& cause) {
    const bool usable = block.points >= 3;
    const auto at = [&](int i) {
      return Energy{usable ? 1000.0 * block.xi(i) : 0.0};
    };
    throw OutsideBlock(cause, Energy{static_cast<double>(keV)}, at(2),
                       at(block.points - 1));
  }
}

float four_point_fit(const FitPoints& xs, const FitPoints& ys, double MeV) {
  // Origin at point 2, in both directions.
  const double u = 1000.0 * MeV - xs(2);
  const double x1 = xs(1) - xs(2);
  const double x3 = xs(3) - xs(2);
  const double x4 = xs(4) - xs(2);
  const double f1 = ys(1) - ys(2);
  const double f3 = ys(3) - ys(2);
  const double f4 = ys(4) - ys(2);

  // Kept in single precision: the fit is defined with this rounding.
  const auto h13 = static_cast<float>((x1 - x3) * x1);
  const double h43 = x4 * (x4 - x3);
  const auto h = static_cast<double>(h13);
  const double ha = h * f1 + f4 * h43 - (h * x1 + h43 * x4) * f3 / x3;
  const double hf = static_cast<double>(h13 * h13) + h43 * h43;
  const double a = ha / hf;
  const double b = f3 / x3 - a * x3;
  return static_cast<float>(ys(2) + (u * u * a + b * u));
}

float three_point_fit(const FitPoints& xs, const FitPoints& ys, double MeV) {
  const double u = 1000.0 * MeV;
  const double x1 = xs(1);
  const double x2 = xs(2);
  const double x3 = xs(3);

  // The matrix and its determinant are kept in single precision: the fit is
  // defined with this rounding.
  const auto a11 = static_cast<float>(x1 * x1);
  const auto a12 = static_cast<float>(x1);
  const auto a21 = static_cast<float>(x2 * x2);
  const auto a22 = static_cast<float>(x2);
  const auto a31 = static_cast<float>(x3 * x3);
  const auto a32 = static_cast<float>(x3);
  const float a13 = 1.0F;
  const float a23 = 1.0F;
  const float a33 = 1.0F;
  const float det = (a22 * a33 - a32 * a23) * a11 -
                    (a21 * a33 - a31 * a23) * a12 +
                    (a21 * a32 - a31 * a22) * a13;

  // Rows of the inverse: the adjugate divided by the determinant.
  const auto entry = [det](float cofactor) {
    return static_cast<double>(cofactor) / static_cast<double>(det);
  };
  const double c11 = entry(a22 * a33 - a32 * a23);
  const double c12 = entry(a13 * a32 - a33 * a12);
  const double c13 = entry(a12 * a23 - a22 * a13);
  const double c21 = entry(a23 * a31 - a33 * a21);
  const double c22 = entry(a11 * a33 - a31 * a13);
  const double c23 = entry(a13 * a21 - a23 * a11);
  const double c31 = entry(a21 * a32 - a31 * a22);
  const double c32 = entry(a12 * a31 - a32 * a11);
  const double c33 = entry(a11 * a22 - a21 * a12);

  const double ak1 = c11 * ys(1) + c12 * ys(2) + c13 * ys(3);
  const double ak2 = c21 * ys(1) + c22 * ys(2) + c23 * ys(3);
  const double ak3 = c31 * ys(1) + c32 * ys(2) + c33 * ys(3);
  return static_cast<float>(ak3 + (u * u * ak1 + ak2 * u));
}

}  // namespace physics
