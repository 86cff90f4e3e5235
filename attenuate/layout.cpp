#include "attenuate/layout.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "physics/errors.h"

namespace attenuate {

namespace {

// Round numbers are found with a little slack, since 3 * 0.1 is not 0.3.
constexpr double kSlack = 1e-9;

double power_of_ten(int exponent) { return std::pow(10.0, exponent); }

// The smallest 1, 2 or 5 times a power of ten that is not below `least`.
double round_step(double least) {
  const double power =
      power_of_ten(static_cast<int>(std::floor(std::log10(least))));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least * (1.0 - kSlack)) return factor * power;
  }
  return 10.0 * power;
}

std::string superscript(int number) {
  static constexpr std::array<const char*, 10> kDigits = {
      "⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
  std::string result = number < 0 ? "⁻" : "";
  for (const char digit : std::to_string(std::abs(number)))
    result += kDigits[static_cast<std::size_t>(digit - '0')];
  return result;
}

std::string fixed(double value, int decimals) {
  std::array<char, 64> text{};
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), value,
                    std::chars_format::fixed, decimals);
  return {text.data(), end};
}

// A value whose last digit that counts is at 10^exponent.
std::string tick_label(double value, int exponent) {
  if (value == 0.0) return "0";
  const int magnitude =
      static_cast<int>(std::floor(std::log10(std::abs(value)) + kSlack));
  if (magnitude < 5 && exponent > -5)
    return fixed(value, std::max(0, -exponent));
  // Steps that are small beside the value: a power would only be longer.
  if (magnitude < 5 && magnitude > -3) return fixed(value, -exponent);
  const std::string mantissa =
      fixed(value / power_of_ten(magnitude), std::max(0, magnitude - exponent));
  const std::string power = "10" + superscript(magnitude);
  return mantissa == "1" ? power : mantissa + "·" + power;
}

std::vector<Tick> linear_ticks(const Scale& scale, int most) {
  std::vector<Tick> result;
  const double step = round_step((scale.high - scale.low) / most);
  const int exponent = static_cast<int>(std::floor(std::log10(step) + kSlack));
  const double first = std::ceil(scale.low / step - kSlack);
  const double last = std::floor(scale.high / step + kSlack);
  for (int i = 0; i <= static_cast<int>(last - first); ++i) {
    const double value = (first + i) * step;
    result.push_back({value, tick_label(value, exponent)});
  }
  return result;
}

std::vector<Tick> log_ticks(const Scale& scale, int most) {
  const int first = static_cast<int>(std::ceil(std::log10(scale.low) - kSlack));
  const int last =
      static_cast<int>(std::floor(std::log10(scale.high) + kSlack));
  const int powers = last - first + 1;
  const auto inside = [&](double value) {
    return value >= scale.low * (1.0 - kSlack) &&
           value <= scale.high * (1.0 + kSlack);
  };
  // Within less than a decade or so, steps of equal size read better.
  int with_125 = 0;
  int with_all = 0;
  for (int k = first - 1; k <= last; ++k) {
    for (int factor = 1; factor <= 9; ++factor) {
      if (!inside(factor * power_of_ten(k))) continue;
      ++with_all;
      if (factor == 1 || factor == 2 || factor == 5) ++with_125;
    }
  }
  if (with_125 < 3) return linear_ticks(scale, most);

  std::vector<Tick> result;
  const bool all_125 = with_125 <= most;
  const int stride = std::max(1, (powers + most - 1) / most);
  for (int k = first - 1; k <= last; ++k) {
    for (int factor = 1; factor <= 9; ++factor) {
      const double value = factor * power_of_ten(k);
      if (!inside(value)) continue;
      const bool major = with_all <= most ||
                         (all_125 ? factor == 1 || factor == 2 || factor == 5
                                  : factor == 1 && (k - first) % stride == 0);
      // The powers of ten between labels stay; finer ones would crowd.
      if (!major && stride > 1 && factor != 1) continue;
      result.push_back({value, major ? tick_label(value, k) : ""});
    }
  }
  return result;
}

struct Range {
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();

  void add(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
  bool empty() const { return !(low < high); }
};

bool drawable(const Axis& axis, double value) {
  return std::isfinite(value) && (!axis.logarithmic || value > 0.0);
}

bool drawable(const Figure& figure, Point point) {
  return drawable(figure.x, point.x) && drawable(figure.y, point.y);
}

// y from the foot or ceiling of the curves to round numbers.
Scale rounded_out(Range range, bool logarithmic) {
  if (range.empty()) {
    // A level line in the middle of its panel.
    const double around = range.low == 0.0 ? 1.0 : std::abs(range.low) * 0.5;
    range = {range.low - around, range.high + around};
  }
  if (logarithmic) {
    const auto out = [](double value, bool up) {
      const double power = power_of_ten(
          static_cast<int>(std::floor(std::log10(value) + kSlack)));
      const double part = value / power;
      if (up) {
        for (const double factor : {1.0, 2.0, 5.0})
          if (factor >= part * (1.0 - kSlack)) return factor * power;
        return 10.0 * power;
      }
      for (const double factor : {5.0, 2.0})
        if (factor <= part * (1.0 + kSlack)) return factor * power;
      return power;
    };
    return {out(range.low, false), out(range.high, true), true};
  }
  // The foot of a quantity that cannot be negative is 0, unless all of the
  // figure happens far above.
  if (range.low > 0.0 && range.low < 0.5 * range.high) range.low = 0.0;
  const double step = round_step((range.high - range.low) / 5.0);
  return {std::floor(range.low / step + kSlack) * step,
          std::ceil(range.high / step - kSlack) * step, false};
}

}  // namespace

double Scale::position(double value) const {
  if (logarithmic) return std::log(value / low) / std::log(high / low);
  return (value - low) / (high - low);
}

std::vector<Tick> ticks(const Scale& scale, int most) {
  return scale.logarithmic ? log_ticks(scale, most) : linear_ticks(scale, most);
}

Scales scales(const Figure& figure) {
  if (figure.series.size() > kMaxSeries) {
    throw physics::InputError(
        std::to_string(figure.series.size()) + " curves in one figure, more " +
            "than " + std::to_string(kMaxSeries) + " cannot be told apart",
        0, "several figures");
  }
  Range x;
  Range y;
  for (const Series& series : figure.series) {
    for (const Point& point : series.points) {
      if (!drawable(figure, point)) continue;
      x.add(point.x);
      y.add(point.y);
      if (series.sticks && !figure.y.logarithmic) y.add(0.0);
    }
  }
  if (x.empty()) {
    throw physics::InputError("nothing to plot: a curve needs two points", 0,
                              "a range, such as 5:30:0.5");
  }
  Scales result{{x.low, x.high, figure.x.logarithmic},
                rounded_out(y, figure.y.logarithmic)};
  return result;
}

std::string axis_label(const Axis& axis) {
  return axis.unit.empty() ? axis.name : axis.name + " in " + axis.unit;
}

int width(std::string_view text) {
  return static_cast<int>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

std::string shortened(std::string_view text, int columns) {
  if (width(text) <= columns) return std::string(text);
  std::string result;
  int used = 0;
  for (const char c : text) {
    if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U && ++used >= columns)
      break;
    result += c;
  }
  return result + "…";
}

std::optional<std::pair<Point, Point>> clipped(Point a, Point b) {
  // Liang and Barsky: the line is a + t (b - a), t from 0 to 1.
  double from = 0.0;
  double to = 1.0;
  const double dx = b.x - a.x;
  const double dy = b.y - a.y;
  for (const auto& [p, q] : {std::pair{-dx, a.x}, std::pair{dx, 1.0 - a.x},
                             std::pair{-dy, a.y}, std::pair{dy, 1.0 - a.y}}) {
    if (p == 0.0) {
      if (q < 0.0) return {};
    } else if (p < 0.0) {
      from = std::max(from, q / p);
    } else {
      to = std::min(to, q / p);
    }
  }
  if (from > to) return {};
  return std::pair{Point{a.x + from * dx, a.y + from * dy},
                   Point{a.x + to * dx, a.y + to * dy}};
}

void for_each_line(const Series& series, const Scales& scales,
                   const std::function<void(Point, Point)>& line) {
  const auto placed = [&](Point point) {
    return Point{scales.x.position(point.x), scales.y.position(point.y)};
  };
  const auto finite = [](Point point) {
    return std::isfinite(point.x) && std::isfinite(point.y);
  };
  std::optional<Point> before;
  for (const Point& point : series.points) {
    const Point here = placed(point);
    if (series.sticks && finite(here)) before = Point{here.x, 0.0};
    if (before && finite(here)) {
      if (const auto part = clipped(*before, here))
        line(part->first, part->second);
    }
    before.reset();
    if (finite(here)) before = here;
  }
}

Labels place_labels(const std::vector<Mark>& marks, const Scale& x,
                    double extent, double least, double most, int rows,
                    const std::function<double(const std::string&)>& length) {
  struct Cluster {
    double first = 0.0;
    double last = 0.0;
    std::string group, text;
  };
  std::vector<Mark> sorted;
  for (const Mark& mark : marks) {
    const double position = x.position(mark.x);
    if (position >= 0.0 && position <= 1.0) sorted.push_back(mark);
  }
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const Mark& a, const Mark& b) { return a.x < b.x; });
  std::vector<Cluster> clusters;
  for (const Mark& mark : sorted) {
    const double at = x.position(mark.x) * extent;
    const std::string text =
        mark.group.empty() ? mark.name : mark.group + " " + mark.name;
    if (!mark.group.empty()) {
      const auto near = std::find_if(
          clusters.begin(), clusters.end(), [&](const Cluster& cluster) {
            return cluster.group == mark.group &&
                   at - (cluster.first + cluster.last) / 2.0 <
                       (length(cluster.text) + length(text)) / 2.0 +
                           length("n");
          });
      if (near != clusters.end()) {
        near->last = at;
        near->text += " " + mark.name;
        continue;
      }
    }
    clusters.push_back({at, at, mark.group, text});
  }

  Labels result;
  std::vector<double> ends(static_cast<std::size_t>(rows),
                           -std::numeric_limits<double>::infinity());
  for (const Cluster& cluster : clusters) {
    const double wide = length(cluster.text);
    const double left = std::max(
        least,
        std::min((cluster.first + cluster.last - wide) / 2.0, most - wide));
    const auto row = std::find_if(ends.begin(), ends.end(), [&](double end) {
      return end + length("n") <= left;
    });
    if (row == ends.end()) {
      result.left_over.push_back(cluster.text);
      continue;
    }
    *row = left + wide;
    const int number = static_cast<int>(row - ends.begin());
    result.placed.push_back({cluster.text, left, number});
    result.rows = std::max(result.rows, number + 1);
  }
  return result;
}

}  // namespace attenuate
