// Coefficients at many energies: the curves of physics/table.h, several
// energies at a time.
//
// Logarithm and power are polynomials of our own, made of additions,
// multiplications and divisions, each rounded by itself. So a result is the
// same on every machine, wherever in an array it stands and whichever
// instructions the processor has. From those of physics/table.h, whose
// arithmetic is shorter for one number, it differs by less than 1e-13,
// relative.

#ifndef PHYSICS_ARRAYS_H_
#define PHYSICS_ARRAYS_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "physics/curve.h"
#include "physics/data.h"
#include "physics/errors.h"
#include "physics/material.h"
#include "physics/quantities.h"

namespace physics {

enum class Coefficient { kAttenuation, kEnergyAbsorption };

// What becomes of the sum s at an energy.
enum class Form {
  kSum,           // s
  kTransmission,  // exp(-s)
};

// An energy without an answer, which may be no number.
struct Outside {
  std::size_t subscript = 0;
  Energy energy;
};

// A weighted sum of elements' curves: mu/rho of a material with the mass
// fractions as weights, or mu x of layers with the areal masses.
class CurveSum {
 public:
  CurveSum() { cut(); }

  // Adds `factor` times mu/rho or mu_en/rho of a material.
  void add(const Material& material, double factor,
           Coefficient coefficient = Coefficient::kAttenuation,
           const Data& data = builtin());

  // Where every element has its table.
  Energy first() const { return first_; }
  Energy last() const { return last_; }
  // What is wrong with an energy that is not there.
  OutsideTable outside(Energy energy) const;

  // Evaluates `factor` times the sum at each energy; not a number where that is
  // outside the tables. `values` is as long as `keV`, and may be the same.
  // Returns the first energy outside. Allocates nothing.
  // lanes  how many energies the processor takes at once: 2, 4 or 8, if it can
  std::optional<Outside> evaluate(
      std::span<const double> keV, std::span<double> values,
      Form form = Form::kSum, double factor = 1.0,
      std::size_t lanes = most_lanes()) const noexcept;
  static std::size_t most_lanes() noexcept;

 private:
  struct Term {
    const Curve* curve = nullptr;
    double weight = 0.0;
    std::vector<std::uint8_t> pieces;  // the curve's for each interval
  };
  template <typename Vector>
  friend struct Kernel;

  // Cuts the range into intervals in which each curve is one piece, and finds
  // their cells.
  void cut();

  std::vector<Term> terms_;
  std::vector<std::uint64_t> ends_;   // of the intervals: bits of keV
  std::vector<std::uint16_t> cells_;  // the interval at the start of each cell
  std::uint64_t first_cell_ = 0;
  Energy first_{1.0}, last_{20000.0};
  int first_z_ = 0, last_z_ = 0;
};

}  // namespace physics

#endif  // PHYSICS_ARRAYS_H_
