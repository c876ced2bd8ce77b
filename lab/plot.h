// Plots as SVG text: one frame with axes, and what is drawn into it.
#pragma once

#include <string>
#include <vector>

struct PlotPoint {
  double x, y, half_width;  // half width 0: no error bar
};

struct PlotSeries {
  std::string name;
  const char* colour;
  bool dashed;
  std::vector<PlotPoint> points;
};

struct PlotFrame {
  std::string title, x_label, y_label;
  double x_least, x_most, y_least, y_most;  // bars need 0 as y_least
};

// Lines through points, with error bars and a legend above.
std::string plot_lines(const PlotFrame& frame, const std::vector<PlotSeries>& series);

// Bars of equal width over x_least to x_most; a value above 0 gets at least a pixel.
std::string plot_bars(const PlotFrame& frame, const std::vector<double>& values,
                      const char* colour);
