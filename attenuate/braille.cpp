#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "attenuate/layout.h"
#include "attenuate/plot.h"

namespace attenuate {

namespace {

// Signs that stay apart without colours, and colours that can be read on light
// and on dark.
constexpr std::array<const char*, kMaxSeries> kSigns = {"o", "x", "+", "*",
                                                        "#", "@", "%", "&"};
constexpr std::array<const char*, kMaxSeries> kColours = {
    "36", "35", "32", "31", "34", "33", "96", "95"};

struct Cell {
  unsigned dots = 0;
  std::string text;  // in place of the dots
  std::optional<std::size_t> series;
  bool mark = false;  // its dots are those of a mark
};

// Text cells; (0, 0) is at the top left.
class Grid {
 public:
  Grid(int columns, int rows)
      : columns_(columns),
        rows_(rows),
        cells_(static_cast<std::size_t>(columns * rows)) {}

  Cell* at(int column, int row) {
    if (column < 0 || column >= columns_ || row < 0 || row >= rows_)
      return nullptr;
    return &cells_[index(column, row)];
  }

  void write(int column, int row, const std::string& text) {
    std::string character;
    for (const char c : text) {
      if (!character.empty() &&
          (static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
        put(column++, row, character);
        character.clear();
      }
      character += c;
    }
    if (!character.empty()) put(column, row, character);
  }

  void put(int column, int row, const std::string& character) {
    if (Cell* const cell = at(column, row)) cell->text = character;
  }

  void colour(int column, int row, std::size_t series) {
    if (Cell* const cell = at(column, row)) cell->series = series;
  }

  std::string text(bool colour) const {
    std::string result;
    for (int row = 0; row < rows_; ++row) {
      std::string line;
      std::size_t end = 0;  // behind the last cell that is not blank
      std::optional<std::size_t> now;
      for (int column = 0; column < columns_; ++column) {
        const Cell& cell = cells_[index(column, row)];
        const bool blank = cell.text.empty() && cell.dots == 0;
        if (colour && !blank && cell.series != now) {
          line += cell.series
                      ? "\033[" + std::string(kColours[*cell.series]) + "m"
                      : "\033[0m";
          now = cell.series;
        }
        line += !cell.text.empty() ? cell.text
                : cell.dots != 0   ? dots(cell.dots)
                                   : " ";
        if (!blank && cell.text != " ") end = line.size();
      }
      line.resize(end);
      if (now) line += "\033[0m";
      result += line + '\n';
    }
    return result;
  }

 private:
  std::size_t index(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(column);
  }

  // The character U+2800 + `pattern` in UTF-8.
  static std::string dots(unsigned pattern) {
    return {'\xE2', static_cast<char>(0xA0U | pattern >> 6U),
            static_cast<char>(0x80U | (pattern & 0x3FU))};
  }

  int columns_, rows_;
  std::vector<Cell> cells_;
};

// The panel within the grid, in dots: two a column, four a row.
class Panel {
 public:
  Panel(Grid& grid, int left, int top, int columns, int rows)
      : grid_(&grid), left_(left), top_(top), columns_(columns), rows_(rows) {}

  int dots_across() const { return 2 * columns_; }
  int dots_down() const { return 4 * rows_; }

  // From 0 to 1 to dots; y upwards.
  int across(double x) const { return to_dot(x, dots_across()); }
  int down(double y) const { return to_dot(1.0 - y, dots_down()); }

  Cell* cell(int across, int down) const {
    return grid_->at(left_ + across / 2, top_ + down / 4);
  }

  void dot(int across, int down, std::optional<std::size_t> series) const {
    // Bits of U+2800, by column and row of the dot.
    static constexpr unsigned kBits[2][4] = {{0x01, 0x02, 0x04, 0x40},
                                             {0x08, 0x10, 0x20, 0x80}};
    Cell* const here = cell(across, down);
    if (here == nullptr) return;
    // A curve in front of a mark: the cell is the curve's.
    if (series && here->mark) {
      here->dots = 0;
      here->mark = false;
    }
    if (!series) here->mark = true;
    here->dots |= kBits[across % 2][down % 4];
    if (series) here->series = series;
  }

  // Bresenham.
  void line(int x, int y, int to_x, int to_y, std::size_t series) const {
    const int dx = std::abs(to_x - x);
    const int dy = -std::abs(to_y - y);
    int error = dx + dy;
    for (;;) {
      dot(x, y, series);
      if (x == to_x && y == to_y) return;
      const int twice = 2 * error;
      if (twice >= dy) {
        error += dy;
        x += x < to_x ? 1 : -1;
      }
      if (twice <= dx) {
        error += dx;
        y += y < to_y ? 1 : -1;
      }
    }
  }

 private:
  static int to_dot(double part, int count) {
    return std::clamp(static_cast<int>(std::floor(part * count)), 0, count - 1);
  }

  Grid* grid_;
  int left_, top_, columns_, rows_;
};

// Entries one behind the other, in lines of at most `columns`.
std::vector<std::vector<std::size_t>> wrapped(
    const std::vector<std::string>& entries, int columns, int apart) {
  std::vector<std::vector<std::size_t>> lines;
  int used = columns;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const int needed = width(entries[i]) + apart;
    if (lines.empty() || used + needed > columns) {
      lines.emplace_back();
      used = 0;
    }
    lines.back().push_back(i);
    used += needed;
  }
  return lines;
}

// A sign on the curve in about every fourth part of the width; those of other
// curves elsewhere, so that they do not cover each other.
void put_signs(const Panel& panel, const Series& series, const Scales& scales,
               std::size_t number, std::size_t count) {
  constexpr int kPlaces = 4;
  for (int place = 0; place < kPlaces; ++place) {
    const double x = (place + (static_cast<double>(number) + 0.5) /
                                  static_cast<double>(count)) /
                     kPlaces;
    bool done = false;
    for_each_line(series, scales, [&](Point a, Point b) {
      if (done || x < std::min(a.x, b.x) || x > std::max(a.x, b.x)) return;
      const double y =
          a.x == b.x ? b.y : a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x);
      Cell* const cell = panel.cell(panel.across(x), panel.down(y));
      if (cell == nullptr || !cell->text.empty()) return;
      cell->text = kSigns[number];
      cell->series = number;
      done = true;
    });
  }
}

// "╞═══ name ═══╡", the name beside it where it is longer than the band.
void put_band(Grid& grid, int from, int to, int row, int left, int right,
              const std::string& name) {
  grid.put(from, row, "╞");
  for (int i = from + 1; i < to; ++i) grid.put(i, row, "═");
  grid.put(to, row, "╡");
  const int length = width(name);
  int at = from + (to - from + 1 - length) / 2;
  if (length + 4 > to - from) {
    at = to + 2 + length <= right ? to + 2 : std::max(left, from - 1 - length);
    grid.write(at, row, name);
  } else {
    grid.write(at - 1, row, " " + name + " ");
  }
}

}  // namespace

std::string braille(const Figure& figure, const Canvas& canvas) {
  const Scales scale = scales(figure);
  const int columns = std::max(canvas.columns, 40);
  const int rows = std::max(canvas.rows, 16);
  Grid grid(columns, rows);

  const std::vector<Tick> y_ticks =
      ticks(scale.y, std::min((rows - 10) / 2, 8));
  int left = 0;
  for (const Tick& tick : y_ticks) left = std::max(left, width(tick.label));
  left += 2;  // a blank and the frame
  const int across = columns - left - 1;

  const auto length = [](const std::string& text) {
    return static_cast<double>(width(text));
  };
  const Labels labels =
      place_labels(figure.marks, scale.x, across, 0.0, across, 3, length);

  std::vector<std::string> legend;
  const bool signs = figure.series.size() > 1;
  if (signs) {
    for (std::size_t i = 0; i < figure.series.size(); ++i) {
      legend.push_back(shortened(
          std::string(kSigns[i]) + " " + figure.series[i].name, columns - 4));
    }
  }
  if (!labels.left_over.empty()) {
    std::string more = "not named above:";
    for (const std::string& text : labels.left_over) more += " " + text + ",";
    more.pop_back();
    legend.push_back(shortened(more, columns - 4));
  }
  const auto legend_lines = wrapped(legend, columns - 2, 3);

  const int bands = static_cast<int>(figure.bands.size());
  const int top = 2 + labels.rows + bands;
  const int bottom = 3 + static_cast<int>(legend_lines.size()) +
                     (figure.origin.empty() ? 0 : 1);
  const int down = std::max(rows - top - bottom, 4);
  const Panel panel(grid, left, top, across, down);

  grid.write(std::max(0, (columns - width(figure.title)) / 2), 0,
             shortened(figure.title, columns));
  grid.write(0, 1, shortened(axis_label(figure.y), columns));
  for (const Label& label : labels.placed) {
    grid.write(left + static_cast<int>(std::lround(label.left)),
               1 + labels.rows - label.row, label.text);
  }
  const auto column = [&](double x) {
    return left + panel.across(scale.x.position(x)) / 2;
  };
  for (std::size_t i = 0; i < figure.bands.size(); ++i) {
    const Band& band = figure.bands[i];
    put_band(grid, column(std::max(band.from, scale.x.low)),
             column(std::min(band.to, scale.x.high)),
             2 + labels.rows + static_cast<int>(i), left, columns, band.name);
  }

  for (const Mark& mark : figure.marks) {
    const double position = scale.x.position(mark.x);
    if (position < 0.0 || position > 1.0) continue;
    for (int i = 1; i < panel.dots_down(); i += 4)
      panel.dot(panel.across(position), i, {});
  }
  for (std::size_t i = 0; i < figure.series.size(); ++i) {
    for_each_line(figure.series[i], scale, [&](Point a, Point b) {
      panel.line(panel.across(a.x), panel.down(a.y), panel.across(b.x),
                 panel.down(b.y), i);
    });
  }
  if (signs) {
    for (std::size_t i = 0; i < figure.series.size(); ++i)
      put_signs(panel, figure.series[i], scale, i, figure.series.size());
  }

  for (int i = 0; i < down; ++i) grid.put(left - 1, top + i, "│");
  for (const Tick& tick : y_ticks) {
    const bool power =
        scale.y.logarithmic &&
        std::abs(std::remainder(std::log10(tick.value), 1.0)) < 1e-6;
    if (tick.label.empty() && !power) continue;
    const int row = top + panel.down(scale.y.position(tick.value)) / 4;
    grid.write(left - 2 - width(tick.label), row, tick.label);
    grid.put(left - 1, row, "┤");
  }

  const int axis = top + down;
  grid.put(left - 1, axis, "└");
  for (int i = 0; i < across; ++i) grid.put(left + i, axis, "─");
  int free = 0;  // behind the last label
  for (const Tick& tick : ticks(scale.x, across / 9)) {
    const int at = column(tick.value);
    const int wide = width(tick.label);
    const int start = std::min(at - wide / 2, columns - wide);
    if (tick.label.empty() || start < free) continue;
    grid.put(at, axis, "┬");
    grid.write(start, axis + 1, tick.label);
    free = start + wide + 1;
  }
  const std::string x_label = shortened(axis_label(figure.x), across);
  grid.write(left + (across - width(x_label)) / 2, axis + 2, x_label);

  int row = axis + 3;
  for (const auto& line : legend_lines) {
    int at = 2;
    for (const std::size_t entry : line) {
      grid.write(at, row, legend[entry]);
      if (entry < figure.series.size() && signs) {
        for (int i = 0; i < width(legend[entry]); ++i)
          grid.colour(at + i, row, entry);
      }
      at += width(legend[entry]) + 3;
    }
    ++row;
  }
  if (!figure.origin.empty())
    grid.write(0, row, shortened(figure.origin, columns));
  return grid.text(canvas.colour);
}

}  // namespace attenuate
