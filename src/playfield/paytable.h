// The payout model: one row of a fixed table, chosen by the operator's settings.
#pragma once

#include <cstdint>

#include "platform/shared.h"  // Shared

constexpr int PAYTABLE_ROWS = 45;

struct PaytableRow {
  std::int32_t row;
  std::int32_t bugs_per_lane;
  std::int32_t bug, butterfly, tier1, tier2, jackpot;
  std::int32_t bug_2pt, butterfly_2pt, tier1_2pt, tier2_2pt;  // with "Two Point Tickets"
};

// Tickets per frog that a row stands for: 3.0 to 25.0.
constexpr float PAYTABLE_LEAST = 3.0F;
constexpr float PAYTABLE_STEP = 0.5F;
constexpr float paytable_average(std::int32_t row) {
  return PAYTABLE_LEAST + PAYTABLE_STEP * static_cast<float>(row);
}

extern const PaytableRow paytable[PAYTABLE_ROWS];
extern Shared<std::int32_t> paytable_row;     // the row in force
extern Shared<std::int32_t> boost_factor;     // 2 with "Boost Bonus", else 1
extern Shared<std::int32_t> paytable_factor;  // on every value of the table; 1

// Chooses paytable_row from the money settings.
void paytable_row_update();
// Fills the meadow lanes 7 to 11 with bugs.
void bugs_seed();
// Sets boost_factor and fills lane 1.
void lane1_seed();
// The three above. Start-up, and the game thread out of play.
void payout_recompute();
// "Bonus Value" becomes the row's jackpot.
void bonus_value_reset();

// Tickets per frog that the money settings ask for. Settings that divide by nothing give 0.
float paytable_wanted();
// To a half: down below a quarter, up from three quarters.
float rounded_to_half(float wanted);
std::int32_t jackpot_value();
// The chance that a frog crosses, by the cells of the river alone.
float jackpot_chance();
std::int32_t bug_value();
std::int32_t butterfly_value();
std::int32_t tier1_value();
std::int32_t tier2_value();
std::int32_t minimum_value();
// The most that a frog pays, and what each frog pays with "Fixed Ticket".
std::int32_t maximum_value();
std::int32_t fixed_value();
// True if values are in points, two to a ticket.
bool pays_points();
