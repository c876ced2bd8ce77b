// The journal told again: every game, what the books must hold, what paper must have come out.
// Where books and journal differ, a finding says so.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "frame/sides.h"
#include "tools/books/drive.h"

struct SideCounts {
  std::int64_t coins = 0, part = 0, credits = 0, games = 0, tickets = 0;
  bool operator==(const SideCounts&) const = default;
};
struct Counts {  // what both the journal and the books count
  SideCounts sides[SIDE_COUNT];
  std::int64_t service = 0;
  bool operator==(const Counts&) const = default;
};

struct Catch {
  std::int64_t utc_ms;
  std::string what;
  std::int64_t worth;
};

enum GameState { GAME_FLYING, GAME_ENDED, GAME_CUT_OFF };

struct Game {
  int side = SIDE_LEFT;
  std::int64_t number = 0, boot = 0;
  std::string paid;          // the kind of event that paid for it; empty if unknown
  std::int64_t paid_ms = 0;  // 0: unknown
  std::int64_t launched_ms = 0, ended_ms = 0;
  std::vector<Catch> catches;
  std::string award;
  std::int64_t purse = 0, capped = 0, tickets = 0, paper = 0;
  bool told = true;            // the board was told of the paper
  bool cancelled = false;      // the operator has cleared what was owed
  std::int64_t paper_end = 0;  // of the side's paper, this game's is the part up to here
  std::int64_t paper_ms = 0;   // when all of it was out; 0: not yet
  GameState state = GAME_FLYING;
};

struct Finding {
  bool wrong;  // false: it is explained
  std::int64_t utc_ms;
  std::string text;
};

struct PaperCounts {
  std::int64_t told = 0, out = 0, owed = 0;  // told = out + owed
};

struct Ledger {
  std::vector<Game> games;  // as they were launched
  std::vector<Finding> findings;
  bool counts_known = false;
  Counts counts;
  PaperCounts paper[SIDE_COUNT];
};

Ledger ledger_of(const Drive& drive);

constexpr const char* SIDE_WORDS[SIDE_COUNT] = {"left", "right"};
