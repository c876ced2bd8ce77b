// What the game asks of a player who hesitates.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <numbers>

#include "books/prefs.h"
#include "frame/game_clock.h"   // now_ms
#include "frame/tick_timers.h"  // credit_wait_ms, idle_ms, ...
#include "playfield/playfield.h"
#include "presentation/draw_tools.h"
#include "presentation/scene.h"

namespace {

constexpr std::int64_t PATIENCE_MS = 5000;
constexpr std::int64_t BUBBLE_AFTER_MS = 2000;

void seconds_left_draw(int side) {
  const std::int32_t timeout_s = pref_int(PREF_TIMEOUT_SECONDS);
  if (timeout_s < 0) return;  // -1: no frog is launched by itself
  const double waited_s = static_cast<double>(tick_timers.credit_wait_ms[side]) / 1000.0;
  char line[16];
  std::snprintf(line, sizeof line, "%d", static_cast<int>(timeout_s - waited_s));
  const double centre = side == SIDE_LEFT ? 356.0 : 1036.0;
  const double half = FONTS[FONT_29X43].glyph_width / 2.0 * static_cast<double>(std::strlen(line));
  text_shadowed(FONT_29X43, static_cast<int>(centre - half - 14.0), 502, line);
}

void side_start_draw(int side) {
  if (tick_timers.credit_wait_ms[side] <= PATIENCE_MS) return;
  if (tick_timers.idle_ms[side] <= PATIENCE_MS) return;
  const int right = side * HALF_WIDTH_PX;
  const bool down = now_ms() % 1000 >= 500;
  picture_draw(down ? PANEL_PRSBTN_FROG_DN : PANEL_PRSBTN_FROG_UP, 249 + right, 434);
  picture_draw(PANEL_PRESS_TO_GRN_TXT, 212 + right, 380);
  picture_draw(PANEL_START_GRN_TXT, 212 + right, 542);
  seconds_left_draw(side);
}

void side_coin_draw(int side) {
  if (now_ms() >= tick_timers.coin_prompt_until[side]) return;
  const double t = static_cast<double>(now_ms() - tick_timers.coin_prompt_start[side]) / 1000.0;
  const double swell = 0.5 + 0.5 * std::cos(2.0 * std::numbers::pi * t + std::numbers::pi);
  const std::uint32_t colour = faded(COLOUR_WHITE, static_cast<std::int32_t>(swell * 255.0));
  const int x = 218 + side * HALF_WIDTH_PX;
  if (pref_int(PREF_CURRENCY_UNIT) == CURRENCY_SWIPES) {
    picture_draw(PANEL_SWIPE_CRD, x, 326, colour);
  } else {
    picture_draw(PANEL_INSERTCOIN_GRN, x, 350, colour);
  }
}

bool frog_stands_ready(int side) {
  const FrogQueue& queue = frog_queues[side];
  const Frog* head = queue.count > 0 ? queue.places[0].get() : nullptr;
  return head != nullptr && (head->flags & FROG_HIDDEN) == 0;
}

void bubble_draw(PanelIndex bubble, int side) {
  picture_draw(bubble, 360 + side * HALF_WIDTH_PX, 576);
}

// After a game: "play again".
void thanks_draw(int side) {
  const std::int64_t since_ms = tick_timers.since_award_ms[side];
  if (since_ms < 1 || since_ms > 8999 || !station_idle(side)) return;
  if (since_ms % 3000 < 2000) bubble_draw(PANEL_MSG2_BUBBLE, side);
}

// With a credit: two seconds of a hint, one of nothing, and so on.
void hint_draw(int side, std::int64_t wait_ms) {
  if (!pref_on(PREF_TICKET_USE)) return;
  if (pref_on(PREF_FIXED_TICKET)) {
    if (wait_ms % 3000 < 2000) bubble_draw(PANEL_MSG1_BUBBLE, side);
    return;
  }
  const std::int64_t phase_ms = wait_ms % 6000;
  if (phase_ms < 2000) bubble_draw(PANEL_MSG1_BUBBLE, side);
  if (phase_ms >= 3000 && phase_ms < 5000) bubble_draw(PANEL_MSG3_BUBBLE, side);
}

}  // namespace

void prompt_start_draw() {
  for (int side = 0; side < SIDE_COUNT; ++side) side_start_draw(side);
}

void prompt_coin_draw() {
  for (int side = 0; side < SIDE_COUNT; ++side) side_coin_draw(side);
}

void bubbles_draw() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    if (!frog_stands_ready(side)) continue;
    const std::int64_t wait_ms = tick_timers.credit_wait_ms[side];
    if (wait_ms > BUBBLE_AFTER_MS) {
      hint_draw(side, wait_ms);
    } else {
      thanks_draw(side);
    }
  }
}
