// What both renderers of a figure share: scales, ticks, places for labels.

#ifndef ATTENUATE_LAYOUT_H_
#define ATTENUATE_LAYOUT_H_

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "attenuate/plot.h"

namespace attenuate {

// An axis with its ends; maps to 0 .. 1.
struct Scale {
  double low = 0.0;
  double high = 1.0;
  bool logarithmic = false;

  double position(double value) const;
};

struct Tick {
  double value = 0.0;
  std::string label;  // blank for a minor one
};

// At most `most` ticks with labels (at least 2 where the scale allows it), at
// round numbers within the scale, and minor ones on logarithmic scales.
std::vector<Tick> ticks(const Scale& scale, int most);

// The scales of a figure: x just as far as the curves go, y to round numbers.
// Throws physics::InputError as braille() does.
struct Scales {
  Scale x, y;
};
Scales scales(const Figure& figure);

// "energy in keV"
std::string axis_label(const Axis& axis);

// Characters, that is code points.
int width(std::string_view text);

// At most `columns` characters, the last an ellipsis where some are cut off.
std::string shortened(std::string_view text, int columns);

// The part of a line within the unit square; nothing if none is.
std::optional<std::pair<Point, Point>> clipped(Point a, Point b);

// The lines of a curve within the unit square.
void for_each_line(const Series& series, const Scales& scales,
                   const std::function<void(Point, Point)>& line);

// A label of one or more marks, above the frame.
struct Label {
  std::string text;
  double left = 0.0;
  int row = 0;  // 0 next to the frame
};

// Places for the labels of all marks within the frame, in units of the caller:
// the frame reaches from 0 to `extent`, labels may reach from `least` to
// `most`. What has no place in `rows` rows is returned without one in
// `left_over`.
struct Labels {
  std::vector<Label> placed;
  std::vector<std::string> left_over;
  int rows = 0;
};
Labels place_labels(const std::vector<Mark>& marks, const Scale& x,
                    double extent, double least, double most, int rows,
                    const std::function<double(const std::string&)>& length);

}  // namespace attenuate

#endif  // ATTENUATE_LAYOUT_H_
