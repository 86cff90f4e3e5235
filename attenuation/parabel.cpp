#include "attenuation/parabel.h"

namespace attenuation {
namespace {

float four_point_fit(const FitPoints& xs, const FitPoints& ys, double us) {
  // Origin at point 2, in both directions.
  const double u = 1000.0 * us - xs(2);
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

float three_point_fit(const FitPoints& xs, const FitPoints& ys, double us) {
  const double u = 1000.0 * us;
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

}  // namespace

void parabel(int ns, FitPoints& xs, const FitPoints& ys, double us,
             float& att) {
  for (int i = 1; i <= 4; ++i) xs(i) *= 1000.0;
  if (ns == 4) att = four_point_fit(xs, ys, us);
  if (ns == 3) att = three_point_fit(xs, ys, us);
}

}  // namespace attenuation
