#include "presentation/win_show.h"

#include <atomic>
#include <cstdio>

#include "books/prefs.h"
#include "frame/game_clock.h"  // now_ms, seconds_since
#include "frame/game_mode.h"   // sound_enabled
#include "frame/sides.h"
#include "frame/ticket_status.h"  // ticket_error, tickets_owed
#include "gfx/panel_table.h"      // the thumbs
#include "gfx/text.h"             // FONT_58X90
#include "platform/shared.h"
#include "playfield/ticket_dings.h"
#include "presentation/win_show_start.h"
#include "sound/jps.h"

namespace {

constexpr std::int64_t SHOW_MS = 20000;
constexpr std::int64_t SHOW_WITH_FAULT_MS = 10000;
constexpr float PAID_OUT_AFTER_S = 10.0F;  // a show that has paid ends here
constexpr float FADE_OUT_S = 0.125F;
constexpr float THUMB_RISES_S = 1.25F;
constexpr float THUMB_IDLES_S = 1.5F;

// The game thread begins a show, the worker ends it. `serial` names the show that runs and is set
// last: a worker that still sees the one before can't end the new one.
struct WinShow {
  std::atomic<int> serial;  // 0: none
  Shared<std::int64_t> start_ms, end_ms;
  Shared<std::int32_t> tickets;
};

constinit WinShow shows[SIDE_COUNT]{};
constinit int last_serial = 0;  // game thread

void play(const char* name) {
  if (sound_enabled) jps_bank_play_name(name);
}

}  // namespace

void win_show_start(int side, int tickets) {
  ticket_dings(0, tickets);
  play("jackpotbgm");
  play("jackpotcheer");
  WinShow& show = shows[side];
  show.tickets = tickets;
  show.start_ms = now_ms();
  show.end_ms = now_ms() + (ticket_status.ticket_error[side] ? SHOW_WITH_FAULT_MS : SHOW_MS);
  show.serial = ++last_serial;
}

bool win_show_active(int side) {
  return shows[side].serial != 0;
}

void win_show_step() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    WinShow& show = shows[side];
    int serial = show.serial;
    if (serial == 0) continue;
    const float elapsed = seconds_since(show.start_ms);
    const auto length = static_cast<float>(show.end_ms - show.start_ms) / 1000.0F;
    if (elapsed >= length + FADE_OUT_S) {
      if (!show.serial.compare_exchange_strong(serial, 0)) continue;
      if (shows[1 - side].serial == 0) {
        play("endjackpotbgm");
        play("endjackpotcheer");
      }
    } else if (elapsed < length && elapsed > PAID_OUT_AFTER_S &&
               ticket_status.tickets_owed[side] == 0) {
      if (show.serial == serial) show.end_ms = now_ms();
    }
  }
}

void win_show_draw() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    const WinShow& show = shows[side];
    if (show.serial == 0) continue;
    const float elapsed = seconds_since(show.start_ms);
    const bool rising = elapsed < THUMB_RISES_S;
    const SpriteSheet& sheet = sheets[rising ? SHEET_THUMBS_UP : SHEET_THUMBS_IDLE];
    const float run = rising ? elapsed / THUMB_RISES_S : (elapsed - THUMB_RISES_S) / THUMB_IDLES_S;
    const int frame = static_cast<int>(static_cast<float>(sheet.frames) * run) % sheet.frames;
    const int left = side == SIDE_LEFT ? 84 : 764;
    sheet.panel->colour = COLOUR_WHITE;
    gfx_sheet_draw(sheet, frame, left, 128);
    if (!pref_on(PREF_TICKET_USE)) continue;
    char digits[12];
    std::snprintf(digits, sizeof digits, "%d", show.tickets.get());
    const int x = left + 256 - text_width(FONT_58X90, digits) / 2;
    text_draw(FONT_58X90, COLOUR_BLACK, x + 4, 430, "%s", digits);
    text_draw(FONT_58X90, COLOUR_WHITE, x, 426, "%s", digits);
  }
}

void win_show_reset() {
  for (WinShow& show : shows) {
    show.serial = 0;
  }
}
