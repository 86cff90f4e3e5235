#include "attenuate/plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "attenuate/layout.h"
#include "physics/errors.h"

namespace {

using attenuate::Figure;
using attenuate::Point;

std::string labels_of(const attenuate::Scale& scale, int most) {
  std::string result;
  for (const auto& tick : attenuate::ticks(scale, most)) {
    if (!tick.label.empty()) result += tick.label + ' ';
  }
  return result;
}

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

Figure powers(std::size_t series) {
  Figure figure;
  figure.title = "Powers";
  figure.x = {"energy", "keV", true};
  figure.y = {"mu/rho", "cm²/g", true};
  for (std::size_t i = 0; i < series; ++i) {
    figure.series.push_back({"curve " + std::to_string(i), {}});
    for (double x = 1.0; x < 1000.0; x *= 1.1) {
      figure.series[i].points.push_back(
          {x, 1e4 * std::pow(x, -3.0 + 0.2 * static_cast<double>(i))});
    }
  }
  figure.origin = "attenuate, tables, rule";
  return figure;
}

TEST(Ticks, StandAtRoundNumbers) {
  const struct {
    attenuate::Scale scale;
    int most;
    const char* labels;
  } cases[] = {
      {{0.0, 1.0, false}, 5, "0 0.2 0.4 0.6 0.8 1.0 "},
      {{0.0, 60.0, false}, 8, "0 10 20 30 40 50 60 "},
      {{5.3, 5.34, false}, 5, "5.30 5.31 5.32 5.33 5.34 "},
      {{0.99995, 0.99999, false}, 2, "0.99996 0.99998 "},
      {{-3e-7, 3e-7, false}, 3, "-2·10⁻⁷ 0 2·10⁻⁷ "},
      {{0.0, 3e6, false}, 4, "0 10⁶ 2·10⁶ 3·10⁶ "},
      {{1.0, 1000.0, true}, 10, "1 2 5 10 20 50 100 200 500 1000 "},
      {{1.0, 1000.0, true}, 5, "1 10 100 1000 "},
      {{1e-8, 1e8, true}, 5, "10⁻⁸ 0.0001 1 10000 10⁸ "},
      {{5.0, 30.0, true}, 5, "5 10 20 "},
      {{5.0, 30.0, true}, 8, "5 6 7 8 9 10 20 30 "},
      // Less than a decade: steps of equal size.
      {{6.9, 7.4, true}, 6, "6.9 7.0 7.1 7.2 7.3 7.4 "},
  };
  for (const auto& c : cases)
    EXPECT_EQ(labels_of(c.scale, c.most), c.labels) << c.scale.high;
}

TEST(Figure, LinesEndAtTheFrame) {
  const struct {
    Point a, b;
    bool seen;
    Point from, to;
  } cases[] = {
      {{0.2, 0.2}, {0.8, 0.4}, true, {0.2, 0.2}, {0.8, 0.4}},
      {{-1, 0.5}, {2, 0.5}, true, {0, 0.5}, {1, 0.5}},
      {{0.5, 2}, {0.5, -1}, true, {0.5, 1}, {0.5, 0}},
      {{-0.5, 0}, {0.5, 1}, true, {0, 0.5}, {0.5, 1}},
      {{-0.5, 0.8}, {0.3, 1.6}, false, {}, {}},
      {{-1, 2}, {2, 2}, false, {}, {}},
      {{2, 0}, {2, 1}, false, {}, {}},
  };
  for (const auto& c : cases) {
    const auto part = attenuate::clipped(c.a, c.b);
    ASSERT_EQ(part.has_value(), c.seen) << c.a.x << ' ' << c.a.y;
    if (!part) continue;
    EXPECT_NEAR(part->first.x, c.from.x, 1e-12);
    EXPECT_NEAR(part->first.y, c.from.y, 1e-12);
    EXPECT_NEAR(part->second.x, c.to.x, 1e-12);
    EXPECT_NEAR(part->second.y, c.to.y, 1e-12);
  }
}

TEST(Figure, EmptyPanelsAreRefused) {
  const double nan = std::nan("");
  Figure figure;
  figure.y.logarithmic = true;
  for (const std::vector<Point>& points :
       std::vector<std::vector<Point>>{{},
                                       {{1, 1}},
                                       {{1, 1}, {1, 2}},
                                       {{1, nan}, {2, nan}},
                                       {{1, 0}, {2, -1}},
                                       {{1, 1}, {2, 0}}}) {
    figure.series = {{"", points}};
    EXPECT_THROW(attenuate::braille(figure, {}), physics::InputError);
    EXPECT_THROW(attenuate::svg(figure), physics::InputError);
  }
  EXPECT_THROW(attenuate::svg(powers(attenuate::kMaxSeries + 1)),
               physics::InputError);
}

TEST(Figure, MarksThatLieCloseShareALabelAndNoneOverlap) {
  const attenuate::Scale scale{0.0, 100.0, false};
  const auto length = [](const std::string& text) {
    return static_cast<double>(text.size());
  };
  const std::vector<attenuate::Mark> marks = {
      {48, "Pb", "L1"}, {45, "Pb", "L2"}, {40, "Pb", "L3"},
      {90, "Pb", "K"},  {44, "Fe", "K"},  {45, "Co", "K"},
      {46, "Ni", "K"},  {99, "", "best"}, {101, "U", "K"},
  };
  const auto labels =
      attenuate::place_labels(marks, scale, 100, 0, 100, 2, length);
  std::string text;
  for (const auto& label : labels.placed) {
    text += label.text + ' ' + std::to_string(label.row) + '|';
    EXPECT_GE(label.left, 0.0);
    EXPECT_LE(label.left + length(label.text), 100.0);
    for (const auto& other : labels.placed) {
      if (&other == &label || other.row != label.row) continue;
      EXPECT_TRUE(label.left + length(label.text) < other.left ||
                  other.left + length(other.text) < label.left);
    }
  }
  EXPECT_EQ(text, "Pb L3 L2 L1 0|Fe K 1|Pb K 0|best 0|");
  EXPECT_EQ(labels.left_over, (std::vector<std::string>{"Co K", "Ni K"}));
}

TEST(Braille, SmallFigure) {
  Figure figure;
  figure.title = "T over d";
  figure.x = {"d", "um"};
  figure.y = {"T", ""};
  figure.series = {{"", {{0, 1}, {10, 0}}}};
  figure.marks = {{5, "", "half"}};
  figure.bands = {{2, 8, "rule"}};
  figure.origin = "origin";
  EXPECT_EQ(attenuate::braille(figure, {40, 16, false}),
            "                T over d\n"
            "T\n"
            "                    half\n"
            "           ╞═══════ rule ═══════╡\n"
            "1.0 ┤⠉⠒⠤⣀             ⠂\n"
            "    │    ⠉⠒⠤⢄⡀        ⠂\n"
            "    │        ⠈⠑⠢⢄⡀    ⠂\n"
            "    │            ⠈⠉⠒⠤⣀⠂\n"
            "0.5 ┤                 ⠉⠒⠤⣀⡀\n"
            "    │                 ⠂   ⠈⠑⠢⢄⡀\n"
            "    │                 ⠂       ⠈⠑⠒⠤⣀\n"
            "  0 ┤                 ⠂            ⠉⠒⠤⣀\n"
            "    └┬────────────────┬───────────────┬\n"
            "     0                5              10\n"
            "                  d in um\n"
            "origin\n");
}

TEST(Braille, FitsItsCanvasAndColoursChangeNothingElse) {
  for (const attenuate::Canvas& canvas : std::vector<attenuate::Canvas>{
           {80, 23}, {40, 16}, {120, 39}, {301, 100}}) {
    Figure figure = powers(attenuate::kMaxSeries);
    for (double x = 1.0; x < 1000.0; x *= 1.3)
      figure.marks.push_back({x, "U" + std::to_string(x), "M5"});
    figure.bands = {{-5, 2, "a range that begins outside"}, {900, 5000, "b"}};
    const std::string plain = attenuate::braille(figure, canvas);
    const auto lines = lines_of(plain);
    EXPECT_EQ(static_cast<int>(lines.size()), canvas.rows);
    for (const std::string& line : lines)
      EXPECT_LE(attenuate::width(line), canvas.columns) << line;
    const std::string colourful =
        attenuate::braille(figure, {canvas.columns, canvas.rows, true});
    EXPECT_NE(colourful, plain);
    EXPECT_EQ(std::regex_replace(colourful, std::regex("\033\\[[0-9]*m"), ""),
              plain);
    for (const char* sign : {"o", "x", "+", "*", "#", "@", "%", "&"})
      EXPECT_GE(std::count(plain.begin(), plain.end(), *sign), 2) << sign;
  }
}

TEST(Svg, HoldsTextEscapedAndNothingActive) {
  Figure figure = powers(2);
  figure.title = "a <b> & \"c\"\x01";
  figure.series[0].name = "<script>alert(1)</script>";
  figure.marks = {{7.1, "", "--><&"}};
  figure.bands = {{2, 3, "<"}};
  const std::string text = attenuate::svg(figure);
  EXPECT_NE(text.find("a &lt;b&gt; &amp; &quot;c&quot; </title>"),
            std::string::npos);
  for (const char* active : {"<script", "href", "url(", "--><", "\x01"})
    EXPECT_EQ(text.find(active), std::string::npos) << active;
  // Every coordinate of a curve within the figure.
  const std::regex pair("[ML]([-0-9.e]+) ([-0-9.e]+)");
  const auto end = std::sregex_iterator();
  for (auto i = std::sregex_iterator(text.begin(), text.end(), pair); i != end;
       ++i) {
    EXPECT_TRUE(std::stod((*i)[1]) >= 0 && std::stod((*i)[1]) <= 800);
    EXPECT_TRUE(std::stod((*i)[2]) >= 0 && std::stod((*i)[2]) <= 520);
  }
}

}  // namespace
