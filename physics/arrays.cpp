#include "physics/arrays.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <numbers>

#include "physics/table.h"

#define INLINE [[gnu::always_inline]] inline

namespace physics {
namespace {

constexpr double kLn2 = std::numbers::ln2;
// ln(1 + f) of s = f / (2 + f), without the first s: the polynomial of fdlibm,
// in units of ln 2.
constexpr std::array<double, 8> kLog = {2.0 / kLn2,
                                        6.666666666666735130e-01 / kLn2,
                                        3.999999999940941908e-01 / kLn2,
                                        2.857142874366239149e-01 / kLn2,
                                        2.222219843214978396e-01 / kLn2,
                                        1.818357216161805012e-01 / kLn2,
                                        1.531383769920937332e-01 / kLn2,
                                        1.479819860511658591e-01 / kLn2};

// Taylor's series of 2^r.
constexpr std::array<double, 12> power_terms() {
  std::array<double, 12> terms{1.0};
  for (std::size_t n = 1; n < terms.size(); ++n) {
    terms[n] = terms[n - 1] * kLn2 / static_cast<double>(n);
  }
  return terms;
}
constexpr std::array<double, 12> kPower = power_terms();

constexpr int kFraction = 52;  // bits of a double behind its exponent

// Energies of a cell share the exponent and the first bits of the fraction: 64
// cells an octave, so that few hold more than one end of a row.
constexpr int kCellBits = 6;
constexpr double kLeastEnergy = 1.0;

constexpr std::uint64_t cell(double keV) {
  return (std::bit_cast<std::uint64_t>(keV) >> (kFraction - kCellBits)) -
         (std::bit_cast<std::uint64_t>(kLeastEnergy) >>
          (kFraction - kCellBits));
}

}  // namespace

ArrayCurve::ArrayCurve(const Curve& curve) {
  const auto pieces = curve.pieces();
  for (const Cubic& piece : pieces) {
    rows_.push_back({piece.a / kLn2, piece.b, piece.c * kLn2,
                     piece.d * kLn2 * kLn2, piece.x / kLn2});
    if (ends_.size() + 1 < pieces.size()) {
      ends_.push_back(pieces[ends_.size() + 1].keV);
    }
  }
  ends_.push_back(std::numeric_limits<double>::infinity());
  std::size_t i = 0;
  for (std::uint64_t n = 0; n <= cell(curve.last().keV); ++n) {
    while (cell(ends_[i]) < n) ++i;
    cells_.push_back(static_cast<std::uint8_t>(i));
  }
}

INLINE const ArrayCurve::Row& ArrayCurve::row(double keV) const {
  // Pointers, since a range check of each would cost as much as the look-up.
  const std::uint8_t* const cells = cells_.data();
  const double* const ends = ends_.data();
  const Row* const rows = rows_.data();
  std::size_t i = cells[cell(keV)];
  // Added, since a jump at random costs more; the loop hardly ever runs.
  i += keV >= ends[i] ? 1 : 0;
  while (keV >= ends[i]) [[unlikely]]++ i;
  return rows[i];
}

// What processors take at once. A cubic's numbers lie in a row; columns()
// makes vectors of the same number of several rows.
struct Two {
  using Doubles [[gnu::vector_size(16)]] = double;
  using Bits [[gnu::vector_size(16)]] = std::uint64_t;
  static constexpr std::size_t kLanes = 2;

  INLINE static void columns(const ArrayCurve& curve, const double* keV,
                             Doubles& x, Doubles& a, Doubles& b, Doubles& c,
                             Doubles& d) {
    const ArrayCurve::Row& p = curve.row(keV[0]);
    const ArrayCurve::Row& q = curve.row(keV[1]);
    x = Doubles{p.x, q.x};
    a = Doubles{p.a, q.a};
    b = Doubles{p.b, q.b};
    c = Doubles{p.c, q.c};
    d = Doubles{p.d, q.d};
  }
};

struct Four {
  using Doubles [[gnu::vector_size(32)]] = double;
  using Bits [[gnu::vector_size(32)]] = std::uint64_t;
  static constexpr std::size_t kLanes = 4;

  INLINE static void columns(const ArrayCurve& curve, const double* keV,
                             Doubles& x, Doubles& a, Doubles& b, Doubles& c,
                             Doubles& d) {
    const ArrayCurve::Row& p = curve.row(keV[0]);
    const ArrayCurve::Row& q = curve.row(keV[1]);
    const ArrayCurve::Row& r = curve.row(keV[2]);
    const ArrayCurve::Row& s = curve.row(keV[3]);
    x = Doubles{p.x, q.x, r.x, s.x};
    std::memcpy(&a, &p.a, sizeof a);
    std::memcpy(&b, &q.a, sizeof b);
    std::memcpy(&c, &r.a, sizeof c);
    std::memcpy(&d, &s.a, sizeof d);
    const Doubles pq02 = __builtin_shufflevector(a, b, 0, 4, 2, 6);
    const Doubles pq13 = __builtin_shufflevector(a, b, 1, 5, 3, 7);
    const Doubles rs02 = __builtin_shufflevector(c, d, 0, 4, 2, 6);
    const Doubles rs13 = __builtin_shufflevector(c, d, 1, 5, 3, 7);
    a = __builtin_shufflevector(pq02, rs02, 0, 1, 4, 5);
    b = __builtin_shufflevector(pq13, rs13, 0, 1, 4, 5);
    c = __builtin_shufflevector(pq02, rs02, 2, 3, 6, 7);
    d = __builtin_shufflevector(pq13, rs13, 2, 3, 6, 7);
  }
};

template <typename Vector>
struct Kernel {
  using Doubles = typename Vector::Doubles;
  using Bits = typename Vector::Bits;
  static constexpr std::size_t kLanes = Vector::kLanes;

  // So many energies go through one step before the next: enough steps of
  // different energies to keep the processor busy, and all of it in its cache.
  static constexpr std::size_t kBlock = 64;
  struct Buffer {
    alignas(64) double at[kBlock];
  };

  INLINE static void load(Doubles& to, const double* from) {
    std::memcpy(&to, from, sizeof to);
  }
  INLINE static void store(double* to, const Doubles& from) {
    std::memcpy(to, &from, sizeof from);
  }

  // The whole number in the last bits of this double is exact.
  static constexpr double kOnes = 0x1p52;
  static constexpr std::uint64_t kOnesBits = 0x4330000000000000;

  // log2 of numbers above sqrt(1/2), to 1e-15 absolutely.
  INLINE static void logarithm(const Doubles& value, Doubles& result) {
    // value = 2^k (1 + f), 1 + f from sqrt(1/2) to sqrt(2).
    constexpr std::uint64_t kRootHalf = 0x3fe6a09e667f3bcd;
    const Bits above = reinterpret_cast<Bits>(value) - kRootHalf;
    const Doubles k =
        reinterpret_cast<Doubles>((above >> kFraction) | kOnesBits) - kOnes;
    const Bits fraction = (above & 0xfffffffffffff) + kRootHalf;
    const Doubles f = reinterpret_cast<Doubles>(fraction) - 1.0;
    // log2(1 + f) = s (kLog[0] + z p(z)).
    const Doubles s = f / (f + 2.0), z = s * s, w = z * z;
    const Doubles p = (kLog[1] + z * kLog[2]) +
                      w * ((kLog[3] + z * kLog[4]) +
                           w * ((kLog[5] + z * kLog[6]) + w * kLog[7]));
    result = k + s * (kLog[0] + z * p);
  }

  // 2^x = 2^k y with y from sqrt(1/2) to sqrt(2), to 1e-14; `shifted` has k in
  // its last bits.
  INLINE static void reduced_power(const Doubles& x, Doubles& shifted,
                                   Doubles& y) {
    shifted = x + 1.5 * kOnes;
    const Doubles r = x - (shifted - 1.5 * kOnes);
    const Doubles z = r * r, w = z * z;
    // Taylor's series to the 11th power.
    y = ((1.0 + r * kPower[1]) + z * (kPower[2] + r * kPower[3])) +
        w * (((kPower[4] + r * kPower[5]) + z * (kPower[6] + r * kPower[7])) +
             w * ((kPower[8] + r * kPower[9]) +
                  z * (kPower[10] + r * kPower[11])));
  }

  // 2^x where the result is a normal number.
  INLINE static void power(const Doubles& x, Doubles& result) {
    Doubles shifted, y;
    reduced_power(x, shifted, y);
    result = reinterpret_cast<Doubles>(
        reinterpret_cast<Bits>(y) +
        (reinterpret_cast<Bits>(shifted) << kFraction));
  }

  // exp(-s) for any s, down to 0.
  INLINE static void transmission(const Doubles& s, Doubles& result) {
    const Doubles most = Doubles{} + 1100.0, least = -most;
    Doubles x = s * (-1 / kLn2);
    x = x < least ? least : x;
    x = x > most ? most : x;
    Doubles shifted, y;
    reduced_power(x, shifted, y);
    // 2^k in two steps, since neither 2^-1074 nor 2^1024 is a normal number.
    const Bits k = (reinterpret_cast<Bits>(shifted) + 2 * 1024) & 0xfffff;
    const Bits half = k >> 1;
    result = y * reinterpret_cast<Doubles>((half - 1) << kFraction) *
             reinterpret_cast<Doubles>((k - half - 1) << kFraction);
  }

  INLINE static void transmissions(Buffer& sums, std::size_t n) {
    for (std::size_t i = 0; i < n; i += kLanes) {
      Doubles sum;
      load(sum, sums.at + i);
      transmission(sum, sum);
      store(sums.at + i, sum);
    }
  }

  // Each step in turn for up to kBlock energies, all within the tables.
  INLINE static void logarithms(const Buffer& keV, Buffer& logs,
                                std::size_t n) {
    for (std::size_t i = 0; i < n; i += kLanes) {
      Doubles energy, log;
      load(energy, keV.at + i);
      logarithm(energy, log);
      store(logs.at + i, log);
    }
  }
  INLINE static void cubics(const ArrayCurve& curve, const Buffer& keV,
                            const Buffer& logs, Buffer& values, std::size_t n) {
    for (std::size_t i = 0; i < n; i += kLanes) {
      Doubles x, a, b, c, d, log;
      Vector::columns(curve, keV.at + i, x, a, b, c, d);
      load(log, logs.at + i);
      const Doubles t = log - x;
      store(values.at + i, a + t * (b + t * (c + t * d)));
    }
  }
  INLINE static void add(double weight, const Buffer& values, Buffer& sums,
                         std::size_t n) {
    for (std::size_t i = 0; i < n; i += kLanes) {
      Doubles value, sum;
      load(value, values.at + i);
      load(sum, sums.at + i);
      power(value, value);
      store(sums.at + i, sum + weight * value);
    }
  }

  INLINE static std::optional<Outside> evaluate(const CurveSum& curves,
                                                std::span<const double> keV,
                                                std::span<double> values,
                                                Form form, double factor) {
    const double first = curves.first().keV, last = curves.last().keV;
    const auto inside = [first, last](double energy) {
      return energy >= first && energy <= last;
    };
    std::optional<Outside> outside;
    Buffer energies{}, logs{}, terms{}, sums{};
    for (std::size_t start = 0; start < keV.size(); start += kBlock) {
      const double* const from = keV.data() + start;
      double* const to = values.data() + start;
      const std::size_t n = std::min(keV.size() - start, kBlock);
      // Whole vectors, of energies that have an answer.
      const std::size_t whole = (n + kLanes - 1) / kLanes * kLanes;
      int good = 1;
      for (std::size_t i = 0; i < n; ++i) {
        energies.at[i] = inside(from[i]) ? from[i] : first;
        good &= inside(from[i]) ? 1 : 0;
      }
      for (std::size_t i = n; i < whole; ++i) energies.at[i] = first;
      logarithms(energies, logs, whole);
      for (std::size_t i = 0; i < whole; i += kLanes) {
        store(sums.at + i, Doubles{});
      }
      for (const auto& term : curves.terms_) {
        cubics(term.curve, energies, logs, terms, whole);
        add(term.weight * factor, terms, sums, whole);
      }
      if (form == Form::kTransmission) transmissions(sums, whole);
      if (good == 0) {
        for (std::size_t i = 0; i < n; ++i) {
          if (inside(from[i])) continue;
          sums.at[i] = std::numeric_limits<double>::quiet_NaN();
          if (!outside) outside = Outside{start + i, {from[i]}};
        }
      }
      std::memcpy(to, sums.at, n * sizeof(double));
    }
    return outside;
  }
};

namespace {

using Evaluate = std::optional<Outside>(const CurveSum&,
                                        std::span<const double>,
                                        std::span<double>, Form, double);

std::optional<Outside> evaluate_anywhere(const CurveSum& curves,
                                         std::span<const double> keV,
                                         std::span<double> values, Form form,
                                         double factor) {
  return Kernel<Two>::evaluate(curves, keV, values, form, factor);
}

#ifdef __x86_64__
[[gnu::target("avx2")]] std::optional<Outside> evaluate_avx2(
    const CurveSum& curves, std::span<const double> keV,
    std::span<double> values, Form form, double factor) {
  return Kernel<Four>::evaluate(curves, keV, values, form, factor);
}
#endif

Evaluate& best_evaluate() {
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx2")) return evaluate_avx2;
#endif
  return evaluate_anywhere;
}

}  // namespace

void CurveSum::add(const Material& material, double factor,
                   Coefficient coefficient, const Data& data) {
  for (const Constituent& part : material.constituents) {
    const Table& table = data.table(part.z);
    const Curve& curve = coefficient == Coefficient::kAttenuation
                             ? table.total
                             : table.absorption;
    const double weight = factor * part.weight;
    const auto same =
        std::find_if(terms_.begin(), terms_.end(),
                     [&curve](const Term& term) { return term.of == &curve; });
    if (same != terms_.end()) {
      same->weight += weight;
      continue;
    }
    terms_.push_back({&curve, weight, ArrayCurve(curve)});
    if (first_z_ == 0 || curve.first() > first_) {
      first_ = curve.first();
      first_z_ = part.z;
    }
    if (last_z_ == 0 || curve.last() < last_) {
      last_ = curve.last();
      last_z_ = part.z;
    }
  }
}

OutsideTable CurveSum::outside(Energy energy) const {
  return {energy < first_ ? first_z_ : last_z_, energy, first_, last_};
}

std::optional<Outside> CurveSum::evaluate(std::span<const double> keV,
                                          std::span<double> values, Form form,
                                          double factor) const noexcept {
  return best_evaluate()(*this, keV, values, form, factor);
}

}  // namespace physics
