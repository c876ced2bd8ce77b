// What each contact and each end of a frog pays, books and sounds. Game thread.
#pragma once

#include <cstdint>

#include "playfield/playfield.h"

// Adds base and butterfly up and cuts the total at "Maximum Tickets". The pieces aren't cut, so on
// a frog over the limit each call books the whole excess as capped again, a demo frog's too.
void purse_add_up(int side, Frog& frog);
// As a new frog has it, with the first cell of its pictures.
void purse_empty(Frog& frog);

void award_butterfly(int side, Frog& frog);
void award_bug(int side, Frog& frog, int lane, int cell);
// `stand_a`, `stand_b`: the cells that lane_probe found.
void award_gold(int side, Frog& frog, std::int32_t cell_value, std::int32_t stand_a,
                std::int32_t stand_b);
void award_minimum(int side, Frog& frog);
void award_sink_cues(const Frog& frog);
void award_payout(int side, const Frog& frog);
void award_jackpot(int side, Frog& frog);
void award_hop_cues();
void award_landing_cue();
void award_lead_cue(int lane);

// Forgets the cue timers, as at process start.
void awards_reset();
