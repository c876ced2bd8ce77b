#include "tools/books/pay.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>

#include "tools/books/moment.h"

using nlohmann::json;

namespace {

// --- the test ---------------------------------------------------------------------------------

// For each rate t the product of exp(t x) / E exp(t x) over all frogs has the mean 1 for a player
// whose frogs win like this, and so has the average over several rates. That it ever reaches 200
// has a chance of at most 1 in 200. It needs no normal distribution, which jackpots don't have, and
// may be looked at as often as one likes.
constexpr double RATE_LEAST = 0.0005;
constexpr int RATES_UP = 6, RATES_DOWN = 10;  // each twice the last

struct Spread {
  double mean = 0, error = 0;  // of the lab's mean
  double shared = 0;           // variance that frogs of one boot share, for each frog
};

double mean_of(const PayPlayer& player) {
  double frogs = 0, tickets = 0;
  for (const auto& side : player.frogs) {
    for (const auto& [won, count] : side) {
      frogs += static_cast<double>(count);
      tickets += static_cast<double>(count) * won;
    }
  }
  return frogs > 0 ? tickets / frogs : 0;
}

Spread spread_of(const PayPlayer& player) {
  Spread spread;
  spread.mean = mean_of(player);
  double frogs = 0, squares = 0;
  for (const auto& side : player.frogs) {
    for (const auto& [won, count] : side) {
      frogs += static_cast<double>(count);
      squares += static_cast<double>(count) * (won - spread.mean) * (won - spread.mean);
    }
  }
  constexpr double HALF_WIDTHS = 1.96;
  spread.error = player.half_width / HALF_WIDTHS;
  spread.shared = std::max(0.0, spread.error * spread.error * frogs - squares / frogs);
  return spread;
}

// The logarithm of E exp(t x), and on top of it what the lab isn't sure of and what boots share.
double log_moment(const PayPlayer& player, int side, double t) {
  double frogs = 0, sum = 0;
  for (const auto& [won, count] : player.frogs[side]) {
    frogs += static_cast<double>(count);
    sum += static_cast<double>(count) * std::exp(t * won);
  }
  const Spread spread = spread_of(player);
  return std::log(sum / frogs) + 2 * spread.error * std::abs(t) + spread.shared * t * t / 2;
}

double evidence(const PaySums& sums, const std::vector<PayPlayer>& players, double sign,
                int rates) {
  double average = 0;
  for (int rate = 0; rate < rates; ++rate) {
    const double t = sign * std::ldexp(RATE_LEAST, rate);
    double exponent = 0;
    for (int side = 0; side < SIDE_COUNT; ++side) {
      double most = 0;
      for (const PayPlayer& player : players) {
        const double one = log_moment(player, side, t);
        most = &player == players.data() ? one : std::max(most, one);
      }
      exponent += t * static_cast<double>(sums.tickets[side]) -
                  most * static_cast<double>(sums.frogs[side]);
    }
    average += std::exp(std::min(exponent, 600.0)) / rates;
  }
  return average;
}

// --- text -------------------------------------------------------------------------------------

std::string formatted(const char* format, double value) {
  char text[48];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

constexpr const char* HISTOGRAMS[SIDE_COUNT] = {"histogram_left", "histogram_right"};

// A player as the lab writes it; throws if it isn't one.
PayPlayer player_of(const json& lab) {
  PayPlayer player;
  player.name = lab.at("player").get<std::string>();
  player.half_width = lab.at("tickets_per_frog").at("half_width_95").get<double>();
  for (int side = 0; side < SIDE_COUNT; ++side) {
    for (const auto& [won, count] : lab.at(HISTOGRAMS[side]).items()) {
      player.frogs[side][std::stoi(won)] = count.get<std::int64_t>();
    }
    if (player.frogs[side].empty()) throw std::invalid_argument("no frogs");
  }
  return player;
}

json json_of(const PayPlayer& player) {
  json lab = {{"player", player.name},
              {"tickets_per_frog", {{"half_width_95", player.half_width}}}};
  for (int side = 0; side < SIDE_COUNT; ++side) {
    for (const auto& [won, count] : player.frogs[side]) {
      lab[HISTOGRAMS[side]][std::to_string(won)] = count;
    }
  }
  return lab;
}

bool is_volume(std::string_view setting) {
  return setting == SETTINGS[PREF_VOLUME].name || setting == SETTINGS[PREF_ATTRACT_VOLUME].name;
}

bool changes_settings(const JournalLine& line) {
  const std::string_view reset = field_of(line, "reset");
  return (line.kind == JOURNAL_SETTING && !is_volume(field_of(line, "setting"))) ||
         (line.kind == JOURNAL_RESET && (reset == "adjustments" || reset == "factory"));
}

}  // namespace

PaySums pay_sums(const Journal& journal, std::int64_t since_ms) {
  PaySums sums;
  sums.since_ms = since_ms;
  for (const JournalLine& line : journal.lines) {
    if (line.utc_ms < since_ms) continue;
    if (changes_settings(line)) {
      sums = {};
      sums.since_ms = line.utc_ms;
    } else if (line.kind == JOURNAL_TICKETS && field_of(line, "by") == "catch") {
      ++sums.frogs[side_of(line)];
      sums.tickets[side_of(line)] += number_of(line, "tickets");
    }
  }
  if (sums.since_ms == 0 && !journal.lines.empty()) sums.since_ms = journal.lines.front().utc_ms;
  return sums;
}

PayResult pay_judge(const PaySums& sums, const std::vector<PayPlayer>& players) {
  PayResult result;
  result.frogs = sums.frogs[SIDE_LEFT] + sums.frogs[SIDE_RIGHT];
  if (players.empty() || result.frogs == 0) return result;
  const double above = evidence(sums, players, 1, RATES_UP);
  const double below = evidence(sums, players, -1, RATES_DOWN);
  result.p = std::min(1.0, 1 / std::max(above, below));
  if (result.p <= PAY_ALARM_P) result.verdict = above > below ? PAYS_ABOVE : PAYS_BELOW;
  return result;
}

std::string pay_sentence(const PaySums& sums, const std::vector<PayPlayer>& players,
                         const PayResult& result) {
  constexpr const char* MEANINGS[PAY_VERDICTS] = {
      "That is inside what players do", "That is above: an expert, a wrong setting or a fault",
      "That is below: something is broken or blocked"};
  const double tickets = static_cast<double>(sums.tickets[SIDE_LEFT] + sums.tickets[SIDE_RIGHT]);
  if (result.frogs == 0) return "No frog has been paid by its catch since the last change.";
  std::string text = std::to_string(result.frogs) + " frogs since " +
                     moment_for_people(sums.since_ms) + " won " +
                     formatted("%.2f", tickets / static_cast<double>(result.frogs)) +
                     " tickets each. With these settings the lab's players win";
  for (const PayPlayer& player : players) {
    text += (&player == players.data() ? " " : ", ") + formatted("%.2f", mean_of(player)) + " (" +
            player.name + ")";
  }
  return text + ". " + MEANINGS[result.verdict] + " (p = " + formatted("%.2g", result.p) + ").";
}

std::string pay_settings(const Prefs& table) {
  std::string text;
  for (const Setting& setting : SETTINGS) {
    if (setting.menu == NO_MENU) continue;
    const PrefRow& row = table[setting.pref];
    text += (text.empty() ? "" : " ") +
            (setting_is_real(setting) ? formatted("%.9g", static_cast<double>(row.float_value))
                                      : std::to_string(row.int_value.get()));
  }
  return text;
}

bool pay_player_read(const std::string& text, PayPlayer& player) {
  try {
    player = player_of(json::parse(text));
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

PayFile pay_read(const std::string& path) {
  PayFile file;
  std::ifstream stream(path);
  try {
    const json kept = json::parse(stream);
    file.settings = kept.at("settings").get<std::string>();
    const std::string verdict = kept.at("verdict").get<std::string>();
    for (int word = 0; word < PAY_VERDICTS; ++word) {
      if (verdict == PAY_WORDS[word]) file.result.verdict = static_cast<PayVerdict>(word);
    }
    file.result.p = kept.at("p").get<double>();
    file.result.frogs = kept.at("frogs").get<std::int64_t>();
    file.result.utc_ms = kept.at("utc_ms").get<std::int64_t>();
    for (const json& player : kept.at("players")) file.players.push_back(player_of(player));
    return file;
  } catch (const std::exception&) {
    return {};
  }
}

std::string pay_write(const std::string& path, const PayFile& file) {
  json kept = {{"settings", file.settings},    {"verdict", PAY_WORDS[file.result.verdict]},
               {"p", file.result.p},           {"frogs", file.result.frogs},
               {"utc_ms", file.result.utc_ms}, {"players", json::array()}};
  for (const PayPlayer& player : file.players) kept["players"].push_back(json_of(player));
  return file_replace(path, kept.dump() + '\n');
}
