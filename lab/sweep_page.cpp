// The page of a sweep: what it found, in words that follow from the figures, then plots and cells.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include "books/settings.h"
#include "lab/html.h"
#include "lab/plot.h"
#include "lab/text.h"

namespace {

using Sweep = std::vector<SweepResult>;

constexpr const char* BOOST = SETTINGS[PREF_BOOST_BONUS].name;
constexpr const char* POINTS = SETTINGS[PREF_TWO_POINT_TICKETS].name;

constexpr int FIRST_HIGH_ROW = 10;  // below it the sums are small, and so is what is added

struct Rows {
  int player;
  bool boost, points;
  int first = 0, last = PAYTABLE_ROWS - 1;
};

int player_count() {
  return static_cast<int>(player_kinds.size());
}

const Results& at(const Sweep& all, int player, int row, bool boost, bool points) {
  return all[static_cast<std::size_t>(sweep_number({player, row, boost, points}))].results;
}

// How far a row is off its average, in percent of it.
Estimate gap_of(const Results& r) {
  return {100.0 * (r.tickets.mean / r.row_average - 1.0),
          100.0 * r.tickets.half_width / r.row_average};
}

// The same for several rows on average. All places are played with equal seeds, and their errors
// hang together nearly as much as they can; then the average has the average of their half widths.
Estimate gap_of(const Sweep& all, const Rows& rows) {
  Estimate sum{0.0, 0.0};
  for (int row = rows.first; row <= rows.last; ++row) {
    const Estimate each = gap_of(at(all, rows.player, row, rows.boost, rows.points));
    sum.mean += each.mean;
    sum.half_width += each.half_width;
  }
  const int count = rows.last - rows.first + 1;
  return {sum.mean / count, sum.half_width / count};
}

// Errors of equal seeds go the same way or have nothing to do with each other, so this is no less
// than the difference has.
Estimate difference(const Estimate& one, const Estimate& other) {
  return {one.mean - other.mean, std::hypot(one.half_width, other.half_width)};
}

bool is_clear(const Estimate& e) {
  return std::fabs(e.mean) > e.half_width;
}

std::string more_or_less(double percent) {
  return text_of("%.0f%% %s", std::fabs(percent), percent < 0.0 ? "less" : "more");
}

// --- in words -----------------------------------------------------------------------------------

std::string answer(const Sweep& all) {
  const Estimate gap = gap_of(all, {0, false, false});
  const std::string who = std::string("a player who ") + html_text(player_kinds[0].help);
  if (!std::isfinite(gap.half_width)) {
    return "<p class=\"answer\">Too few frogs were played to say what the paytable pays.</p>\n";
  }
  if (!is_clear(gap)) {
    return "<p class=\"answer\">To " + who +
           text_of(", the paytable pays what it says to within %.0f%%.</p>\n",
                   std::ceil(std::fabs(gap.mean) + gap.half_width));
  }
  return "<p class=\"answer\">The paytable pays <b>" + more_or_less(gap.mean) +
         " than it says</b> to " + who +
         text_of(
             ": where Payout Percent asks for 40%%, about <b>%.0f%%</b> of the money comes "
             "back.</p>\n",
             40.0 + 0.4 * gap.mean) +
         text_of(
             "<p>That is the average of its %d rows. With 95%% confidence it is between %.0f%% "
             "and %.0f%% of what the rows say.</p>\n",
             PAYTABLE_ROWS, 100.0 + gap.mean - gap.half_width, 100.0 + gap.mean + gap.half_width);
}

// Who wins most of those that a person could be, beside the first.
std::string timing_found(const Sweep& all) {
  const Estimate first = gap_of(all, {0, false, false});
  int best = 0;
  std::string beyond;
  for (int player = 1; player < player_count(); ++player) {
    const Estimate gap = gap_of(all, {player, false, false});
    if (player_kinds[player].remembers) {
      beyond += text_of(
          " A player who %s gets %.1f times what the rows say, but no person can play "
          "like this.",
          html_text(player_kinds[player].help).c_str(), 1.0 + gap.mean / 100.0);
    } else if (gap.mean > gap_of(all, {best, false, false}).mean) {
      best = player;
    }
  }
  const Estimate gap = gap_of(all, {best, false, false});
  if (!is_clear(difference(gap, first))) {
    return "<b>What timing gains stays open:</b> less than the intervals." + beyond;
  }
  return std::string("<b>Timing pays.</b> A player who ") + html_text(player_kinds[best].help) +
         " gets " + more_or_less(gap.mean) + " than the rows say." + beyond;
}

std::string rows_found(const Sweep& all) {
  const Estimate low = gap_of(all, {0, false, false, 0, FIRST_HIGH_ROW - 1});
  const Estimate high = gap_of(all, {0, false, false, FIRST_HIGH_ROW, PAYTABLE_ROWS - 1});
  const std::string figures = text_of("Rows 0 to %d pay ", FIRST_HIGH_ROW - 1) +
                              more_or_less(low.mean) + " than they say, the rows above them " +
                              more_or_less(high.mean) + ".";
  if (!is_clear(difference(high, low))) {
    return "<b>Whether low or high rows come nearer to what they say stays open.</b> " + figures;
  }
  const bool low_nearer = std::fabs(low.mean) < std::fabs(high.mean);
  return std::string("<b>The ") + (low_nearer ? "low" : "high") +
         " rows come nearer to what they say.</b> " + figures;
}

std::string switch_found(const char* name, const Estimate& on, const Estimate& off) {
  const Estimate change = difference(on, off);
  if (!is_clear(change)) return std::string("\"") + name + "\" changes nothing clear";
  return text_of("\"%s\" %s %.0f%% of what the rows say", name,
                 change.mean > 0.0 ? "adds" : "takes away", std::fabs(change.mean));
}

std::string switches_found(const Sweep& all) {
  const Estimate off = gap_of(all, {0, false, false});
  const Estimate boost = gap_of(all, {0, true, false});
  const Estimate points = gap_of(all, {0, false, true});
  if (!is_clear(difference(boost, off)) && !is_clear(difference(points, off))) {
    return text_of("<b>What \"%s\" and \"%s\" change stays open:</b> less than the intervals.",
                   BOOST, POINTS);
  }
  return "<b>Other settings matter too.</b> " + switch_found(BOOST, boost, off) + "; " +
         switch_found(POINTS, points, off) + ".";
}

std::string gaps_table(const Sweep& all) {
  std::string rows;
  for (int player = 0; player < player_count(); ++player) {
    rows += std::string("<tr><td>") + player_kinds[player].name + ": " +
            html_text(player_kinds[player].help) + "</td>";
    for (const bool points : {false, true}) {
      for (const bool boost : {false, true}) {
        rows += "<td>" + html_number(gap_of(all, {player, boost, points}), 0, "%") + "</td>";
      }
    }
    rows += "</tr>\n";
  }
  return "<h2>How much more than they say the rows pay, on average</h2>\n"
         "<table><tr><th>player</th><th>both off</th><th>Boost Bonus</th>"
         "<th>Two Point</th><th>both on</th></tr>\n" +
         rows + "</table>\n";
}

// --- plots and cells ----------------------------------------------------------------------------

std::string switches_text(bool boost, bool points) {
  return text_of("%s %s, %s %s", BOOST, boost ? "On" : "Off", POINTS, points ? "On" : "Off");
}

PlotSeries player_series(const Sweep& all, int player, bool boost, bool points) {
  PlotSeries series{player_kinds[player].name, player_kinds[player].colour, false, {}};
  for (int row = 0; row < PAYTABLE_ROWS; ++row) {
    const Results& r = at(all, player, row, boost, points);
    const Estimate gap = gap_of(r);
    series.points.push_back({r.row_average, 100.0 + gap.mean, gap.half_width});
  }
  return series;
}

std::string gaps_plot(const Sweep& all, bool boost, bool points, bool everybody) {
  std::vector<PlotSeries> series{
      {"what the row says", "#555", true, {{3.0, 100.0, 0.0}, {25.0, 100.0, 0.0}}}};
  for (int player = 0; player < player_count(); ++player) {
    if (player_kinds[player].remembers && !everybody) continue;
    series.push_back(player_series(all, player, boost, points));
  }
  double least = 100.0;
  double most = 110.0;
  for (const PlotSeries& each : series) {
    for (const PlotPoint& p : each.points) {
      const double bar = std::isfinite(p.half_width) ? p.half_width : 0.0;
      least = std::min(least, p.y - bar);
      most = std::max(most, p.y + bar);
    }
  }
  return plot_lines(
      {switches_text(boost, points) + (everybody ? ", all players" : ""),
       points ? "points of a frog that the row says" : "tickets of a frog that the row says",
       "paid, % of that", 3.0, 25.0, std::max(least - 5.0, 0.0), most + 5.0},
      series);
}

std::string cells(const Sweep& all, bool boost, bool points) {
  std::string text = "<h3>" + switches_text(boost, points) + ": " +
                     (points ? "points" : "tickets") +
                     " of a frog</h3>\n<table><thead><tr><th>row</th><th>says</th>";
  for (const PlayerKind& kind : player_kinds) text += std::string("<th>") + kind.name + "</th>";
  text += "</tr></thead>\n";
  for (int row = 0; row < PAYTABLE_ROWS; ++row) {
    text +=
        text_of("<tr><td>%d</td><td>%.1f</td>", row, static_cast<double>(paytable_average(row)));
    for (int player = 0; player < player_count(); ++player) {
      const Results& r = at(all, player, row, boost, points);
      text += "<td>" + html_number(r.tickets, 2) +
              text_of(" <small>%+.0f%%</small></td>", gap_of(r).mean);
    }
    text += "</tr>\n";
  }
  return text + "</table>\n";
}

std::string method(const Sweep& all) {
  const Results& r = all.front().results;
  return "<h2>How it was measured</h2>\n<p>" + html_count(r.frogs) +
         text_of(" frogs in each of %d places: %d rows, %d players, ", sweep_places(),
                 PAYTABLE_ROWS, player_count()) +
         text_of("\"%s\" and \"%s\" on and off; seed %llu.", BOOST, POINTS,
                 static_cast<unsigned long long>(r.plan.seed)) +
         html_player_options(r.plan.player) +
         " After &plusmn; stands the half width of a 95% interval; of so many places, one in "
         "twenty "
         "lies outside its own. An average of rows is hardly more certain than a row, because all "
         "places are played with equal seeds.</p>\n";
}

}  // namespace

std::string sweep_page(const std::vector<SweepResult>& all) {
  std::string plots;
  std::string tables;
  for (const bool points : {false, true}) {
    for (const bool boost : {false, true}) {
      plots += gaps_plot(all, boost, points, false);
      tables += cells(all, boost, points);
    }
  }
  return html_page("What the paytable pays",
                   answer(all) + "<ul>\n<li>" + timing_found(all) + "</li>\n<li>" +
                       rows_found(all) + "</li>\n<li>" + switches_found(all) + "</li>\n</ul>\n" +
                       gaps_table(all) + "<h2>Row by row</h2>\n" + plots +
                       gaps_plot(all, false, false, true) + method(all) + html_settings(true) +
                       "<h2>All places</h2>\n" + tables);
}
