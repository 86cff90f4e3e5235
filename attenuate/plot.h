// Figures as values, drawn for a terminal or as SVG.

#ifndef ATTENUATE_PLOT_H_
#define ATTENUATE_PLOT_H_

#include <cstddef>
#include <string>
#include <vector>

namespace attenuate {

struct Point {
  double x = 0.0;
  double y = 0.0;
};

struct Axis {
  std::string name;  // "energy"
  std::string unit;  // "keV"; blank for a bare number
  bool logarithmic = false;
};

// A curve. Points that are not finite, or not above 0 on a logarithmic axis,
// interrupt it.
struct Series {
  std::string name;  // in the legend
  std::vector<Point> points;
  bool sticks = false;  // a line from the foot for each point, no curve
};

// A vertical line with a name above the frame: an edge, an optimum. Marks of
// one group that lie too close share a label: "Pb L3 L2".
struct Mark {
  double x = 0.0;
  std::string group;  // "Pb"; may be blank
  std::string name;   // "L3"
};

// A range of x with a name.
struct Band {
  double from = 0.0;
  double to = 0.0;
  std::string name;
};

struct Figure {
  std::string title;
  Axis x, y;
  std::vector<Series> series;
  std::vector<Mark> marks;
  std::vector<Band> bands;
  std::string origin;  // what computed it, from which tables
};

// More curves than these could not be told apart.
inline constexpr std::size_t kMaxSeries = 8;

struct Canvas {
  int columns = 80;  // at least 40
  int rows = 23;     // of the whole figure, at least 16
  bool colour = false;
};

// The figure in braille dots, `canvas.rows` lines of at most `canvas.columns`.
// Without colour it is the same text but for the escape sequences.
// Throws physics::InputError: nothing could be seen in it (no curve of two
// points that differ), or more than kMaxSeries curves.
std::string braille(const Figure& figure, const Canvas& canvas);

// The figure as an SVG document of fixed size, without scripts or anything from
// elsewhere. Where the viewer prefers dark, it is light on dark.
// Throws like braille().
std::string svg(const Figure& figure);

}  // namespace attenuate

#endif  // ATTENUATE_PLOT_H_
