#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "attenuate/layout.h"
#include "attenuate/plot.h"

namespace attenuate {

namespace {

constexpr double kWidth = 800.0;
constexpr double kHeight = 520.0;
constexpr double kLeft = 84.0;
constexpr double kRight = 776.0;
constexpr double kLineHeight = 17.0;
constexpr double kAxisName = 20.0;  // of the vertical axis
constexpr double kTickGap = 9.0;    // from a number to its axis

// Colours that people with impaired colour vision tell apart (after M. Okabe
// and K. Ito), for light and dark ground, and dashes for prints without colour.
struct Style {
  const char* light;
  const char* dark;
  const char* dashes;
};
constexpr std::array<Style, kMaxSeries> kStyles = {{
    {"#0064a8", "#5ab4ff", "none"},
    {"#c24a00", "#ff9a4d", "9 4"},
    {"#00805c", "#3fd6a5", "2 3"},
    {"#a5478a", "#e79bd0", "10 3 2 3"},
    {"#8a6500", "#f0c94a", "5 3"},
    {"#35739c", "#9fd3f2", "14 4"},
    {"#b3202e", "#ff8a8f", "10 3 2 3 2 3"},
    {"#444444", "#d0d0d0", "1 4"},
}};

// In pixels, for the sizes below; rather too wide than too narrow, since fonts
// differ.
double length(std::string_view text, double size = 13.0) {
  return width(text) * size * 0.6;
}

std::string pixel(double value) {
  std::array<char, 32> text{};
  const double rounded = std::round(value * 100.0) / 100.0;
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), rounded);
  return {text.data(), end};
}

// Text and attribute values; control characters are not allowed in XML.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += static_cast<unsigned char>(c) < 0x20U ? ' ' : c;
    }
  }
  return result;
}

std::string text_at(double x, double y, const char* classes,
                    std::string_view text, const std::string& more = {}) {
  return "<text class=\"" + std::string(classes) + "\" x=\"" + pixel(x) +
         "\" y=\"" + pixel(y) + "\"" + more + ">" + escaped(text) + "</text>\n";
}

std::string line_at(const char* classes, double x1, double y1, double x2,
                    double y2) {
  return "<line class=\"" + std::string(classes) + "\" x1=\"" + pixel(x1) +
         "\" y1=\"" + pixel(y1) + "\" x2=\"" + pixel(x2) + "\" y2=\"" +
         pixel(y2) + "\"/>\n";
}

std::string colours(bool dark) {
  std::string result =
      dark ? "rect.ground{fill:#16181c}text{fill:#e8e8e8}"
             ".axis{stroke:#c8c8c8}.grid{stroke:#3a3d42}"
             ".mark{stroke:#b0b0b0}.band0{fill:#b0b0b0}.band1{fill:#5ab4ff}"
           : "rect.ground{fill:#ffffff}text{fill:#1a1a1a}"
             ".axis{stroke:#333333}.grid{stroke:#e2e2e2}"
             ".mark{stroke:#666666}.band0{fill:#666666}.band1{fill:#0064a8}";
  for (std::size_t i = 0; i < kStyles.size(); ++i) {
    result += ".s" + std::to_string(i) +
              "{stroke:" + (dark ? kStyles[i].dark : kStyles[i].light) + "}";
  }
  return result;
}

// Shapes and sizes, which both grounds share.
std::string style() {
  std::string result =
      "text{font-family:Helvetica,Arial,'Liberation Sans','DejaVu Sans',"
      "sans-serif;font-size:13px}"
      "text.title{font-size:16px;font-weight:bold}text.long{font-size:13px}"
      "text.origin{font-size:11px}"
      ".middle{text-anchor:middle}.end{text-anchor:end}"
      ".axis,.grid{stroke-width:1;fill:none}"
      ".mark{stroke-width:1;stroke-dasharray:4 3}"
      ".band{fill-opacity:0.16}"
      ".curve{fill:none;stroke-width:1.8;stroke-linejoin:round}";
  for (std::size_t i = 0; i < kStyles.size(); ++i) {
    result += ".s" + std::to_string(i) +
              "{stroke-dasharray:" + kStyles[i].dashes + "}";
  }
  return result + colours(false) + "@media (prefers-color-scheme:dark){" +
         colours(true) + "}";
}

// The frame in pixels.
struct Frame {
  double left = 0.0;
  double top = 0.0;
  double bottom = 0.0;

  double x(double part) const { return left + part * (kRight - left); }
  double y(double part) const { return bottom - part * (bottom - top); }
};

std::string curve(const Series& series, const Scales& scales,
                  const Frame& frame, std::size_t number) {
  std::string path;
  Point end{-1.0, -1.0};
  for_each_line(series, scales, [&](Point a, Point b) {
    const auto place = [&](Point point) {
      return pixel(frame.x(point.x)) + " " + pixel(frame.y(point.y));
    };
    if (a.x != end.x || a.y != end.y) path += "M" + place(a);
    path += "L" + place(b);
    end = b;
  });
  return "<path class=\"curve s" + std::to_string(number) + "\" d=\"" + path +
         "\"/>\n";
}

struct Entry {
  std::string text;
  std::string sample;  // drawn at (0, 0) to (28, 0)
};

std::vector<Entry> legend_entries(const Figure& figure, const Labels& labels) {
  std::vector<Entry> entries;
  if (figure.series.size() > 1) {
    for (std::size_t i = 0; i < figure.series.size(); ++i) {
      entries.push_back({figure.series[i].name, "<path class=\"curve s" +
                                                    std::to_string(i) +
                                                    "\" d=\"M0 0L28 0\"/>"});
    }
  }
  for (std::size_t i = 0; i < figure.bands.size(); ++i) {
    entries.push_back({figure.bands[i].name,
                       "<rect class=\"band band" + std::to_string(i % 2) +
                           "\" x=\"0\" y=\"-6\" width=\"28\" height=\"12\"/>"});
  }
  if (!labels.left_over.empty()) {
    std::string more = "not named above:";
    for (const std::string& text : labels.left_over) more += " " + text + ",";
    more.pop_back();
    entries.push_back({more, ""});
  }
  for (Entry& entry : entries) entry.text = shortened(entry.text, 90);
  return entries;
}

// Room for the numbers of the axis between its name and the frame.
double frame_left(const std::vector<Tick>& ticks) {
  double widest = 0.0;
  for (const Tick& tick : ticks) widest = std::max(widest, length(tick.label));
  return std::max(kLeft, kAxisName + 8.0 + widest + kTickGap);
}

// In the middle of the figure and smaller where it is long.
std::string title(const std::string& text, const Frame& frame) {
  if (width(text) <= 60) {
    return text_at((frame.left + kRight) / 2.0, 24.0, "title middle", text);
  }
  return text_at(kWidth / 2.0, 24.0, "title long middle", shortened(text, 86));
}

}  // namespace

std::string svg(const Figure& figure) {
  const Scales scale = scales(figure);
  const std::vector<Tick> y_ticks = ticks(scale.y, 8);
  const auto small = [](const std::string& text) { return length(text); };
  const double left = frame_left(y_ticks);
  const Labels labels = place_labels(figure.marks, scale.x, kRight - left, 0.0,
                                     kRight - left, 3, small);

  // From below: origin, legend, name of the axis, its numbers, the frame.
  double foot = kHeight - 12.0;
  const double origin_at = foot;
  if (!figure.origin.empty()) foot -= kLineHeight + 2.0;
  std::string legend;
  {
    std::vector<std::vector<Entry>> lines;
    double used = kRight;
    for (Entry& entry : legend_entries(figure, labels)) {
      const double needed = 36.0 + length(entry.text) + 18.0;
      if (lines.empty() || used + needed > kRight) {
        lines.emplace_back();
        used = kLeft;
      }
      used += needed;
      lines.back().push_back(std::move(entry));
    }
    double y = foot - kLineHeight * (static_cast<double>(lines.size()) - 1.0);
    if (!lines.empty()) foot = y - kLineHeight - 4.0;
    for (const auto& line : lines) {
      double x = kLeft;
      for (const Entry& entry : line) {
        legend += "<g transform=\"translate(" + pixel(x) + " " +
                  pixel(y - 4.0) + ")\">" + entry.sample + "</g>\n";
        legend += text_at(x + 36.0, y, "legend", entry.text);
        x += 36.0 + length(entry.text) + 18.0;
      }
      y += kLineHeight;
    }
  }
  const double x_name_at = foot;
  const Frame frame{left, 44.0 + kLineHeight * labels.rows,
                    foot - 2.4 * kLineHeight};

  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
      pixel(kWidth) + "\" height=\"" + pixel(kHeight) + "\" viewBox=\"0 0 " +
      pixel(kWidth) + " " + pixel(kHeight) + "\" role=\"img\">\n<title>" +
      escaped(figure.title) + "</title>\n<desc>" + escaped(figure.origin) +
      "</desc>\n<style>" + escaped(style()) +
      "</style>\n<rect class=\"ground\" width=\"" + pixel(kWidth) +
      "\" height=\"" + pixel(kHeight) + "\"/>\n";
  out += title(figure.title, frame);

  for (std::size_t i = 0; i < figure.bands.size(); ++i) {
    const double from =
        frame.x(std::clamp(scale.x.position(figure.bands[i].from), 0.0, 1.0));
    const double to =
        frame.x(std::clamp(scale.x.position(figure.bands[i].to), 0.0, 1.0));
    out += "<rect class=\"band band" + std::to_string(i % 2) + "\" x=\"" +
           pixel(from) + "\" y=\"" + pixel(frame.top) + "\" width=\"" +
           pixel(to - from) + "\" height=\"" + pixel(frame.bottom - frame.top) +
           "\"/>\n";
  }

  for (const Tick& tick : y_ticks) {
    const double y = frame.y(scale.y.position(tick.value));
    const bool major = !tick.label.empty();
    if (major) {
      out += line_at("grid", left, y, kRight, y);
      out += text_at(left - kTickGap, y + 4.5, "end", tick.label);
    }
    out += line_at("axis", left, y, left + (major ? 6.0 : 3.0), y);
  }
  double free = 0.0;
  for (const Tick& tick : ticks(scale.x, 10)) {
    const double x = frame.x(scale.x.position(tick.value));
    const double wide = length(tick.label);
    const bool major = !tick.label.empty() && x - wide / 2.0 >= free;
    if (major) {
      out += line_at("grid", x, frame.top, x, frame.bottom);
      // The last number may be wider than what is right of the frame.
      out += text_at(std::min(x, kWidth - wide / 2.0),
                     frame.bottom + kLineHeight, "middle", tick.label);
      free = x + wide / 2.0 + 4.0;
    }
    out +=
        line_at("axis", x, frame.bottom, x, frame.bottom - (major ? 6.0 : 3.0));
  }

  for (const Mark& mark : figure.marks) {
    const double position = scale.x.position(mark.x);
    if (position < 0.0 || position > 1.0) continue;
    out += line_at("mark", frame.x(position), frame.top, frame.x(position),
                   frame.bottom);
  }
  for (const Label& label : labels.placed) {
    out += text_at(left + label.left + small(label.text) / 2.0,
                   frame.top - 6.0 - kLineHeight * label.row, "middle",
                   label.text);
  }
  for (std::size_t i = 0; i < figure.series.size(); ++i)
    out += curve(figure.series[i], scale, frame, i);
  out += "<rect class=\"axis\" x=\"" + pixel(left) + "\" y=\"" +
         pixel(frame.top) + "\" width=\"" + pixel(kRight - left) +
         "\" height=\"" + pixel(frame.bottom - frame.top) + "\"/>\n";

  out +=
      text_at((left + kRight) / 2.0, x_name_at, "middle", axis_label(figure.x));
  const double middle = (frame.top + frame.bottom) / 2.0;
  out += text_at(kAxisName, middle, "middle", axis_label(figure.y),
                 " transform=\"rotate(-90 " + pixel(kAxisName) + " " +
                     pixel(middle) + ")\"");
  out += legend;
  if (!figure.origin.empty())
    out += text_at(kLeft, origin_at, "origin", shortened(figure.origin, 105));
  return out + "</svg>\n";
}

}  // namespace attenuate
