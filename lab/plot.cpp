#include "lab/plot.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "lab/text.h"

namespace {

constexpr double WIDTH = 720.0;
constexpr double HEIGHT = 360.0;
constexpr double LEFT = 64.0;
constexpr double RIGHT = 16.0;
constexpr double TOP = 56.0;
constexpr double BOTTOM = 48.0;

// A step of 1, 2 or 5 times a power of ten that cuts a span into about six.
double step_of(double span) {
  if (!(span > 0.0)) return 1.0;
  const double power = std::pow(10.0, std::floor(std::log10(span / 6.0)));
  const double rest = span / 6.0 / power;
  return power * (rest < 1.5 ? 1.0 : rest < 3.5 ? 2.0 : rest < 7.5 ? 5.0 : 10.0);
}

struct Scale {
  const PlotFrame& frame;
  [[nodiscard]] double x(double value) const {
    return LEFT + (value - frame.x_least) / (frame.x_most - frame.x_least) * (WIDTH - LEFT - RIGHT);
  }
  [[nodiscard]] double y(double value) const {
    return HEIGHT - BOTTOM -
           (value - frame.y_least) / (frame.y_most - frame.y_least) * (HEIGHT - TOP - BOTTOM);
  }
};

std::string text_at(double x, double y, const char* anchor, const std::string& text) {
  return text_of("<text x=\"%.1f\" y=\"%.1f\" text-anchor=\"%s\">", x, y, anchor) +
         html_text(text) + "</text>\n";
}

std::string line(double x1, double y1, double x2, double y2, const char* style) {
  return text_of("<line x1=\"%.1f\" y1=\"%.1f\" x2=\"%.1f\" y2=\"%.1f\" style=\"%s\"/>\n", x1, y1,
                 x2, y2, style);
}

std::string axes(const Scale& scale) {
  const PlotFrame& frame = scale.frame;
  const char* grid = "stroke:#ddd";
  std::string svg;
  const double y_step = step_of(frame.y_most - frame.y_least);
  const int y_first = static_cast<int>(std::ceil(frame.y_least / y_step));
  const int y_last = static_cast<int>(frame.y_most * 1.0001 / y_step);
  for (int n = y_first; n <= y_last; ++n) {
    const double y = n * y_step;
    svg += line(LEFT, scale.y(y), WIDTH - RIGHT, scale.y(y), grid);
    svg += text_at(LEFT - 6.0, scale.y(y) + 4.0, "end", text_of("%g", y));
  }
  const double x_step = step_of(frame.x_most - frame.x_least);
  const int x_first = static_cast<int>(std::ceil(frame.x_least / x_step));
  const int x_last = static_cast<int>(frame.x_most * 1.0001 / x_step);
  for (int n = x_first; n <= x_last; ++n) {
    const double x = n * x_step;
    svg += line(scale.x(x), HEIGHT - BOTTOM, scale.x(x), HEIGHT - BOTTOM + 5.0, "stroke:#333");
    svg += text_at(scale.x(x), HEIGHT - BOTTOM + 18.0, "middle", text_of("%g", x));
  }
  svg += line(LEFT, HEIGHT - BOTTOM, WIDTH - RIGHT, HEIGHT - BOTTOM, "stroke:#333");
  svg += text_at((LEFT + WIDTH - RIGHT) / 2.0, HEIGHT - 10.0, "middle", frame.x_label);
  svg += text_of("<text transform=\"translate(14 %.1f) rotate(-90)\" text-anchor=\"middle\">",
                 (TOP + HEIGHT - BOTTOM) / 2.0) +
         html_text(frame.y_label) + "</text>\n";
  return svg + "<text class=\"title\" x=\"" + text_of("%.0f", LEFT) + "\" y=\"20\">" +
         html_text(frame.title) + "</text>\n";
}

std::string begin() {
  return text_of(
      "<svg class=\"plot\" viewBox=\"0 0 %.0f %.0f\" width=\"%.0f\" height=\"%.0f\" "
      "role=\"img\">\n",
      WIDTH, HEIGHT, WIDTH, HEIGHT);
}

std::string series_svg(const Scale& scale, const PlotSeries& series) {
  const std::string style = text_of("fill:none;stroke:%s;stroke-width:1.6%s", series.colour,
                                    series.dashed ? ";stroke-dasharray:6 4" : "");
  std::string points;
  std::string bars;
  const std::string bar_style = text_of("stroke:%s;stroke-width:1", series.colour);
  for (const PlotPoint& p : series.points) {
    points += text_of("%.1f,%.1f ", scale.x(p.x), scale.y(p.y));
    if (p.half_width > 0.0 && std::isfinite(p.half_width)) {
      bars += line(scale.x(p.x), scale.y(p.y - p.half_width), scale.x(p.x),
                   scale.y(p.y + p.half_width), bar_style.c_str());
    }
  }
  return "<polyline points=\"" + points + "\" style=\"" + style + "\"/>\n" + bars;
}

}  // namespace

std::string plot_lines(const PlotFrame& frame, const std::vector<PlotSeries>& series) {
  const Scale scale{frame};
  std::string svg = begin() + axes(scale);
  double x = LEFT;
  constexpr double y = 42.0;
  for (const PlotSeries& each : series) {
    svg += series_svg(scale, each);
    const std::string style = text_of("stroke:%s;stroke-width:3%s", each.colour,
                                      each.dashed ? ";stroke-dasharray:6 4" : "");
    svg += line(x, y - 4.0, x + 24.0, y - 4.0, style.c_str());
    svg += text_at(x + 30.0, y, "start", each.name);
    x += 54.0 + 7.0 * static_cast<double>(each.name.size());
  }
  return svg + "</svg>\n";
}

std::string plot_bars(const PlotFrame& frame, const std::vector<double>& values,
                      const char* colour) {
  const Scale scale{frame};
  std::string svg = begin() + axes(scale);
  const double width =
      (frame.x_most - frame.x_least) / static_cast<double>(std::max(values.size(), std::size_t{1}));
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i] <= 0.0) continue;
    const double from = scale.x(frame.x_least + static_cast<double>(i) * width);
    const double to = scale.x(frame.x_least + static_cast<double>(i + 1) * width);
    const double height = std::max(scale.y(0.0) - scale.y(values[i]), 1.0);
    svg += text_of("<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" fill=\"%s\"/>\n",
                   from, scale.y(0.0) - height, std::max(to - from - 1.0, 0.6), height, colour);
  }
  return svg + "</svg>\n";
}
