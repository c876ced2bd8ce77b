#include "presentation/win_show.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <numbers>

#include "books/prefs.h"
#include "frame/game_clock.h"  // now_ms, seconds_since, is_due, from_now_ms
#include "frame/sides.h"
#include "frame/tick_timers.h"    // next_vox_ms
#include "frame/ticket_status.h"  // ticket_error, tickets_owed
#include "gfx/panel_table.h"      // the thumbs
#include "gfx/text.h"             // FONT_58X90
#include "io/led_value.h"         // led_set_blink
#include "platform/random.h"      // random_unit
#include "platform/shared.h"
#include "playfield/cues.h"
#include "playfield/ticket_dings.h"
#include "presentation/draw_tools.h"
#include "presentation/ticket_flakes.h"
#include "presentation/win_show_start.h"

namespace {

constexpr std::int64_t SHOW_MS = 20000;
constexpr std::int64_t SHOW_WITH_FAULT_MS = 10000;
constexpr float PAID_OUT_AFTER_S = 10.0F;  // a show that has paid ends here
constexpr float FADE_OUT_S = 0.125F;
constexpr float THUMB_RISES_S = 1.25F;
constexpr float THUMB_IDLES_S = 1.5F;
constexpr float NUMBER_GROWS_FRAMES = 15.0F;
constexpr float PULSE_S = 1.25F;
constexpr float SPEECH_STOPS_S = 2.0F;  // before the end
constexpr float MOVE_S = 0.01666666753590107F;
constexpr float MOVES_PER_S = 60.0F;

constexpr int THUMB_X[SIDE_COUNT] = {84, 764};
constexpr int THUMB_Y = 128;
constexpr int THUMB_MIDDLE = 256;
constexpr int DIGIT_WIDTH = FONTS[FONT_58X90].glyph_width;
constexpr int DIGIT_HEIGHT = FONTS[FONT_58X90].glyph_height;

struct alignas(8) Thumb {    // one word, so that a cell is never drawn of the other sheet
  std::int32_t sheet_index;  // the thumb that rises, or the one that stands
  std::int32_t frame;
};
constexpr Thumb FIRST_THUMB = {SHEET_THUMBS_UP, 0};

// The game thread begins a show and the worker ends it. Each writes words of its own: what a late
// pass of the worker writes into a restarted show is set again by the next pass.
struct WinShow {
  struct {  // written by the game thread, the serial last
    Shared<std::int64_t> start_ms, end_ms;
    Shared<std::int32_t> flakes_on;
    Shared<std::int32_t> tickets;
    std::atomic<int> serial;  // names the show that runs, 0: none
  } begun;
  struct {  // written by the worker, the serial last
    std::int64_t start_ms, end_ms;
    Shared<Thumb> thumb;
    Shared<std::uint32_t> colour;  // white with the show's alpha
    Shared<float> scale, pulse;    // of the number
    float voice_at;                // seconds, when it may speak next
    std::int32_t moves;            // moves of the flakes so far
    std::atomic<int> serial;       // the show that these belong to
  } shown;
};

struct WinShows {
  WinShow side[SIDE_COUNT];
  int last_serial;  // game thread
};
constinit WinShows shows{};

void look_reset(WinShow& show) {
  show.shown.thumb = FIRST_THUMB;
  show.shown.colour = COLOUR_WHITE;
  show.shown.scale = 1.0F;
  show.shown.pulse = 1.0F;
}

void thumb_step(WinShow& show, float t) {
  if (show.shown.thumb.get().sheet_index == SHEET_THUMBS_UP) {
    const std::int32_t frames = sheets[SHEET_THUMBS_UP].frames;
    const auto frame = static_cast<std::int32_t>(static_cast<float>(frames) * t / THUMB_RISES_S);
    show.shown.scale = std::min(static_cast<float>(frame) / NUMBER_GROWS_FRAMES, 1.0F);
    if (frame < frames) {
      show.shown.thumb = {SHEET_THUMBS_UP, frame};
    } else {
      show.shown.thumb = {SHEET_THUMBS_IDLE, 0};
    }
  }
  if (show.shown.thumb.get().sheet_index == SHEET_THUMBS_IDLE) {
    const std::int32_t frames = sheets[SHEET_THUMBS_IDLE].frames;
    const auto frame = static_cast<std::int32_t>(static_cast<float>(frames) * t / THUMB_IDLES_S);
    show.shown.thumb = {SHEET_THUMBS_IDLE, frame % frames};
    show.shown.scale = 1.0F;
  }
  constexpr float PI = std::numbers::pi_v<float>;
  show.shown.pulse = std::cos(PI + 2.0F * PI * t / PULSE_S) * 0.1F + 1.1F;
}

void voice_step(WinShow& show, float t, float length) {
  if (show.shown.voice_at >= t || t >= length - SPEECH_STOPS_S) return;
  if (!is_due(tick_timers.next_vox_ms) || !pref_on(PREF_TICKET_USE)) return;
  cue_play("voxtickets");
  show.shown.voice_at = t + static_cast<float>(5.0 + 5.0 * random_unit());
  tick_timers.next_vox_ms = from_now_ms(2500.0, 2500.0);
}

void flakes_step(int side, float t) {
  WinShow& show = shows.side[side];
  if (show.begun.flakes_on != 0) ticket_flakes_drop(side);
  const auto moves = static_cast<std::int32_t>(MOVES_PER_S * t);
  const float dt_s = static_cast<float>(moves - show.shown.moves) * MOVE_S;
  if (dt_s > 0.0F) ticket_flakes_move(side, dt_s);
  show.shown.moves = moves;
}

void music_begin() {
  cue_play("jackpotbgm");
  cue_play("jackpotcheer");
  led_set_blink(1);
}

void music_end(int other) {
  if (shows.side[other].begun.serial != 0) return;
  cue_play("endjackpotbgm");
  cue_play("endjackpotcheer");
  led_set_blink(0);
  if (shows.side[other].begun.serial != 0) music_begin();  // its show has begun meanwhile
}

// What a show of this name starts from. A restart keeps the rain and the pause of the voice.
void worker_begin(WinShow& show, int serial) {
  if (show.shown.serial == 0) {
    show.shown.voice_at = static_cast<float>(5.0 + 5.0 * random_unit());
    show.shown.moves = 0;
  }
  show.shown.start_ms = show.begun.start_ms;
  show.shown.end_ms = show.begun.end_ms;
  look_reset(show);
  show.shown.serial = serial;
}

void worker_end(int side, int serial) {
  WinShow& show = shows.side[side];
  if (!show.begun.serial.compare_exchange_strong(serial, 0)) return;  // restarted meanwhile
  show.shown.serial = 0;
  ticket_flakes_clear(side);
  music_end(1 - side);
}

// One pass over the side's show.
void win_show_worker(int side) {
  WinShow& show = shows.side[side];
  const int serial = show.begun.serial;
  if (serial == 0) return;
  if (show.shown.serial != serial) worker_begin(show, serial);
  const float t = seconds_since(show.shown.start_ms);
  const auto length = static_cast<float>(show.shown.end_ms - show.shown.start_ms) / 1000.0F;
  if (t >= length + FADE_OUT_S) return worker_end(side, serial);
  thumb_step(show, t);
  if (t >= length) {
    const float alpha = 255.0F * (1.0F - (t - length) / FADE_OUT_S);
    show.shown.colour = faded(COLOUR_WHITE, static_cast<std::int32_t>(alpha));
  } else {
    voice_step(show, t, length);
    if (t > PAID_OUT_AFTER_S && ticket_status.tickets_owed[side] == 0) show.shown.end_ms = now_ms();
  }
  flakes_step(side, t);
}

struct Look {
  Thumb thumb;
  std::uint32_t colour;
  float size;  // of the number
};

// Until the worker has come along, a new show looks as it begins.
Look look_of(const WinShow& show, int serial) {
  if (show.shown.serial != serial) return {FIRST_THUMB, COLOUR_WHITE, 1.0F};
  return {show.shown.thumb, show.shown.colour, show.shown.scale * show.shown.pulse};
}

void number_draw(int side, std::int32_t tickets, const Look& look) {
  char digits[12];
  std::snprintf(digits, sizeof digits, "%d", tickets);
  const float half = static_cast<float>(std::strlen(digits)) * DIGIT_WIDTH / 2.0F * look.size;
  const auto x = static_cast<float>(THUMB_X[side] + THUMB_MIDDLE) - half;
  const float y = 426.0F - DIGIT_HEIGHT / 2.0F * (look.size - 1.0F);
  const auto draw = [&](std::uint32_t colour, float shift) {
    text_draw_scaled(FONT_58X90, colour, static_cast<int>(x + shift), static_cast<int>(y + shift),
                     look.size, look.size, "%s", digits);
  };
  const auto alpha = static_cast<std::int32_t>(look.colour >> 24U);
  draw(faded(COLOUR_BLACK, alpha), 4.0F);
  draw(faded(COLOUR_WHITE, alpha), 0.0F);
}

}  // namespace

// The serial is set before the music begins: the other side's show, if it ends at this moment, then
// leaves music and LED board to this one.
void win_show_start(int side, int tickets) {
  WinShow& show = shows.side[side];
  show.begun.flakes_on = pref_on(PREF_TICKET_USE) ? 1 : 0;
  show.begun.tickets = tickets;
  show.begun.start_ms = now_ms();
  show.begun.end_ms = now_ms() + (ticket_status.ticket_error[side] ? SHOW_WITH_FAULT_MS : SHOW_MS);
  show.begun.serial = ++shows.last_serial;

  ticket_dings(0, tickets);
  music_begin();
  if (is_due(tick_timers.next_vox_ms)) {
    cue_play("voxwin");
    tick_timers.next_vox_ms = from_now_ms(2500.0, 2500.0);
  }
}

bool win_show_active(int side) {
  return shows.side[side].begun.serial != 0;
}

void win_show_step() {
  for (int side = 0; side < SIDE_COUNT; ++side) win_show_worker(side);
}

void win_show_draw() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    const WinShow& show = shows.side[side];
    const int serial = show.begun.serial;
    if (serial == 0) continue;
    const Look look = look_of(show, serial);
    ticket_flakes_draw(side);
    cell_draw(static_cast<SheetIndex>(look.thumb.sheet_index), look.thumb.frame, THUMB_X[side],
              THUMB_Y, look.colour);
    if (pref_on(PREF_TICKET_USE)) number_draw(side, show.begun.tickets, look);
  }
}

void win_show_reset() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    shows.side[side].begun.serial = 0;
    shows.side[side].shown.serial = 0;
    ticket_flakes_clear(side);
  }
}
