// The drawers of all families, by the names of their pictures.
#pragma once

#include "art/canvas.h"

namespace art {

// frog.cpp
void draw_frog_hop(const Cell& cell);
void draw_frog_breathe(const Cell& cell);
void draw_frog_look_round(const Cell& cell);
void draw_frog_yawn(const Cell& cell);
void draw_frog_win(const Cell& cell);
void draw_rider_wave(const Cell& cell);
void draw_rider_kiss(const Cell& cell);
void draw_frog_icon(const Cell& cell, double scale, double ground_y);

// bugs.cpp
void draw_caterpillar(const Cell& cell);
void draw_ladybug(const Cell& cell);
void draw_beetle(const Cell& cell);
void draw_lightningbug(const Cell& cell);
void draw_grasshopper(const Cell& cell);
void draw_butterfly(const Cell& cell);

// river.cpp
void draw_log(const Cell& cell, int length, bool gold);
void draw_turtle(const Cell& cell, bool gold);
void draw_three_turtles(const Cell& cell);
void draw_foam(const Cell& cell, int which);

// plants.cpp
void draw_plant(const Cell& cell, int which);
void draw_cattail(const Cell& cell, int which);
void draw_lily_pad(const Cell& cell);
void draw_finish(const Cell& cell);
void draw_grass(const Cell& cell, bool right);
void draw_patch(const Cell& cell, int which);

// signs.cpp
void draw_sign(const Cell& cell, bool price);
void draw_eat_bugs_board(const Cell& cell);
void draw_big_lily_pad(const Cell& cell);
void draw_logo(const Cell& cell);
void draw_mark_slymarvels(const Cell& cell);
void draw_mark_orb(const Cell& cell);
void draw_mark_tovali(const Cell& cell);
void draw_mark_play_to_win(const Cell& cell);

// backdrop.cpp
void draw_backdrop(const Cell& cell, bool right);
void draw_shadow(const Cell& cell);

// fonts.cpp
void draw_glyph_8x12(const Cell& cell);
void draw_glyph_chunky(const Cell& cell);
void draw_credit_digit(const Cell& cell);
void draw_jackpot_digit(const Cell& cell, int digit);

// messages.cpp
void draw_ticket(const Cell& cell);
void draw_you_won(const Cell& cell);
void draw_pink_ticket(const Cell& cell);
void draw_cycle_ticket(const Cell& cell);
void draw_demo(const Cell& cell);
void draw_lily_bonus(const Cell& cell);
void draw_frogs_label(const Cell& cell);
void draw_win_words(const Cell& cell, bool tickets);
void draw_prompt(const Cell& cell, const char* text, bool yellow, double y);
void draw_button(const Cell& cell, bool yellow, bool down);
void draw_insert_coin(const Cell& cell, bool yellow);
void draw_swipe_card(const Cell& cell);
void draw_bubble(const Cell& cell, const char* upper, const char* lower);
void draw_ticket_error(const Cell& cell);
void draw_io_error(const Cell& cell);

// effects.cpp
void draw_water_crown(const Cell& cell);
void draw_rings(const Cell& cell);
void draw_small_splash(const Cell& cell);
void draw_spark(const Cell& cell);
void draw_hearts(const Cell& cell);

// attract.cpp
void draw_thumb_up(const Cell& cell);
void draw_thumb_idle(const Cell& cell);
void draw_attract_frog(const Cell& cell);

}  // namespace art
