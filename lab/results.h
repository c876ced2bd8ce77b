// What a run's counts mean.
#pragma once

#include <cstdint>
#include <string>

#include "lab/run.h"
#include "lab/sums.h"

struct Estimate {  // of a mean, with the half width of its 95% interval
  double mean, half_width;
};

// The mean of a count per frog, from whole boots: `sum`, `squared` and `by_frogs` are its sum, the
// sum of its squares and of its products with the boot's frogs. With one boot the
// spread is unknown, and the half width is infinite.
Estimate estimate(std::int64_t sum, std::int64_t squared, std::int64_t by_frogs, std::int64_t frogs,
                  std::int64_t frogs_squared, std::int64_t boots);

// The factor of a two-sided 95% interval by Student's distribution.
double student_95(std::int64_t degrees);

struct AwardRow {
  const char* name;
  double per_frog;  // how often it was given
  double tickets;   // what it paid, per frog
};
constexpr int AWARD_ROWS = 6;

struct Results {
  RunPlan plan;
  std::int64_t boots, frogs;
  double game_s;
  Estimate tickets;         // per frog; in points with two to a ticket
  Estimate jackpots;        // per frog; infinite half width if none fell
  double jackpots_at_most;  // per frog, 95%: what seeing none leaves possible; NaN if one fell
  double paper;             // per frog, out of the dispenser
  double side_tickets[SIDE_COUNT];
  double lanes_climbed;         // of twelve
  double ended_on[LANE_COUNT];  // part of the frogs
  AwardRow awards[AWARD_ROWS];
  double capped;  // tickets per frog that the maximum cut, by the books
  // By the settings, for comparison.
  int row;
  double row_average, asked;                               // tickets per frog
  double percent_asked, percent_paid, percent_half_width;  // of the money, in percent; NaN if free
  double menu_jackpots;                                    // per frog
  double jackpot;                                          // tickets of one
};

// Under the settings in memory, which must be those of the run.
Results results_of(const RunPlan& plan, const Sums& sums);

std::string results_table(const Results& results, const Sums& sums);
std::string results_json(const Results& results, const Sums& sums);
