#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/books/answers.h"
#include "tools/books/moment.h"

namespace {

constexpr struct {
  std::string_view what;
  const char* words;
} CATCHES[] = {{"bug", "a bug"},
               {"butterfly", "a butterfly"},
               {"tier1", "a Tier 1 log"},
               {"tier2", "a Tier 2 log"},
               {"jackpot", "the jackpot"}};

std::string in_words(const std::string& what) {
  for (const auto& row : CATCHES) {
    if (row.what == what) return row.words;
  }
  return what;
}

// "19:13:09": a story names the day once.
std::string hour(std::int64_t utc_ms) {
  return moment_for_people(utc_ms).substr(11);
}

std::string amount(std::int64_t tickets) {
  return std::to_string(tickets) + (tickets == 1 ? " ticket" : " tickets");
}

std::string outcome(const Game& game) {
  if (game.state == GAME_FLYING) return "It is still in flight.";
  if (game.state == GAME_CUT_OFF)
    return "The game was cut off before the frog's end and paid nothing.";
  std::string text = "Won " + amount(game.tickets) + " at " + hour(game.ended_ms);
  if (game.award == "minimum") text += ", the minimum";
  if (game.capped > 0) text += "; the cap took " + std::to_string(game.capped);
  if (game.tickets != game.purse) text += " (a purse of " + std::to_string(game.purse) + ")";
  text += ".";
  if (game.paper == 0) return text;
  if (!game.told) return text + " There was no board to pay them.";
  if (game.cancelled) return text + " The rest of the paper was cancelled.";
  if (game.paper_ms == 0) return text + " The paper is not all out.";
  return text + " The paper was out at " + hour(game.paper_ms) + ".";
}

std::string moment_or_nothing(std::int64_t utc_ms) {
  return utc_ms == 0 ? "" : moment_for_files(utc_ms);
}

}  // namespace

std::vector<Game> games_of(const Ledger& ledger, const Question& question) {
  std::vector<Game> games;
  for (const Game& game : ledger.games) {
    if (question.side >= 0 && game.side != question.side) continue;
    if (question.has_since && game.launched_ms < question.since_ms) continue;
    games.push_back(game);
  }
  if (question.last > 0 && games.size() > question.last) {
    games.erase(games.begin(), games.end() - static_cast<std::ptrdiff_t>(question.last));
  }
  return games;
}

Table games_table(const std::vector<Game>& games) {
  Table table{"games",
              {"side", "game", "boot", "paid_by", "paid", "launched", "catches", "ended", "award",
               "purse", "capped", "tickets", "paper", "paper_out", "state"},
              {}};
  constexpr const char* STATES[] = {"flying", "ended", "cut off"};
  for (const Game& game : games) {
    std::string catches;
    for (const Catch& one : game.catches) {
      catches += (catches.empty() ? "" : " ") + one.what + ":" + std::to_string(one.worth);
    }
    table.rows.push_back(
        {SIDE_WORDS[game.side], std::to_string(game.number), std::to_string(game.boot), game.paid,
         moment_or_nothing(game.paid_ms), moment_or_nothing(game.launched_ms), catches,
         moment_or_nothing(game.ended_ms), game.award, std::to_string(game.purse),
         std::to_string(game.capped), std::to_string(game.tickets), std::to_string(game.paper),
         moment_or_nothing(game.paper_ms), STATES[game.state]});
  }
  return table;
}

std::string game_story(const Game& game) {
  std::string text = moment_for_people(game.launched_ms).substr(0, 10) + ", " +
                     SIDE_WORDS[game.side] + " game " + std::to_string(game.number) + ": ";
  if (game.paid == "free play") {
    text += "free play, ";
  } else if (game.paid_ms != 0) {
    text += "paid by " + game.paid + " at " + hour(game.paid_ms) + ", ";
  } else {
    text += "paid by an earlier credit, ";
  }
  text += "launched at " + hour(game.launched_ms) + ". Caught ";
  if (game.catches.empty()) text += "nothing";
  for (auto one = game.catches.begin(); one != game.catches.end();) {
    const auto next = std::find_if(one, game.catches.end(), [&](const Catch& other) {
      return other.what != one->what || other.worth != one->worth;
    });
    if (one != game.catches.begin()) text += ", ";
    if (next - one > 1) text += std::to_string(next - one) + " times ";
    text += in_words(one->what) + " (" + std::to_string(one->worth) + ")";
    one = next;
  }
  return text + ". " + outcome(game);
}

Table events_table(const Drive& drive, const Question& question) {
  Table table{"events", {"time", "boot", "event", "fields"}, {}};
  for (const JournalLine& line : drive.journal.lines) {
    const std::string name = JOURNAL_ROWS[line.kind].name;
    if (question.has_since && line.utc_ms < question.since_ms) continue;
    if (!question.kind.empty() && name != question.kind) continue;
    if (question.side >= 0 && field_of(line, "side") != SIDE_WORDS[question.side]) continue;
    const std::string boot = std::to_string(line.boot);
    const std::size_t head = 24 + 1 + boot.size() + 1 + name.size() + 1;
    table.rows.push_back({moment_for_files(line.utc_ms), boot, name,
                          std::string(line.text.substr(std::min(head, line.text.size())))});
  }
  if (question.last > 0 && table.rows.size() > question.last) {
    table.rows.erase(table.rows.begin(),
                     table.rows.end() - static_cast<std::ptrdiff_t>(question.last));
  }
  return table;
}

Table check_table(const Ledger& ledger) {
  Table table{"check", {"time", "verdict", "what"}, {}};
  for (const Finding& finding : ledger.findings) {
    table.rows.push_back(
        {moment_for_files(finding.utc_ms), finding.wrong ? "wrong" : "explained", finding.text});
  }
  return table;
}
