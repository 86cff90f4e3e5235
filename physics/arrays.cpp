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

// 2^r for r from -1/2 to 1/2: the polynomial through the zeros of Chebyshev's
// T11, in the 50 digits of mpmath's chebyfit; 3e-16 off at most.
constexpr std::array<double, 11> kPower = {1.0,
                                           0x1.62e42fefa3a19p-1,
                                           0x1.ebfbdff82c598p-3,
                                           0x1.c6b08d703ce49p-5,
                                           0x1.3b2ab6fba1ddap-7,
                                           0x1.5d87fe9d7a584p-10,
                                           0x1.430913096fd9fp-13,
                                           0x1.ffcb54062e698p-17,
                                           0x1.62bfd47773353p-20,
                                           0x1.b675bca4eeebbp-24,
                                           0x1.e6063f7217bc6p-28};

constexpr int kFraction = 52;  // bits of a double behind its exponent

std::uint64_t bits(double keV) { return std::bit_cast<std::uint64_t>(keV); }

// Energies of a cell share the exponent and the first bits of the fraction: 64
// cells an octave, so that few hold more than one end of an interval.
constexpr int kCellShift = kFraction - 6;

// What processors take at once. The numbers of a cubic lie in a row; columns()
// makes vectors of the same number of several cubics.
struct Two {
  using Doubles [[gnu::vector_size(16)]] = double;
  using Bits [[gnu::vector_size(16)]] = std::uint64_t;
  static constexpr std::size_t kLanes = 2;

  template <typename CubicAt>
  INLINE static void columns(CubicAt cubic, Doubles& a, Doubles& b, Doubles& c,
                             Doubles& d, Doubles& x) {
    const Cubic &p = cubic(0), &q = cubic(1);
    a = Doubles{p.a, q.a};
    b = Doubles{p.b, q.b};
    c = Doubles{p.c, q.c};
    d = Doubles{p.d, q.d};
    x = Doubles{p.x, q.x};
  }
};

#ifdef __x86_64__

struct Four {
  using Doubles [[gnu::vector_size(32)]] = double;
  using Bits [[gnu::vector_size(32)]] = std::uint64_t;
  static constexpr std::size_t kLanes = 4;

  // a to d of one cubic.
  INLINE static void row(const Cubic& cubic, Doubles& row) {
    std::memcpy(&row, &cubic, sizeof row);
  }

  template <typename CubicAt>
  INLINE static void columns(CubicAt cubic, Doubles& a, Doubles& b, Doubles& c,
                             Doubles& d, Doubles& x) {
    x = Doubles{cubic(0).x, cubic(1).x, cubic(2).x, cubic(3).x};
    row(cubic(0), a);
    row(cubic(1), b);
    row(cubic(2), c);
    row(cubic(3), d);
    const Doubles ac01 = __builtin_shufflevector(a, b, 0, 4, 2, 6);
    const Doubles bd01 = __builtin_shufflevector(a, b, 1, 5, 3, 7);
    const Doubles ac23 = __builtin_shufflevector(c, d, 0, 4, 2, 6);
    const Doubles bd23 = __builtin_shufflevector(c, d, 1, 5, 3, 7);
    a = __builtin_shufflevector(ac01, ac23, 0, 1, 4, 5);
    b = __builtin_shufflevector(bd01, bd23, 0, 1, 4, 5);
    c = __builtin_shufflevector(ac01, ac23, 2, 3, 6, 7);
    d = __builtin_shufflevector(bd01, bd23, 2, 3, 6, 7);
  }
};

struct Eight {
  using Doubles [[gnu::vector_size(64)]] = double;
  using Bits [[gnu::vector_size(64)]] = std::uint64_t;
  static constexpr std::size_t kLanes = 8;

  // a to d of two cubics.
  INLINE static void rows(const Cubic& low, const Cubic& high, Doubles& rows) {
    Four::Doubles l, h;
    Four::row(low, l);
    Four::row(high, h);
    rows = __builtin_shufflevector(l, h, 0, 1, 2, 3, 4, 5, 6, 7);
  }

  template <typename CubicAt>
  INLINE static void columns(CubicAt cubic, Doubles& a, Doubles& b, Doubles& c,
                             Doubles& d, Doubles& x) {
    x = Doubles{cubic(0).x, cubic(1).x, cubic(2).x, cubic(3).x,
                cubic(4).x, cubic(5).x, cubic(6).x, cubic(7).x};
    rows(cubic(0), cubic(4), a);
    rows(cubic(1), cubic(5), b);
    rows(cubic(2), cubic(6), c);
    rows(cubic(3), cubic(7), d);
    const Doubles ac01 =
        __builtin_shufflevector(a, b, 0, 8, 2, 10, 4, 12, 6, 14);
    const Doubles bd01 =
        __builtin_shufflevector(a, b, 1, 9, 3, 11, 5, 13, 7, 15);
    const Doubles ac23 =
        __builtin_shufflevector(c, d, 0, 8, 2, 10, 4, 12, 6, 14);
    const Doubles bd23 =
        __builtin_shufflevector(c, d, 1, 9, 3, 11, 5, 13, 7, 15);
    a = __builtin_shufflevector(ac01, ac23, 0, 1, 8, 9, 4, 5, 12, 13);
    b = __builtin_shufflevector(bd01, bd23, 0, 1, 8, 9, 4, 5, 12, 13);
    c = __builtin_shufflevector(ac01, ac23, 2, 3, 10, 11, 6, 7, 14, 15);
    d = __builtin_shufflevector(bd01, bd23, 2, 3, 10, 11, 6, 7, 14, 15);
  }
};

#endif

}  // namespace

template <typename Lanes>
struct Kernel {
  using Doubles = typename Lanes::Doubles;
  using Bits = typename Lanes::Bits;
  static constexpr std::size_t kLanes = Lanes::kLanes;

  // So many energies go through one step before the next: enough steps of
  // different energies to keep the processor busy, and all of it in its cache.
  static constexpr std::size_t kBlock = 256;
  struct Buffer {
    alignas(64) double at[kBlock];
  };
  struct Intervals {
    std::uint16_t at[kBlock];
  };

  INLINE static void load(Doubles& to, const double* from) {
    std::memcpy(&to, from, sizeof to);
  }
  INLINE static void store(double* to, const Doubles& from) {
    std::memcpy(to, &from, sizeof from);
  }

  // The whole number in the last bits of this double is exact.
  static constexpr double kOnes = 0x1p52;
  static constexpr std::uint64_t kOnesBits =
      std::bit_cast<std::uint64_t>(kOnes);

  // log2 of positive normal numbers, to 1e-15 absolutely.
  INLINE static void logarithm(const Doubles& value, Doubles& result) {
    // value = 2^k (1 + f), 1 + f from sqrt(1/2) to sqrt(2). With the bias k is
    // positive.
    constexpr std::uint64_t kRootHalf = 0x3fe6a09e667f3bcd;
    constexpr std::uint64_t kBias = 1024;
    const Bits above =
        reinterpret_cast<Bits>(value) + ((kBias << kFraction) - kRootHalf);
    const Doubles k =
        reinterpret_cast<Doubles>((above >> kFraction) | kOnesBits) -
        (kOnes + kBias);
    const Bits fraction = (above & 0xfffffffffffff) + kRootHalf;
    const Doubles f = reinterpret_cast<Doubles>(fraction) - 1.0;
    // log2(1 + f) = s (kLog[0] + z p(z)).
    const Doubles s = f / (f + 2.0), z = s * s, w = z * z;
    const Doubles p = (kLog[1] + z * kLog[2]) +
                      w * ((kLog[3] + z * kLog[4]) +
                           w * ((kLog[5] + z * kLog[6]) + w * kLog[7]));
    result = k + s * (kLog[0] + z * p);
  }

  // 2^x = 2^k y with y from sqrt(1/2) to sqrt(2); `shifted` has k in its last
  // bits.
  INLINE static void reduced_power(const Doubles& x, Doubles& shifted,
                                   Doubles& y) {
    shifted = x + 1.5 * kOnes;
    const Doubles r = x - (shifted - 1.5 * kOnes);
    const Doubles z = r * r, w = z * z;
    y = ((kPower[0] + r * kPower[1]) + z * (kPower[2] + r * kPower[3])) +
        w * (((kPower[4] + r * kPower[5]) + z * (kPower[6] + r * kPower[7])) +
             w * ((kPower[8] + r * kPower[9]) + z * kPower[10]));
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
    // -s / ln 2, its size limited to 1100. By the bits, since g++ 12 takes
    // comparisons of vectors apart.
    constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
    const Bits x = reinterpret_cast<Bits>(s * (-1 / kLn2));
    const Bits spare = std::bit_cast<std::uint64_t>(1100.0) - (x & ~kSign);
    const Bits limited = x + (-(spare >> 63) & spare);
    Doubles shifted, y;
    reduced_power(reinterpret_cast<Doubles>(limited), shifted, y);
    // 2^k in two steps, since neither 2^-1074 nor 2^1024 is a normal number.
    const Bits k = (reinterpret_cast<Bits>(shifted) + 2 * 1024) & 0xfffff;
    const Bits half = k >> 1;
    result = y * reinterpret_cast<Doubles>((half - 1) << kFraction) *
             reinterpret_cast<Doubles>((k - half - 1) << kFraction);
  }

  // Each step for the first n energies of a block.

  // The energies and their logarithms; those outside the range, and what is no
  // number, become `first`. Returns whether there were none.
  INLINE static bool logarithms(const double* from, Buffer& keV, Buffer& logs,
                                std::size_t n, double first, double last) {
    Bits any{};
    for (std::size_t i = 0; i < n; i += kLanes) {
      Doubles value;
      load(value, from + i);
      // One of the differences has its first bit set for whatever is outside.
      const Bits energy = reinterpret_cast<Bits>(value);
      const Bits outside =
          ((energy - bits(first)) | (bits(last) - energy)) >> 63;
      any |= outside;
      value = reinterpret_cast<Doubles>(energy +
                                        (-outside & (bits(first) - energy)));
      store(keV.at + i, value);
      logarithm(value, value);
      store(logs.at + i, value);
    }
    std::uint64_t all = 0;
    for (std::size_t lane = 0; lane < kLanes; ++lane) all |= any[lane];
    return all == 0;
  }
  INLINE static void find(const CurveSum& sum, const Buffer& keV,
                          Intervals& intervals, std::size_t n) {
    // Pointers, since a range check of each would cost as much as the look-up.
    const std::uint16_t* const cells = sum.cells_.data();
    const std::uint64_t* const ends = sum.ends_.data();
    const std::uint64_t first_cell = sum.first_cell_;
#pragma GCC unroll 4
    for (std::size_t i = 0; i < n; ++i) {
      const std::uint64_t energy = std::bit_cast<std::uint64_t>(keV.at[i]);
      std::size_t at = cells[(energy >> kCellShift) - first_cell];
      // Added, since a jump at random costs more; the loop hardly ever runs.
      at += energy >= ends[at] ? 1 : 0;
      while (energy >= ends[at]) [[unlikely]]++ at;
      intervals.at[i] = static_cast<std::uint16_t>(at);
    }
  }
  INLINE static void cubics(const Cubic* cubics, const std::uint8_t* piece,
                            const Intervals& intervals, const Buffer& logs,
                            Buffer& values, std::size_t n) {
    for (std::size_t i = 0; i < n; i += kLanes) {
      Doubles a, b, c, d, x, log;
      Lanes::columns(
          [&](std::size_t lane) -> const Cubic& {
            return cubics[piece[intervals.at[i + lane]]];
          },
          a, b, c, d, x);
      load(log, logs.at + i);
      const Doubles t = log - x;
      store(values.at + i, a + t * (b + t * (c + t * d)));
    }
  }
  // sums = weight * 2^values, or that on top of what is there.
  template <bool kFirst>
  INLINE static void add(double weight, const Buffer& values, double* sums,
                         std::size_t n) {
    for (std::size_t i = 0; i < n; i += kLanes) {
      Doubles value, sum{};
      load(value, values.at + i);
      if constexpr (!kFirst) load(sum, sums + i);
      power(value, value);
      store(sums + i, kFirst ? weight * value : sum + weight * value);
    }
  }
  INLINE static void transmissions(double* sums, std::size_t n) {
    for (std::size_t i = 0; i < n; i += kLanes) {
      Doubles sum;
      load(sum, sums + i);
      transmission(sum, sum);
      store(sums + i, sum);
    }
  }

  INLINE static std::optional<Outside> evaluate(const CurveSum& sum,
                                                std::span<const double> keV,
                                                std::span<double> values,
                                                Form form, double factor) {
    const double first = sum.first().keV, last = sum.last().keV;
    std::optional<Outside> outside;
    // Written before they are read; clearing them would take longer than a
    // short array does. NOLINTBEGIN(cppcoreguidelines-pro-type-member-init)
    Buffer energies, logs, terms, part, typed;
    Intervals intervals;
    // NOLINTEND(cppcoreguidelines-pro-type-member-init)
    for (std::size_t start = 0; start < keV.size(); start += kBlock) {
      const double* from = keV.data() + start;
      double* const to = values.data() + start;
      const std::size_t n = std::min(keV.size() - start, kBlock);
      // A part of a block is filled up to whole vectors.
      const std::size_t whole = (n + kLanes - 1) / kLanes * kLanes;
      if (n < kBlock) {
        std::copy_n(from, n, part.at);
        std::fill(part.at + n, part.at + whole, first);
        from = part.at;
      }
      double* const sums = n < kBlock ? part.at : to;
      const bool good = logarithms(from, energies, logs, whole, first, last);
      // The values may overwrite the energies.
      if (!good) std::copy_n(from, n, typed.at);
      find(sum, energies, intervals, whole);
      if (sum.terms_.empty()) std::fill_n(sums, whole, 0.0);
      for (const auto& term : sum.terms_) {
        cubics(term.curve->pieces().data(), term.pieces.data(), intervals, logs,
               terms, whole);
        if (&term == sum.terms_.data()) {
          add<true>(term.weight * factor, terms, sums, whole);
        } else {
          add<false>(term.weight * factor, terms, sums, whole);
        }
      }
      if (form == Form::kTransmission) transmissions(sums, whole);
      for (std::size_t i = 0; !good && i < n; ++i) {
        if (typed.at[i] >= first && typed.at[i] <= last) continue;
        sums[i] = std::numeric_limits<double>::quiet_NaN();
        if (!outside) outside = Outside{start + i, {typed.at[i]}};
      }
      if (n < kBlock) std::copy_n(sums, n, to);
    }
    return outside;
  }
};

namespace {

std::optional<Outside> evaluate_2(const CurveSum& sum,
                                  std::span<const double> keV,
                                  std::span<double> values, Form form,
                                  double factor) {
  return Kernel<Two>::evaluate(sum, keV, values, form, factor);
}

#ifdef __x86_64__

[[gnu::target("avx2")]] std::optional<Outside> evaluate_4(
    const CurveSum& sum, std::span<const double> keV, std::span<double> values,
    Form form, double factor) {
  return Kernel<Four>::evaluate(sum, keV, values, form, factor);
}

[[gnu::target("avx512f,avx512dq,avx512vl")]] std::optional<Outside> evaluate_8(
    const CurveSum& sum, std::span<const double> keV, std::span<double> values,
    Form form, double factor) {
  return Kernel<Eight>::evaluate(sum, keV, values, form, factor);
}

#endif

}  // namespace

void CurveSum::add(const Material& material, double factor,
                   Coefficient coefficient, const Data& data) {
  for (const Constituent& part : material.constituents) {
    const Table& table = data.table(part.z);
    const Curve& curve = coefficient == Coefficient::kAttenuation
                             ? table.total
                             : table.absorption;
    const double weight = factor * part.weight;
    const auto same = std::find_if(
        terms_.begin(), terms_.end(),
        [&curve](const Term& term) { return term.curve == &curve; });
    if (same != terms_.end()) {
      same->weight += weight;
      continue;
    }
    terms_.push_back({&curve, weight, {}});
    if (first_z_ == 0 || curve.first() > first_) {
      first_ = curve.first();
      first_z_ = part.z;
    }
    if (last_z_ == 0 || curve.last() < last_) {
      last_ = curve.last();
      last_z_ = part.z;
    }
  }
  cut();
}

void CurveSum::cut() {
  ends_.clear();
  for (const Term& term : terms_) {
    for (const Cubic& piece : term.curve->pieces().subspan(1)) {
      ends_.push_back(bits(piece.keV));
    }
  }
  std::sort(ends_.begin(), ends_.end());
  ends_.erase(std::unique(ends_.begin(), ends_.end()), ends_.end());
  ends_.push_back(bits(std::numeric_limits<double>::infinity()));

  for (Term& term : terms_) {
    const auto pieces = term.curve->pieces();
    term.pieces.assign(1, 0);
    for (std::size_t i = 0, piece = 0; i + 1 < ends_.size(); ++i) {
      if (piece + 1 < pieces.size() && bits(pieces[piece + 1].keV) == ends_[i])
        ++piece;
      term.pieces.push_back(static_cast<std::uint8_t>(piece));
    }
  }

  first_cell_ = bits(first_.keV) >> kCellShift;
  cells_.clear();
  std::uint16_t i = 0;
  for (auto cell = first_cell_; cell <= bits(last_.keV) >> kCellShift; ++cell) {
    while (ends_[i] >> kCellShift < cell) ++i;
    cells_.push_back(i);
  }
}

OutsideTable CurveSum::outside(Energy energy) const {
  return {energy < first_ ? first_z_ : last_z_, energy, first_, last_};
}

std::size_t CurveSum::most_lanes() noexcept {
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl"))
    return 8;
  if (__builtin_cpu_supports("avx2")) return 4;
#endif
  return 2;
}

std::optional<Outside> CurveSum::evaluate(std::span<const double> keV,
                                          std::span<double> values, Form form,
                                          double factor,
                                          std::size_t lanes) const noexcept {
#ifdef __x86_64__
  if (lanes >= 8 && most_lanes() >= 8)
    return evaluate_8(*this, keV, values, form, factor);
  if (lanes >= 4 && most_lanes() >= 4)
    return evaluate_4(*this, keV, values, form, factor);
#endif
  return evaluate_2(*this, keV, values, form, factor);
}

}  // namespace physics
