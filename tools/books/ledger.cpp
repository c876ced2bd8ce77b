#include "tools/books/ledger.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <utility>

#include "tools/books/moment.h"

namespace {

// The books are stored right after money has moved, so only the last moment of a run can be missing
// from them.
constexpr std::int64_t STORE_MOST_MS = 2000;

struct Paid {
  std::string by;
  std::int64_t utc_ms;
};

struct Moved {  // the counts after a line that changed them
  Counts counts;
  const JournalLine* line;
};

bool moves_money(const JournalLine& line) {
  return line.kind == JOURNAL_COIN || line.kind == JOURNAL_SWIPE || line.kind == JOURNAL_SERVICE ||
         line.kind == JOURNAL_TICKETS;
}

std::string named(int side) {
  return std::string(SIDE_WORDS[side]) + ": ";
}

class Replay {
 public:
  explicit Replay(Ledger& result) : ledger(result) {}

  void take(const JournalLine& line);
  void compare_with(const Counts& books, const char* whose);
  void finish() { run_end = "the run goes on"; }

 private:
  Game* flying(int side);
  Game* of_number(int side, std::int64_t number);
  void find(bool wrong, std::string text);
  void moved(const JournalLine& line);
  void differences(const Counts& books, const char* whose);
  void settle_paper(int side);

  void start(const JournalLine& line);
  void books(const JournalLine& line);
  void coin(const JournalLine& line);
  void service(const JournalLine& line);
  void launch(const JournalLine& line);
  void caught(const JournalLine& line);
  void end(const JournalLine& line);
  void tickets(const JournalLine& line);
  void restored(const JournalLine& line);
  void paper(const JournalLine& line);
  void cleared(const JournalLine& line);
  void tickets_cleared(const JournalLine& line);
  void lost(const JournalLine& line);

  Ledger& ledger;
  Counts books_line;  // as far as its two lines have come
  bool reset_seen = false, ended_orderly = false, store_fails = false;
  std::string run_end = "the run goes on";  // how and when the last run ended
  bool paper_sure[SIDE_COUNT]{};            // the board's count was seen in this run
  std::deque<Paid> credits[SIDE_COUNT];     // not played yet, the oldest first
  std::vector<Moved> history;               // since the last books lines; the first has no line
  std::int64_t last_ms = 0;  // of the latest event; a start says nothing of the run before
  std::int64_t now_ms = 0;
};

void Replay::find(bool wrong, std::string text) {
  ledger.findings.push_back({wrong, now_ms, std::move(text)});
}

Game* Replay::flying(int side) {
  const auto game = std::find_if(ledger.games.rbegin(), ledger.games.rend(),
                                 [&](const Game& one) { return one.side == side; });
  return game != ledger.games.rend() && game->state == GAME_FLYING ? &*game : nullptr;
}

Game* Replay::of_number(int side, std::int64_t number) {
  const auto game = std::find_if(ledger.games.rbegin(), ledger.games.rend(),
                                 [&](const Game& one) { return one.side == side; });
  return game != ledger.games.rend() && game->number == number ? &*game : nullptr;
}

void Replay::moved(const JournalLine& line) {
  if (ledger.counts_known) history.push_back({ledger.counts, &line});
}

// --- books against journal --------------------------------------------------------------------

void Replay::differences(const Counts& books, const char* whose) {
  const auto differ = [&](const std::string& what, std::int64_t theirs, std::int64_t ours) {
    if (theirs == ours) return;
    find(true, what + ": " + whose + " have " + std::to_string(theirs) + ", by the journal it is " +
                   std::to_string(ours));
  };
  for (int side = 0; side < SIDE_COUNT; ++side) {
    const SideCounts& theirs = books.sides[side];
    const SideCounts& ours = ledger.counts.sides[side];
    differ(named(side) + "coins", theirs.coins, ours.coins);
    differ(named(side) + "coins towards a credit", theirs.part, ours.part);
    differ(named(side) + "credits", theirs.credits, ours.credits);
    differ(named(side) + "frogs", theirs.games, ours.games);
    differ(named(side) + "tickets", theirs.tickets, ours.tickets);
  }
  differ("service credits", books.service, ledger.counts.service);
}

// The books may be those of a moment before: a launch is stored with the next money, and a kill can
// come between the journal and the books.
void Replay::compare_with(const Counts& books, const char* whose) {
  if (!ledger.counts_known) return;
  const auto same = std::find_if(history.rbegin(), history.rend(),
                                 [&](const Moved& one) { return one.counts == books; });
  if (same == history.rend() || (ended_orderly && same != history.rbegin())) {
    differences(books, whose);
    return;
  }
  for (auto one = same.base(); one != history.end(); ++one) {
    const JournalLine& line = *one->line;
    const bool wrong = moves_money(line) && !store_fails && line.utc_ms < last_ms - STORE_MOST_MS;
    find(wrong, std::string(whose) + " don't have \"" + std::string(line.text) + "\"" +
                    (wrong ? ", though there was time to store it" : ": " + run_end));
  }
}

void Replay::start(const JournalLine& line) {
  const std::string how{field_of(line, "last")};
  ended_orderly = how == "orderly" || how == "reboot";
  run_end = "the power went";
  if (how == "killed") run_end = "the game was killed";
  if (ended_orderly) run_end = "the game ended";
  if (last_ms != 0) run_end += " after " + moment_for_people(last_ms);
  for (int side = 0; side < SIDE_COUNT; ++side) {
    if (Game* game = flying(side)) {
      game->state = GAME_CUT_OFF;
      find(false, named(side) + "game " + std::to_string(game->number) + " was in flight when " +
                      run_end + "; it ended unpaid");
    }
    paper_sure[side] = false;
  }
}

void Replay::books(const JournalLine& line) {
  const int side = side_of(line);
  books_line.sides[side] = {number_of(line, "coins"), number_of(line, "part"),
                            number_of(line, "credits"), number_of(line, "games"),
                            number_of(line, "tickets")};
  books_line.service = number_of(line, "service");
  if (side != SIDE_RIGHT) return;
  if (!reset_seen) compare_with(books_line, "the books at the start");
  reset_seen = false;
  ended_orderly = false;
  for (int one = 0; one < SIDE_COUNT; ++one) {
    const auto standing =
        static_cast<std::size_t>(std::max<std::int64_t>(books_line.sides[one].credits, 0));
    // A credit that a kill gave back was paid for before.
    while (credits[one].size() > standing) credits[one].pop_front();
    while (credits[one].size() < standing) credits[one].push_front({"credit", 0});
  }
  ledger.counts = books_line;
  ledger.counts_known = true;
  history.assign(1, {books_line, nullptr});
}

// --- money and frogs --------------------------------------------------------------------------

void Replay::coin(const JournalLine& line) {
  const int side = side_of(line);
  SideCounts& counts = ledger.counts.sides[side];
  counts.coins += number_of(line, "coins");
  counts.part = number_of(line, "part");
  counts.credits = number_of(line, "credits");
  while (static_cast<std::int64_t>(credits[side].size()) < counts.credits) {
    credits[side].push_back({JOURNAL_ROWS[line.kind].name, line.utc_ms});
  }
  moved(line);
}

void Replay::service(const JournalLine& line) {
  ledger.counts.service += number_of(line, "service");
  for (int side = 0; side < SIDE_COUNT; ++side) {
    SideCounts& counts = ledger.counts.sides[side];
    counts.credits = number_of(line, SIDE_WORDS[side]);
    while (static_cast<std::int64_t>(credits[side].size()) < counts.credits) {
      credits[side].push_back({"service credit", line.utc_ms});
    }
  }
  moved(line);
}

void Replay::launch(const JournalLine& line) {
  Game game;
  game.side = side_of(line);
  game.number = number_of(line, "game");
  game.boot = line.boot;
  game.launched_ms = line.utc_ms;
  SideCounts& counts = ledger.counts.sides[game.side];
  if (field_of(line, "paid") == "free") {
    game.paid = "free play";
  } else if (!credits[game.side].empty()) {
    game.paid = credits[game.side].front().by;
    game.paid_ms = credits[game.side].front().utc_ms;
    credits[game.side].pop_front();
  }
  if (Game* before = flying(game.side)) before->state = GAME_CUT_OFF;
  if (ledger.counts_known && game.number != counts.games + 1) {
    find(true, named(game.side) + "game " + std::to_string(game.number) + " follows game " +
                   std::to_string(counts.games));
  }
  counts.games = game.number;
  counts.credits = number_of(line, "credits");
  ledger.games.push_back(std::move(game));
  moved(line);
}

void Replay::caught(const JournalLine& line) {
  Game* game = of_number(side_of(line), number_of(line, "game"));
  if (game == nullptr) return;
  game->catches.push_back(
      {line.utc_ms, std::string(field_of(line, "catch")), number_of(line, "worth")});
}

void Replay::end(const JournalLine& line) {
  Game* game = of_number(side_of(line), number_of(line, "game"));
  if (game == nullptr) return;
  game->state = GAME_ENDED;
  game->ended_ms = line.utc_ms;
  game->award = field_of(line, "award");
  game->purse = number_of(line, "purse");
  game->capped = number_of(line, "capped");
}

void Replay::cleared(const JournalLine& line) {
  SideCounts& counts = ledger.counts.sides[side_of(line)];
  counts.credits = counts.part = 0;
  credits[side_of(line)].clear();
  moved(line);
}

void Replay::lost(const JournalLine& line) {
  find(false, std::string(field_of(line, "events")) +
                  " events were lost here; counting begins anew with the next start");
  ledger.counts_known = false;
  history.clear();
}

// --- paper ------------------------------------------------------------------------------------

void Replay::settle_paper(int side) {
  for (auto game = ledger.games.rbegin(); game != ledger.games.rend(); ++game) {
    if (game->side != side || game->paper == 0 || !game->told || game->cancelled) continue;
    const bool out = game->paper_end <= ledger.paper[side].out;
    if (out && game->paper_ms != 0) return;  // and so are all before it
    game->paper_ms = out ? now_ms : 0;
  }
}

void Replay::tickets(const JournalLine& line) {
  const int side = side_of(line);
  const std::int64_t amount = number_of(line, "paper");
  const bool told = field_of(line, "told") == "yes";
  PaperCounts& counts = ledger.paper[side];
  if (told) {
    counts.told += amount;
    counts.owed += amount;
  }
  if (!told && amount > 0) {
    find(false, named(side) + "no board to tell of " + std::to_string(amount) +
                    " tickets; they stand in the books alone");
  }
  ledger.counts.sides[side].tickets += number_of(line, "tickets");
  moved(line);
  Game* game = of_number(side, number_of(line, "game"));
  if (game == nullptr) return;
  game->tickets = number_of(line, "tickets");
  game->paper = amount;
  game->told = told;
  game->paper_end = counts.told;
}

// A board that has lost its power has lost its count: what the books owe is ordered anew. One that
// has kept it goes on paying, and gets only what it has not answered for.
void Replay::restored(const JournalLine& line) {
  const int side = side_of(line);
  const std::int64_t unanswered = number_of(line, "queued");
  if (unanswered > 0) {
    find(false, named(side) + std::to_string(unanswered) +
                    " tickets ordered again, for which the board had not answered: " + run_end);
  }
  if (field_of(line, "told") != "yes") return;
  const std::int64_t ordered = number_of(line, "owed");
  PaperCounts& counts = ledger.paper[side];
  const std::int64_t more = ordered - counts.owed;
  if (ledger.counts_known && more > 0) {
    find(false, named(side) + std::to_string(ordered) + " tickets ordered anew, " +
                    std::to_string(more) + " of which had come out already: " + run_end);
  } else if (ledger.counts_known && more < 0) {
    find(false, named(side) + std::to_string(-more) +
                    " tickets that were owed are not ordered anew: " + run_end);
  }
  for (Game& game : ledger.games) {
    if (game.side == side && game.paper_end > counts.out) game.paper_end += more;
  }
  counts.told += more;
  counts.owed = ordered;
  paper_sure[side] = true;
}

void Replay::paper(const JournalLine& line) {
  const int side = side_of(line);
  PaperCounts& counts = ledger.paper[side];
  const std::int64_t owed = number_of(line, "owed") + number_of(line, "queued");
  if (!paper_sure[side] && owed != counts.owed && ledger.counts_known) {
    find(false, named(side) + std::to_string(counts.owed) + " tickets were owed when " + run_end +
                    ", " + std::to_string(owed) + " when the board was asked again");
  }
  paper_sure[side] = true;
  counts.out += counts.owed - owed;
  counts.owed = owed;
  settle_paper(side);
}

// What is owed is no longer told, and doesn't come out.
void Replay::tickets_cleared(const JournalLine& line) {
  const int side = side_of(line);
  PaperCounts& counts = ledger.paper[side];
  for (Game& game : ledger.games) {
    if (game.side == side && game.paper_end > counts.out) game.cancelled = true;
  }
  counts.told -= counts.owed;
  counts.owed = 0;
}

void Replay::take(const JournalLine& line) {
  now_ms = line.utc_ms;
  switch (line.kind) {
    case JOURNAL_START:
      start(line);
      break;
    case JOURNAL_BOOKS:
      books(line);
      break;
    case JOURNAL_COIN:
    case JOURNAL_SWIPE:
      coin(line);
      break;
    case JOURNAL_SERVICE:
      service(line);
      break;
    case JOURNAL_LAUNCH:
      launch(line);
      break;
    case JOURNAL_CATCH:
      caught(line);
      break;
    case JOURNAL_END:
      end(line);
      break;
    case JOURNAL_TICKETS:
      tickets(line);
      break;
    case JOURNAL_RESTORED:
      restored(line);
      break;
    case JOURNAL_PAPER:
      paper(line);
      break;
    case JOURNAL_CREDITS_CLEARED:
      cleared(line);
      break;
    case JOURNAL_TICKETS_CLEARED:
      tickets_cleared(line);
      break;
    case JOURNAL_LOST:
      lost(line);
      break;
    case JOURNAL_RESET:
      reset_seen = field_of(line, "reset") == "audits" || field_of(line, "reset") == "factory";
      break;
    case JOURNAL_STOP:
      ended_orderly = true;
      break;
    case JOURNAL_NOT_STORED:
      store_fails = true;
      find(false, std::string(field_of(line, "file")) + " couldn't be stored");
      break;
    case JOURNAL_STORED:
      store_fails = false;
      break;
    default:
      break;
  }
  if (line.kind != JOURNAL_START && line.kind != JOURNAL_BOOKS) last_ms = line.utc_ms;
}

Counts counts_of(const Audits& audits) {
  const auto count = [&](int row) { return std::int64_t{audits[row].count.get()}; };
  Counts counts;
  for (int side = 0; side < SIDE_COUNT; ++side) {
    counts.sides[side] = {count(AUDIT_COIN_DROPS + side), count(AUDIT_CURRENT_COINS + side),
                          count(AUDIT_CURRENT_CREDITS + side), count(AUDIT_GAMES_PLAYED + side),
                          count(AUDIT_TICKETS + side)};
  }
  counts.service = count(AUDIT_SERVICE_CREDITS);
  return counts;
}

}  // namespace

Ledger ledger_of(const Drive& drive) {
  Ledger ledger;
  Replay replay(ledger);
  for (const JournalLine& line : drive.journal.lines) replay.take(line);
  replay.finish();
  if (drive.has_audits) replay.compare_with(counts_of(drive.audits), "the books");
  return ledger;
}
