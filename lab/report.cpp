// A run's results as a table for a terminal, and as JSON.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "books/prefs.h"
#include "lab/results.h"
#include "lab/settings.h"
#include "lab/text.h"
#include "playfield/paytable.h"  // pays_points

namespace {

constexpr int HISTOGRAM_LINES = 20;
constexpr int BAR_CHARACTERS = 40;

const char* lane_name(int lane) {
  return lane == LANE_FAR_BANK ? "far bank" : "in the water";
}

std::string head_lines(const Results& r) {
  std::string text;
  text += text_of("player            %s\n", player_kinds[r.plan.player.kind].name);
  text +=
      text_of("frogs             %lld on both sides, %lld boots, %.1f hours of play, seed %llu\n",
              static_cast<long long>(r.frogs), static_cast<long long>(r.boots), r.game_s / 3600.0,
              static_cast<unsigned long long>(r.plan.seed));
  text += text_of("paytable row      %d, average %.1f; the settings ask for %.2f\n\n", r.row,
                  r.row_average, r.asked);
  return text;
}

std::string chief_lines(const Results& r) {
  std::string text;
  text += text_of("%s per frog  %.4f +- %.4f (95%%); %+.1f%% of the row's average\n",
                  pays_points() ? "points " : "tickets", r.tickets.mean, r.tickets.half_width,
                  100.0 * (r.tickets.mean / r.row_average - 1.0));
  if (pays_points()) text += text_of("paper per frog    %.4f tickets of two points\n", r.paper);
  text += text_of("left, right       %.4f, %.4f\n", r.side_tickets[SIDE_LEFT],
                  r.side_tickets[SIDE_RIGHT]);
  if (std::isfinite(r.percent_paid)) {
    text += text_of("payout            %.2f%% +- %.2f%% of the money; asked for: %.2f%%\n",
                    r.percent_paid, r.percent_half_width, r.percent_asked);
  }
  text += "games to bonus    ";
  if (std::isfinite(r.jackpots_at_most)) {
    text += text_of("no jackpot fell: %.2f or more (at most %.5f a frog, 95%%)",
                    1.0 / r.jackpots_at_most, r.jackpots_at_most);
  } else {
    text += text_of("%.2f (%.5f +- %.5f a frog)", 1.0 / r.jackpots.mean, r.jackpots.mean,
                    r.jackpots.half_width);
  }
  text += text_of("; the menu says %.2f (%.5f)\n", 1.0 / r.menu_jackpots, r.menu_jackpots);
  text += text_of("climbed           %.3f of 12 lanes\n\n", r.lanes_climbed);
  return text;
}

std::string award_lines(const Results& r) {
  std::string text = "award                  per frog   tickets per frog\n";
  for (const AwardRow& row : r.awards) {
    text += text_of("%-20s %10.5f %18.4f\n", row.name, row.per_frog, row.tickets);
  }
  if (r.capped > 0.0) text += text_of("%-20s %10s %18.4f\n", "cut by the maximum", "", r.capped);
  text += "\nend of the climb       part of the frogs\n";
  for (int lane = LANE_MIDDLE_BANK - 1; lane >= LANE_FAR_BANK; --lane) {
    text += text_of("lane %d, %-13s %10.3f%%\n", lane, lane_name(lane), 100.0 * r.ended_on[lane]);
  }
  return text;
}

// In steps of the same width, the last line all that is beyond.
std::string histogram_lines(const Sums& sums) {
  int last = HISTOGRAM_CELLS - 1;
  const auto at = [&](int n) {
    return sums.books.histogram[SIDE_LEFT][n] + sums.books.histogram[SIDE_RIGHT][n];
  };
  const auto frogs = static_cast<double>(sums_frogs(sums));
  double beyond = 0.0;  // all but a thousandth of the frogs are shown
  while (last > 0 && beyond + static_cast<double>(at(last)) < frogs / 1000.0) {
    beyond += static_cast<double>(at(last--));
  }
  const int step = last / HISTOGRAM_LINES + 1;
  std::string text = "\ntickets of a frog      part of the frogs\n";
  for (int from = 0; from <= last; from += step) {
    double part = 0.0;
    for (int n = from; n < from + step && n < HISTOGRAM_CELLS; ++n) {
      part += static_cast<double>(at(n)) / frogs;
    }
    const auto bar = static_cast<std::size_t>(std::lround(part * BAR_CHARACTERS));
    text += text_of("%4d to %-4d %18.3f%%  ", from, from + step - 1, 100.0 * part) +
            std::string(bar, '#') + "\n";
  }
  if (beyond > 0.0) text += text_of("more %25.3f%%\n", 100.0 * beyond / frogs);
  return text;
}

std::string json_estimate(const char* name, const Estimate& e) {
  return json_text(name) + ": {\"mean\": " + json_number(e.mean) +
         ", \"half_width_95\": " + json_number(e.half_width) + "}";
}

std::string json_settings() {
  std::string text = "{";
  for (int i = 0; i < PREF_COUNT; ++i) {
    if ((prefs[i].flags & PREF_SHOWS_TEXT) != 0) continue;
    text += (i > 0 ? ", " : "") + json_text(prefs[i].name) + ": " +
            settings_text(static_cast<PrefIndex>(i));
  }
  return text + "}";
}

std::string json_awards(const Results& r) {
  std::string text = "[";
  for (const AwardRow& row : r.awards) {
    if (text.size() > 1) text += ", ";
    text += "{\"award\": " + json_text(row.name) + ", \"per_frog\": " + json_number(row.per_frog) +
            ", \"tickets_per_frog\": " + json_number(row.tickets) + "}";
  }
  return text + "]";
}

std::string json_books(const Sums& sums) {
  std::string text = "{";
  for (int row = 0; row < AUDIT_COUNT; ++row) {
    const bool time = (audits[row].flags & AUDIT_IS_TIME) != 0;
    const std::int64_t value = time ? sums.books.time_ms[row] : sums.books.count[row];
    text += (row > 0 ? ", " : "") + json_text(audits[row].name) + ": " + std::to_string(value);
  }
  return text + "}";
}

std::string json_histogram(const Sums& sums, int side) {
  std::string text = "{";
  for (int n = 0; n < HISTOGRAM_CELLS; ++n) {
    const std::int64_t count = sums.books.histogram[side][n];
    if (count == 0) continue;
    text += (text.size() > 1 ? ", \"" : "\"") + std::to_string(n) + "\": " + std::to_string(count);
  }
  return text + "}";
}

}  // namespace

std::string results_table(const Results& r, const Sums& sums) {
  return head_lines(r) + chief_lines(r) + award_lines(r) + histogram_lines(sums);
}

std::string results_json(const Results& r, const Sums& sums) {
  std::string text = "{\n";
  text += "  \"player\": " + json_text(player_kinds[r.plan.player.kind].name) + ",\n";
  text += "  \"seed\": " + std::to_string(r.plan.seed) + ",\n";
  text += "  \"frogs\": " + std::to_string(r.frogs) + ",\n";
  text += "  \"boots\": " + std::to_string(r.boots) + ",\n";
  text += "  \"hours\": " + json_number(r.game_s / 3600.0) + ",\n";
  text += "  \"row\": " + std::to_string(r.row) + ",\n";
  text += "  \"row_average\": " + json_number(r.row_average) + ",\n";
  text += "  \"asked\": " + json_number(r.asked) + ",\n";
  text += "  " + json_estimate("tickets_per_frog", r.tickets) + ",\n";
  text += "  \"paper_per_frog\": " + json_number(r.paper) + ",\n";
  text += "  \"tickets_per_frog_left\": " + json_number(r.side_tickets[SIDE_LEFT]) + ",\n";
  text += "  \"tickets_per_frog_right\": " + json_number(r.side_tickets[SIDE_RIGHT]) + ",\n";
  text += "  \"percent_asked\": " + json_number(r.percent_asked) + ",\n";
  text += "  \"percent_paid\": " + json_number(r.percent_paid) + ",\n";
  text += "  " + json_estimate("jackpots_per_frog", r.jackpots) + ",\n";
  text += "  \"jackpots_per_frog_at_most_95\": " + json_number(r.jackpots_at_most) + ",\n";
  text += "  \"games_to_bonus\": " + json_number(1.0 / r.jackpots.mean) + ",\n";
  text += "  \"games_to_bonus_of_the_menu\": " + json_number(1.0 / r.menu_jackpots) + ",\n";
  text += "  \"lanes_climbed\": " + json_number(r.lanes_climbed) + ",\n";
  text += "  \"awards\": " + json_awards(r) + ",\n";
  text += "  \"settings\": " + json_settings() + ",\n";
  text += "  \"books\": " + json_books(sums) + ",\n";
  text += "  \"histogram_left\": " + json_histogram(sums, SIDE_LEFT) + ",\n";
  text += "  \"histogram_right\": " + json_histogram(sums, SIDE_RIGHT) + "\n}\n";
  return text;
}
