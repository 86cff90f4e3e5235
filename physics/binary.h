// Logarithm and power to base 2 of one number.
//
// Tables and short polynomials of our own, each operation rounded by itself. So
// a result is the same on every machine and with every C library, and takes
// less time than a C library's.

#ifndef PHYSICS_BINARY_H_
#define PHYSICS_BINARY_H_

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <numbers>

namespace physics {

// One of 64 cells of equal first bits between 0.703125 and twice that; c is its
// middle.
struct BinaryCell {
  double inverse;  // 1 / c
  double log;      // log2 c
};
extern const std::array<BinaryCell, 64> kBinaryCells;
extern const std::array<double, 64> kBinaryPowers;  // 2^(i / 64)

namespace binary {

inline constexpr int kFraction = 52;  // bits of a double behind its exponent
inline constexpr int kIndex = 6;      // first bits that number a cell

inline std::uint64_t bits(double value) {
  return std::bit_cast<std::uint64_t>(value);
}
inline double number(std::uint64_t bits) { return std::bit_cast<double>(bits); }

// Taylor's series of log2(1 + r), |r| up to 1/128; the 7th term is below 4e-16.
inline constexpr std::array<double, 7> kLog = [] {
  std::array<double, 7> terms{};
  for (int n = 1; n < 7; ++n) {
    terms[static_cast<std::size_t>(n)] =
        (n % 2 == 1 ? 1 : -1) / (n * std::numbers::ln2);
  }
  return terms;
}();

// And of 2^r, |r| up to 1/128; the 6th term is below 4e-17.
inline constexpr std::array<double, 6> kPower = [] {
  std::array<double, 6> terms{1.0};
  for (std::size_t n = 1; n < 6; ++n) {
    terms[n] = terms[n - 1] * std::numbers::ln2 / static_cast<double>(n);
  }
  return terms;
}();

}  // namespace binary

// log2 of a positive normal number; half a unit in the last place of the result
// and 1e-15 off at most.
inline double binary_log(double value) {
  using namespace binary;
  // value = 2^k z, z = c (1 + r).
  constexpr std::uint64_t kFirst = std::bit_cast<std::uint64_t>(0.703125);
  constexpr std::uint64_t kCell = std::uint64_t{1} << (kFraction - kIndex);
  const std::uint64_t above = bits(value) - kFirst;
  const auto k = static_cast<std::int64_t>(above) >> kFraction;
  const std::uint64_t z = bits(value) - (above >> kFraction << kFraction);
  const double c = number((z & ~(kCell - 1)) | kCell / 2);
  const BinaryCell& cell = kBinaryCells[above / kCell % 64];
  const double r = (number(z) - c) * cell.inverse, r2 = r * r;
  return (static_cast<double>(k) + cell.log) +
         (r * kLog[1] + r2 * ((kLog[2] + r * kLog[3]) +
                              r2 * ((kLog[4] + r * kLog[5]) + r2 * kLog[6])));
}

// 2^x where that is a normal number; 4e-16 off at most, relative.
inline double binary_power(double x) {
  using namespace binary;
  // x = n / 64 + r; n is the last bits of `shifted`.
  constexpr double kShift = 0x1.8p52 / 64;
  const double shifted = x + kShift;
  const double r = x - (shifted - kShift), r2 = r * r;
  const std::uint64_t n = bits(shifted);
  const double power =
      number(bits(kBinaryPowers[n % 64]) + (n >> kIndex << kFraction));
  return power +
         power * (r * kPower[1] + r2 * ((kPower[2] + r * kPower[3]) +
                                        r2 * (kPower[4] + r * kPower[5])));
}

}  // namespace physics

#endif  // PHYSICS_BINARY_H_
