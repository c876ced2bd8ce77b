// What a run counts: whole numbers in one flat record, so parts played by different processes, in
// any order, add up to exactly what one process counts.
#pragma once

#include <cstdint>

#include "books/audits.h"
#include "frame/sides.h"
#include "playfield/playfield.h"

constexpr int AWARD_KINDS = AWARD_FREE + 1;

// The cabinet's own books.
struct BooksSum {
  std::int64_t count[AUDIT_COUNT];
  std::int64_t time_ms[AUDIT_COUNT];
  std::int64_t histogram[SIDE_COUNT][HISTOGRAM_CELLS];
};

// The lab's separate count, from the frogs as they end. It shares nothing with the books.
struct AwardsSum {
  std::int64_t frogs[SIDE_COUNT];
  std::int64_t ended_on[SIDE_COUNT][LANE_COUNT];  // lane of the end
  std::int64_t of_kind[SIDE_COUNT][AWARD_KINDS];  // frogs whose base was last set by it
  std::int64_t base[SIDE_COUNT][AWARD_KINDS];     // their base tickets
  std::int64_t butterfly[SIDE_COUNT];             // butterfly tickets of frogs in the water
  std::int64_t total[SIDE_COUNT];                 // tickets paid, in points with two to a ticket
  std::int64_t paper[SIDE_COUNT];                 // tickets that should have come out
  std::int64_t histogram[SIDE_COUNT][HISTOGRAM_CELLS];
  std::int64_t beyond_histogram[SIDE_COUNT];  // tickets of frogs that it has no cell for
};

// Squares and products over the boots, each of which is one independent observation.
struct SpreadSum {
  std::int64_t frogs_squared, tickets_squared, tickets_frogs;
  std::int64_t jackpots_squared, jackpots_frogs;
};

struct Sums {
  std::int64_t boots;
  std::int64_t game_ms;
  BooksSum books;
  AwardsSum awards;
  SpreadSum spread;
  std::int64_t paper[SIDE_COUNT], ticket_pulses[SIDE_COUNT], coin_pulses[SIDE_COUNT];  // board
};
static_assert(sizeof(Sums) % sizeof(std::int64_t) == 0);

void sums_add(Sums& to, const Sums& from);

// Adds the books and the board at the end of a boot.
void sums_take_books(Sums& sums);
// Works out the spread of a record that holds one boot.
void sums_take_spread(Sums& boot);

// Both sides together.
std::int64_t sums_frogs(const Sums& sums);
std::int64_t sums_tickets(const Sums& sums);
std::int64_t sums_jackpots(const Sums& sums);
