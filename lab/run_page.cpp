// The page of a run: the answer, the figures, the plots.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "books/prefs.h"
#include "lab/html.h"
#include "lab/plot.h"
#include "lab/text.h"
#include "playfield/paytable.h"  // fixed_value, pays_points

namespace {

constexpr const char* GREEN = "#2a8a3a";
constexpr const char* BLUE = "#2a62b8";
constexpr const char* GOLD = "#c8920a";

// With fewer jackpots their share, a sixth of all tickets, is known to a third at best.
constexpr std::int64_t JACKPOTS_ENOUGH = 10;

bool pays_by_catch() {
  return pref_on(PREF_TICKET_USE) && !pref_on(PREF_FIXED_TICKET);
}

const char* unit() {
  return pays_points() && pays_by_catch() ? "points" : "tickets";
}

// --- the answer ---------------------------------------------------------------------------------

// What the interval says about what was asked for.
std::string verdict(const Results& r, const Estimate& e, const char* sign, double asked) {
  if (!std::isfinite(e.half_width)) return "Too few frogs were played to say how sure this is.";
  if (e.half_width == 0.0) return "All parts of the run paid exactly this.";
  const double least = std::max(e.mean - e.half_width, 0.0);
  const double most = e.mean + e.half_width;
  const bool money = std::isfinite(r.percent_paid);
  const int decimals = html_decimals(e.half_width, money ? 1 : 2);
  std::string text = text_of("With 95%% confidence the long-run average is between %.*f%s and %.*f",
                             decimals, least, sign, decimals, most) +
                     (money ? sign : std::string(" ") + unit());
  if (!pays_by_catch()) return text + ".";
  const char* wanted = money ? "what is asked for" : "what the row stands for";
  if (asked < least) return text + ", <b>more</b> than " + wanted + ".";
  if (asked > most) return text + ", <b>less</b> than " + wanted + ".";
  return text + "; " + wanted + " lies between them.";
}

std::string answer(const Results& r) {
  if (!pref_on(PREF_TICKET_USE))
    return "<p class=\"answer\">\"Ticket Use\" is off: no frog pays.</p>\n";
  const bool money = std::isfinite(r.percent_paid);
  std::string text = text_of("A frog pays <b>%.*f %s</b>", html_decimals(r.tickets.half_width, 2),
                             r.tickets.mean, unit());
  if (pays_by_catch()) text += " on average";
  if (money) {
    text += text_of(", and <b>%.*f%%</b> of the money comes back",
                    html_decimals(r.percent_half_width, 1), r.percent_paid);
  }
  if (!pays_by_catch()) {
    text += ". \"Fixed Ticket\" sets that, whatever is caught.";
  } else if (money) {
    text += text_of("; the settings ask for %.4g%%.", r.percent_asked);
  } else {
    text += text_of("; its row of the paytable stands for %.1f.", r.row_average);
  }
  const std::string sure =
      money ? verdict(r, {r.percent_paid, r.percent_half_width}, "%", r.percent_asked)
            : verdict(r, r.tickets, "", r.row_average);
  return "<p class=\"answer\">" + text + "</p>\n<p>" + sure + "</p>\n";
}

std::string measured(const Results& r, const Sums& sums) {
  const PlayerKind& kind = player_kinds[r.plan.player.kind];
  std::string text = "Measured on " + html_count(r.frogs) + " frogs of a player who " +
                     html_text(kind.help) + "." + html_player_options(r.plan.player);
  text +=
      kind.remembers ? " No person can play like this." : " Others win more or less: see --player.";
  const std::int64_t jackpots = sums_jackpots(sums);
  if (pays_by_catch() && jackpots < JACKPOTS_ENOUGH) {
    text += " <b>Jackpots that fell: " + html_count(jackpots) +
            ". With so few the figures are rough; play more frogs.</b>";
  }
  return "<p>" + text + "</p>\n";
}

// --- figures ------------------------------------------------------------------------------------

std::string games(double chance) {
  const double number = 1.0 / chance;
  return text_of(number < 10.0 ? "%.1f" : "%.0f", number);
}

std::string jackpot_games(const Results& r) {
  if (std::isfinite(r.jackpots_at_most)) {
    return "none fell; " + games(r.jackpots_at_most) + " or more";
  }
  const Estimate& j = r.jackpots;
  if (!std::isfinite(j.half_width)) return games(j.mean);
  return games(j.mean) + " (" + games(j.mean + j.half_width) +
         (j.mean > j.half_width ? " to " + games(j.mean - j.half_width) : " or more") + ")";
}

std::string figure(const std::string& name, const std::string& value, const std::string& set) {
  return "<tr><td>" + name + "</td><td>" + value + "</td><td class=\"text\">" + set +
         "</td></tr>\n";
}

std::string row_text(const Results& r) {
  if (!pays_by_catch()) return {};
  std::string text = text_of("%.1f: row %d of the paytable", r.row_average, r.row);
  if (std::fabs(r.asked - r.row_average) > 0.25) text += text_of("; %.2f is asked for", r.asked);
  return text;
}

std::string figures(const Results& r) {
  std::string rows =
      figure(pays_points() && pays_by_catch() ? "Points of a frog" : "Tickets of a frog",
             html_number(r.tickets, 2), row_text(r));
  if (std::isfinite(r.percent_paid)) {
    rows += figure("Money paid back", html_number({r.percent_paid, r.percent_half_width}, 1, "%"),
                   pays_by_catch() ? text_of("%.4g%%: Payout Percent", r.percent_asked) : "");
  }
  rows += figure("Frogs for one jackpot", jackpot_games(r),
                 text_of("%.2f: Games To Bonus", 1.0 / r.menu_jackpots));
  std::string sides = text_of(
      "The left side paid %.2f %s a frog, the right side %.2f; each of these "
      "is less certain than both together.",
      r.side_tickets[SIDE_LEFT], unit(), r.side_tickets[SIDE_RIGHT]);
  if (pays_points()) sides += text_of(" On paper a frog pays %.2f tickets.", r.paper);
  return "<h2>Figures</h2>\n<table><tr><th></th><th>measured, 95% interval</th>"
         "<th class=\"text\">as set, or in the menu</th></tr>\n" +
         rows + "</table>\n<p>" + sides + "</p>\n";
}

// --- plots --------------------------------------------------------------------------------------

std::string often(double per_frog) {
  return per_frog >= 0.5 ? text_of("%.1f a frog", per_frog)
                         : "one in " + games(per_frog) + " frogs";
}

// What paid less than half of a thousandth isn't worth a row.
std::string awards_plot(const Results& r) {
  double all = 0.0;
  for (const AwardRow& row : r.awards) all += row.tickets;
  std::string rows;
  for (const AwardRow& row : r.awards) {
    const double part = all > 0.0 ? row.tickets / all : 0.0;
    if (part < 0.0005) continue;
    rows += "<tr><td>" + html_text(row.name) + "</td><td>" + often(row.per_frog) +
            text_of(
                "</td><td>%.2f</td><td class=\"text\"><svg width=\"150\" height=\"12\">"
                "<rect width=\"%.1f\" height=\"12\" fill=\"%s\"/></svg> %.1f%%</td></tr>\n",
                row.tickets, 150.0 * std::clamp(part, 0.0, 1.0), GOLD, 100.0 * part);
  }
  std::string cut;
  if (r.capped > 0.0) {
    cut = text_of("<p>\"Maximum Tickets\" took %.2f of these %s a frog away again.</p>\n", r.capped,
                  unit());
  }
  return text_of(
             "<h2>Where the %s come from</h2>\n<table><tr><th></th><th>how often</th>"
             "<th>%s of a frog</th><th class=\"text\">part of all</th></tr>\n",
             unit(), unit()) +
         rows + "</table>\n" + cut;
}

std::string bars(const std::string& title, const std::string& x_label, double from, double to,
                 const std::vector<double>& values, const char* colour) {
  const double most = *std::ranges::max_element(values);
  return plot_bars(
      {title, x_label, "part of the frogs, %", from, to, 0.0, most > 0.0 ? most * 1.05 : 1.0},
      values, colour);
}

std::string climb_plot(const Results& r) {
  std::vector<double> values;
  for (int lane = LANE_MIDDLE_BANK - 1; lane >= LANE_FAR_BANK; --lane) {
    values.push_back(100.0 * r.ended_on[lane]);
  }
  return bars(text_of("How far frogs get: %.1f of 12 lanes on average", r.lanes_climbed),
              "lanes climbed; 12 is the far bank", 6.5, 12.5, values, GREEN);
}

std::int64_t frogs_with(const Sums& sums, int tickets) {
  if (tickets >= HISTOGRAM_CELLS) return 0;
  return sums.books.histogram[SIDE_LEFT][tickets] + sums.books.histogram[SIDE_RIGHT][tickets];
}

// The most tickets that this part of the frogs won at least.
int tickets_of_best(const Sums& sums, double part) {
  const double wanted = part * static_cast<double>(sums_frogs(sums));
  auto left = static_cast<double>(sums_frogs(sums));
  int tickets = 0;
  while (tickets < HISTOGRAM_CELLS) {
    left -= static_cast<double>(frogs_with(sums, tickets));
    if (left < wanted) break;
    ++tickets;
  }
  return tickets;
}

std::string wins_plot(const Sums& sums) {
  const int last = std::max(tickets_of_best(sums, 0.01), 10);
  const int step = last / 100 + 1;
  std::vector<double> values;
  for (int from = 0; from <= last; from += step) {
    std::int64_t frogs = 0;
    for (int n = from; n < from + step; ++n) frogs += frogs_with(sums, n);
    values.push_back(100.0 * static_cast<double>(frogs) / static_cast<double>(sums_frogs(sums)));
  }
  const std::string label = unit() + (step > 1 ? text_of(", %d to a bar", step) : std::string{});
  return text_of(
             "<p class=\"lead\">Half of the frogs win %d %s or more, one in ten %d or more, one in "
             "a hundred %d "
             "or more.</p>\n",
             tickets_of_best(sums, 0.5), unit(), tickets_of_best(sums, 0.1),
             tickets_of_best(sums, 0.01)) +
         bars("What a frog wins", label, -0.5, static_cast<double>(values.size()) * step - 0.5,
              values, BLUE);
}

std::string method(const Results& r) {
  return "<h2>How it was measured</h2>\n<p>" + html_count(r.frogs) +
         text_of(
             " frogs on both sides, %.1f hours of play, seed %llu. The cabinet was switched on ",
             r.game_s / 3600.0, static_cast<unsigned long long>(r.plan.seed)) +
         html_count(r.boots) +
         " times, each time with bugs in other places, and the intervals come from how much these "
         "parts of the run differ.</p>\n";
}

}  // namespace

std::string run_page(const Results& r, const Sums& sums) {
  std::string body = answer(r) + measured(r, sums) + figures(r);
  if (pays_by_catch()) body += awards_plot(r) + "<h2>What frogs do</h2>\n" + wins_plot(sums);
  return html_page("What a frog pays", body + climb_plot(r) + method(r) + html_settings(false));
}
