// A quantity over the energy, ready to be evaluated: one cubic in ln E for
// ln y in each interval between two rows, and a grid that finds the interval.

#ifndef PHYSICS_CURVE_H_
#define PHYSICS_CURVE_H_

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "physics/quantities.h"

namespace physics {

// ln y = a + t (b + t (c + t d)) with t = ln E - x, from `keV` to that of the
// next piece.
struct Cubic {
  double keV;
  double x;  // ln keV
  double a, b, c, d;
};

class Curve {
 public:
  // pieces  of pchip() below
  // grid    of grid_of() below
  // Both must outlive the curve.
  constexpr Curve(std::span<const Cubic> pieces,
                  std::span<const std::uint8_t> grid)
      : pieces_(pieces), grid_(grid), first_cell_(cell(pieces.front().keV)) {}

  constexpr Energy first() const { return {pieces_.front().keV}; }
  constexpr Energy last() const { return {pieces_[pieces_.size() - 2].keV}; }
  // Not NaN.
  constexpr bool holds(Energy e) const { return first() <= e && e <= last(); }

  // The last one is the mere point of the last energy.
  constexpr std::span<const Cubic> pieces() const {
    return pieces_.first(pieces_.size() - 1);
  }

  // ln y at an energy that the curve holds, which is not checked again; on an
  // edge the upper side.
  double ln(Energy e) const { return at(e, std::log(e.keV)); }
  double at(Energy e, double ln_keV) const { return value(*piece(e), ln_keV); }

  // The same on the lower side of an edge.
  double ln_below(Energy e) const {
    const Cubic* p = piece(e);
    if (p->keV == e.keV && p != pieces_.data()) --p;
    return value(*p, std::log(e.keV));
  }

  // The straight line in ln y over ln E through the rows on both sides.
  double ln_straight(Energy e) const;

  // Cells of the grid: equal exponent and equal first bits of the mantissa.
  static constexpr std::uint64_t cell(double keV) {
    return std::bit_cast<std::uint64_t>(keV) >> (52 - kMantissaBits);
  }

 private:
  static constexpr int kMantissaBits = 4;

  static double value(const Cubic& p, double ln_keV) {
    const double t = ln_keV - p.x;
    return p.a + t * (p.b + t * (p.c + t * p.d));
  }

  // The piece that begins at `e` or last before it. The first two steps are
  // taken without a jump, which for random energies nobody could predict; more
  // are needed only where edges lie close together. The guard behind the last
  // piece ends the search.
  const Cubic* piece(Energy e) const {
    const Cubic* p = pieces_.data() + grid_.data()[cell(e.keV) - first_cell_];
    p += p[1].keV <= e.keV ? 1 : 0;
    p += p[1].keV <= e.keV ? 1 : 0;
    while (p[1].keV <= e.keV) ++p;
    return p;
  }

  std::span<const Cubic> pieces_;
  std::span<const std::uint8_t> grid_;
  std::uint64_t first_cell_;
};

// What the monotone cubic goes through.
struct CurvePoint {
  double keV;
  double y;  // above 0
};

// Energies rise; two points of one energy are an edge, below and above it.
// Piecewise cubic Hermite in ln y over ln E with the weighted harmonic slopes
// of F. N. Fritsch and J. Butland, SIAM J. Sci. Stat. Comput. 5 (1984) 300, and
// three-point slopes at the ends, limited to keep the shape, as pchip of MATLAB
// and SciPy has them. Each segment between edges stands for itself; one of two
// points is a straight line. Behind the pieces follow the last point as a piece
// of its own and a guard beyond all energies.
// Throws std::invalid_argument: fewer than two points, energies or values that
// are not positive or do not rise, a segment of one point, over 256 pieces.
std::vector<Cubic> pchip(std::span<const CurvePoint> points);

// For each cell from the first energy to the last, the last piece that begins
// before the cell; 0 for the first cell.
std::vector<std::uint8_t> grid_of(std::span<const Cubic> pieces);

}  // namespace physics

#endif  // PHYSICS_CURVE_H_
