#include "physics/curve.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace physics {
namespace {

// Slope at the first of three points from the widths and slopes of the first
// two intervals, counted from that end.
double end_slope(double h0, double h1, double m0, double m1) {
  const double slope = ((2 * h0 + h1) * m0 - h0 * m1) / (h0 + h1);
  if (slope * m0 <= 0) return 0;
  if (m0 * m1 <= 0 && std::abs(slope) > 3 * std::abs(m0)) return 3 * m0;
  return slope;
}

double inner_slope(double h0, double h1, double m0, double m1) {
  if (m0 * m1 <= 0) return 0;
  const double w0 = h0 + 2 * h1;
  const double w1 = 2 * h0 + h1;
  return (w0 + w1) / (w0 / m0 + w1 / m1);
}

// Slopes in log2 y over log2 E at the points of one segment.
std::vector<double> slopes(const std::vector<double>& x,
                           const std::vector<double>& y) {
  const std::size_t last = x.size() - 1;
  std::vector<double> h(last);
  std::vector<double> m(last);
  for (std::size_t i = 0; i < last; ++i) {
    h[i] = x[i + 1] - x[i];
    m[i] = (y[i + 1] - y[i]) / h[i];
  }
  if (last == 1) return {m[0], m[0]};
  std::vector<double> slope(x.size());
  slope[0] = end_slope(h[0], h[1], m[0], m[1]);
  for (std::size_t i = 1; i < last; ++i) {
    slope[i] = inner_slope(h[i - 1], h[i], m[i - 1], m[i]);
  }
  slope[last] = end_slope(h[last - 1], h[last - 2], m[last - 1], m[last - 2]);
  return slope;
}

void append_segment(std::span<const CurvePoint> points,
                    std::vector<Cubic>& pieces) {
  std::vector<double> x;
  std::vector<double> y;
  for (const CurvePoint& point : points) {
    x.push_back(binary_log(point.keV));
    y.push_back(binary_log(point.y));
  }
  const std::vector<double> slope = slopes(x, y);
  for (std::size_t i = 0; i + 1 < x.size(); ++i) {
    const double h = x[i + 1] - x[i];
    const double m = (y[i + 1] - y[i]) / h;
    pieces.push_back({y[i], slope[i], (3 * m - 2 * slope[i] - slope[i + 1]) / h,
                      (slope[i] + slope[i + 1] - 2 * m) / (h * h), x[i],
                      points[i].keV});
  }
}

void require(bool good, const char* message) {
  if (!good) throw std::invalid_argument(message);
}

bool positive(double value) {
  return value >= std::numeric_limits<double>::min() &&
         value <= std::numeric_limits<double>::max();
}

}  // namespace

std::vector<Cubic> pchip(std::span<const CurvePoint> points) {
  require(points.size() >= 2, "fewer than two points");
  std::vector<Cubic> pieces;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    require(positive(points[i].keV) && positive(points[i].y),
            "an energy or coefficient that is not positive");
    const bool ends =
        i + 1 == points.size() || points[i + 1].keV == points[i].keV;
    require(ends || points[i + 1].keV > points[i].keV, "the energy falls");
    if (!ends) continue;
    require(i > begin, "an edge without a point beside it");
    append_segment(points.subspan(begin, i + 1 - begin), pieces);
    begin = i + 1;
  }
  const CurvePoint& last = points.back();
  pieces.push_back(
      {binary_log(last.y), 0, 0, 0, binary_log(last.keV), last.keV});
  pieces.push_back({0, 0, 0, 0, 0, std::numeric_limits<double>::max()});
  require(pieces.size() <= 256, "more than 256 intervals");
  return pieces;
}

std::vector<std::uint8_t> grid_of(std::span<const Cubic> pieces) {
  std::vector<std::uint8_t> grid;
  const std::uint64_t first = Curve::cell(pieces.front().keV);
  const std::uint64_t last = Curve::cell(pieces[pieces.size() - 2].keV);
  std::size_t i = 0;
  for (std::uint64_t cell = first; cell <= last; ++cell) {
    while (Curve::cell(pieces[i + 1].keV) < cell) ++i;
    grid.push_back(static_cast<std::uint8_t>(i));
  }
  return grid;
}

double Curve::below(Energy e) const {
  const Cubic* p = piece(e);
  if (p->keV == e.keV && p != pieces_.data()) --p;
  return binary_power(p->log2(binary_log(e.keV)));
}

double Curve::straight(Energy e) const {
  const Cubic& p = *piece(e);
  if (e == last()) return binary_power(p.a);
  const double width = (&p)[1].x - p.x;
  const double rise = p.log2((&p)[1].x) - p.a;
  return binary_power(p.a + (binary_log(e.keV) - p.x) * rise / width);
}

}  // namespace physics
