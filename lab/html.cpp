#include "lab/html.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "books/prefs.h"
#include "lab/plot.h"
#include "lab/settings.h"
#include "lab/text.h"

namespace {

constexpr const char* GREEN = "#2a8a3a";
constexpr const char* BLUE = "#2a62b8";
constexpr const char* GOLD = "#c8920a";

std::string page(const std::string& title, const std::string& body) {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
         html_text(title) + R"(</title>
<style>
body { font: 15px/1.45 sans-serif; max-width: 780px; margin: 24px auto; padding: 0 12px; color: #222 }
table { border-collapse: collapse; margin: 12px 0; font-variant-numeric: tabular-nums }
td, th { border-bottom: 1px solid #ddd; padding: 2px 10px; text-align: right }
td:first-child, th:first-child { text-align: left }
svg { max-width: 100%; height: auto; margin: 10px 0; font: 12px sans-serif }
td svg { margin: 0 8px 0 0; vertical-align: middle }
svg .title { font-size: 15px; font-weight: bold }
pre { background: #f6f6f2; padding: 10px; overflow-x: auto }
</style>
</head>
<body>
<h1>)" + html_text(title) +
         "</h1>\n" + body + "</body>\n</html>\n";
}

double histogram_part(const Sums& sums, int from, int to) {
  std::int64_t count = 0;
  for (int n = from; n < to && n < HISTOGRAM_CELLS; ++n) {
    count += sums.books.histogram[SIDE_LEFT][n] + sums.books.histogram[SIDE_RIGHT][n];
  }
  return static_cast<double>(count) / static_cast<double>(sums_frogs(sums));
}

std::string bars(const std::string& title, const std::string& x_label, double from, double to,
                 const std::vector<double>& values, const char* colour) {
  const double most = *std::ranges::max_element(values);
  const PlotFrame frame{title, x_label, "part of the frogs, %",
                        from,  to,      most > 0.0 ? most * 1.05 : 1.0};
  return plot_bars(frame, values, colour);
}

std::string histogram_plots(const Sums& sums) {
  constexpr int FINE = 100;    // one ticket a bar
  constexpr int COARSE = 700;  // ten tickets a bar
  std::vector<double> fine(FINE);
  for (int n = 0; n < FINE; ++n) {
    fine[static_cast<std::size_t>(n)] = 100.0 * histogram_part(sums, n, n + 1);
  }
  std::vector<double> coarse;
  for (int n = FINE; n < COARSE; n += 10) {
    coarse.push_back(100.0 * histogram_part(sums, n, n + 10));
  }
  return bars("Tickets of a frog", "tickets", 0, FINE, fine, BLUE) +
         bars("The same, from 100 up, ten to a bar", "tickets", FINE, COARSE, coarse, BLUE);
}

std::string ends_plot(const Results& r) {
  std::vector<double> values;
  for (int lane = LANE_MIDDLE_BANK - 1; lane >= LANE_FAR_BANK; --lane) {
    values.push_back(100.0 * r.ended_on[lane]);
  }
  return bars("Lanes climbed", "lanes, of 12", 6.5, 12.5, values, GREEN);
}

std::string awards_plot(const Results& r) {
  std::string rows;
  for (const AwardRow& row : r.awards) {
    const double part = r.tickets.mean > 0.0 ? row.tickets / r.tickets.mean : 0.0;
    rows +=
        "<tr><td>" + html_text(row.name) +
        text_of("</td><td>%.5f</td><td>%.4f</td>", row.per_frog, row.tickets) +
        text_of(
            "<td style=\"text-align:left\"><svg width=\"200\" height=\"12\"><rect width=\"%.1f\" "
            "height=\"12\" fill=\"%s\"/></svg> %.1f%%</td></tr>\n",
            200.0 * std::clamp(part, 0.0, 1.0), GOLD, 100.0 * part);
  }
  return "<h2>Awards</h2>\n<table><tr><th>award</th><th>per frog</th><th>tickets per frog</th>"
         "<th style=\"text-align:left\">part of all</th></tr>\n" +
         rows + "</table>\n";
}

std::string settings_rows() {
  std::string rows;
  for (int i = 0; i < PREF_COUNT; ++i) {
    if ((prefs[i].flags & PREF_SHOWS_TEXT) != 0) continue;
    rows += "<tr><td>" + html_text(prefs[i].name) + "</td><td>" +
            settings_text(static_cast<PrefIndex>(i)) + "</td></tr>\n";
  }
  return "<h2>Settings</h2>\n<table>" + rows + "</table>\n";
}

double most_of(const std::vector<PlotSeries>& series) {
  double most = 1.0;
  for (const PlotSeries& each : series) {
    for (const PlotPoint& p : each.points) most = std::max(most, p.y);
  }
  return most * 1.05;
}

// The results of one player. Without one, the averages that the rows stand for.
PlotSeries sweep_series(const std::vector<SweepResult>& all, bool boost, bool points, int player) {
  const bool averages = player < 0;
  PlotSeries series{"the row's average", "#555", averages, {}};
  if (!averages) {
    series.name = player_kinds[player].name;
    series.colour = player_kinds[player].colour;
  }
  for (const SweepResult& each : all) {
    if (each.place.boost != boost || each.place.points != points) continue;
    if (each.place.player != std::max(player, 0)) continue;
    const Results& r = each.results;
    series.points.push_back({r.row_average, averages ? r.row_average : r.tickets.mean,
                             averages ? 0.0 : r.tickets.half_width});
  }
  return series;
}

std::string sweep_plot(const std::vector<SweepResult>& all, bool boost, bool points,
                       bool everybody) {
  std::vector<PlotSeries> series{sweep_series(all, boost, points, -1)};
  for (int player = 0; player < static_cast<int>(player_kinds.size()); ++player) {
    if (player_kinds[player].remembers && !everybody) continue;
    series.push_back(sweep_series(all, boost, points, player));
  }
  const std::string title = std::string("Boost Bonus ") + (boost ? "On" : "Off") +
                            ", Two Point Tickets " + (points ? "On" : "Off");
  const PlotFrame frame{title,
                        "average that the row stands for",
                        points ? "points per frog" : "tickets per frog",
                        3.0,
                        25.0,
                        most_of(series)};
  return plot_lines(frame, series);
}

}  // namespace

std::string run_page(const Results& r, const Sums& sums) {
  const std::string title = std::string("What the settings pay to a player who is ") +
                            player_kinds[r.plan.player.kind].name;
  return page(title, "<pre>" + html_text(results_table(r, sums)) + "</pre>\n" + awards_plot(r) +
                         ends_plot(r) + histogram_plots(sums) + settings_rows());
}

std::string sweep_page(const std::vector<SweepResult>& all) {
  std::string body;
  for (const bool points : {false, true}) {
    for (const bool boost : {false, true}) {
      body += sweep_plot(all, boost, points, false);
      body += sweep_plot(all, boost, points, true);
    }
  }
  return page("What the rows of the paytable pay",
              body + "<pre>" + html_text(sweep_table(all)) + "</pre>\n");
}
