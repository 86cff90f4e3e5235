// The dialogue's interpolation: a parabola through neighbouring rows, partly in
// single precision, whose every rounding is part of the result.

#ifndef PHYSICS_PARABOLA_H_
#define PHYSICS_PARABOLA_H_

#include <optional>

#include "base/array.h"
#include "base/fatal.h"
#include "base/text.h"
#include "base/unit.h"
#include "physics/quantities.h"

namespace physics {

// Rows of one element that the parabola can hold.
inline constexpr int kBlockRows = 64;
// Records of titles before the first row of a block in a file.
inline constexpr int kBlockTitles = 6;

// The rows of one element: energies in MeV, mu/rho and mu_en/rho in cm2/g, each
// from subscript 1 to `points`. Slots beyond are 0.
struct Block {
  base::Array<double, kBlockRows> xi{"xi"};
  base::Array<double, kBlockRows> yi{"yi"};
  base::Array<double, kBlockRows> zi{"zi"};
  int points = 0;
};

// A row of a block, as its record in a file has it.
struct Point {
  double energy = 0.0;  // MeV
  double mu_rho = 0.0;  // cm2/g
  double mu_en_rho = 0.0;
};

// The point of a record: energy in columns 4-14, mu/rho in 17-25, mu_en/rho in
// 28-36; blank columns are 0. Nothing if one of them holds no number.
std::optional<Point> point_in(const base::Text<80>& record);

// Reads a block from `file`, which must stand just before its titles. It is
// left behind the record that ended the block (the first that is no point) or
// behind the 64th point.
// Fatal: end of file inside the block.
Block read_block(base::Unit& file);

// An energy that a block cannot answer. The cause is the range error that
// stopped the search for it.
class OutsideBlock : public base::RangeError {
 public:
  // first, last  the range that the block can answer; both 0 if there is none
  OutsideBlock(const base::RangeError& cause, Energy energy, Energy first,
               Energy last);

  Energy energy() const { return energy_; }
  Energy first() const { return first_; }
  Energy last() const { return last_; }

 private:
  Energy energy_, first_, last_;
};

// mu/rho in cm2/g at a photon energy of `keV`.
//
// On an absorption edge, two rows of one energy, the value above it is taken.
// Between rows a parabola is fitted through four rows, or three next to an
// edge. It needs a row on either side of the interval: usable are the energies
// from the second row to the last but one.
//
// Throws OutsideBlock.
float parabola(const Block& block, float keV);

// Four neighbouring energies in keV, or coefficients in cm2/g; of three points
// the first three.
using FitPoints = base::Array<double, 4>;

// The parabolas themselves, at the energy `MeV`. They follow the values, not
// their logarithms.
//
// Exactly through points 2 and 3, with the curvature that fits points 1 and 4
// best (least squares).
float four_point_fit(const FitPoints& xs, const FitPoints& ys, double MeV);
// Exactly through points 1, 2 and 3. Two equal energies among them give
// whatever single precision makes of a singular matrix.
float three_point_fit(const FitPoints& xs, const FitPoints& ys, double MeV);

}  // namespace physics

#endif  // PHYSICS_PARABOLA_H_
