// A quantity over the energy, ready to be evaluated: one cubic in log2 E for
// log2 y in each interval between two rows, and a grid that finds the interval.

#ifndef PHYSICS_CURVE_H_
#define PHYSICS_CURVE_H_

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "physics/binary.h"
#include "physics/quantities.h"

namespace physics {

// log2 y = a + t (b + t (c + t d)) with t = log2 E - x, from `keV` to that of
// the next piece.
struct Cubic {
  double a, b, c, d;
  double x;  // log2 keV
  double keV;

  double log2(double log2_keV) const {
    const double t = log2_keV - x;
    return a + t * (b + t * (c + t * d));
  }
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
  constexpr bool holds(Energy e) const {
    return first().keV <= e.keV && e.keV <= last().keV;
  }

  // The last one is the mere point of the last energy.
  constexpr std::span<const Cubic> pieces() const {
    return pieces_.first(pieces_.size() - 1);
  }

  // y at an energy that the curve holds, which is not checked again; on an edge
  // the upper side.
  double operator()(Energy e) const { return at(e, binary_log(e.keV)); }
  double at(Energy e, double log2_keV) const {
    return binary_power(piece(e)->log2(log2_keV));
  }

  // The same on the lower side of an edge.
  double below(Energy e) const;

  // The straight line in log2 y over log2 E through the rows on both sides.
  double straight(Energy e) const;

  // Cells of the grid: equal exponent and equal first bits of the mantissa.
  static constexpr std::uint64_t cell(double keV) {
    return std::bit_cast<std::uint64_t>(keV) >> (52 - kMantissaBits);
  }

 private:
  static constexpr int kMantissaBits = 4;

  // The piece that begins at `e` or last before it. The first two steps are
  // added, since a jump at random costs more; further ones are needed only
  // where edges lie close together. The guard behind the last piece ends the
  // search.
  const Cubic* piece(Energy e) const {
    const auto energy = std::bit_cast<std::uint64_t>(e.keV);
    const Cubic* const pieces = pieces_.data();
    std::size_t i = grid_.data()[cell(e.keV) - first_cell_];
    const auto ended = [&] {
      return energy >= std::bit_cast<std::uint64_t>(pieces[i + 1].keV);
    };
    i += ended() ? 1 : 0;
    i += ended() ? 1 : 0;
    while (ended()) [[unlikely]]++ i;
    return pieces + i;
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
