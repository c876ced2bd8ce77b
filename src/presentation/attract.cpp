#include "presentation/attract.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"   // now_ms, seconds_since
#include "frame/tick_timers.h"  // next_vox_ms
#include "platform/shared.h"
#include "playfield/cues.h"
#include "playfield/paytable.h"   // jackpot_value
#include "playfield/playfield.h"  // station_idle
#include "presentation/draw_tools.h"
#include "presentation/lerp.h"
#include "presentation/win_show_start.h"  // win_show_active

namespace {

enum AttractItem : std::int32_t {
  ITEM_LOGO = 0,
  ITEM_MAKER = 1,
  ITEM_ORB = 3,
  ITEM_JACKPOT = 5,   // a lily pad with what the far bank pays
  ITEM_EAT_BUGS = 6,  // a frog that eats bugs, and how many tickets they are
};

struct AttractRow {
  AttractItem item;
  float gap_s;  // of nothing after it
};

constexpr int BOARD_ROWS = 32;  // what can be won, again and again, before the makers are named
constexpr AttractRow LAST_ROWS[] = {{ITEM_ORB, 2.0F}, {ITEM_MAKER, 2.0F}, {ITEM_LOGO, 4.0F}};
constexpr int ROW_COUNT = BOARD_ROWS + 3;

struct AttractScript {
  AttractRow rows[ROW_COUNT];
};
constexpr AttractScript script = [] {
  AttractScript made{};
  for (int row = 0; row < BOARD_ROWS; ++row) {
    made.rows[row] = {row % 2 == 0 ? ITEM_JACKPOT : ITEM_EAT_BUGS, 4.0F};
  }
  std::ranges::copy(LAST_ROWS, made.rows + BOARD_ROWS);
  return made;
}();

constexpr std::int64_t FIRST_START_MS = 15000;
constexpr std::int64_t AFTER_PLAY_MS = 60000;
constexpr float FADE_S = 0.5F;
constexpr float STAND_S = 6.0F;

constexpr int OFF_SCREEN_X = 2000;  // where a picture waits for its turn
constexpr int LOGO_Y = 128;
constexpr int BOARD_X = 369;
constexpr int BOARD_Y = 203;

struct AttractState {  // written by the game thread, read by the drawing
  Shared<std::int32_t> step;
  Shared<std::int64_t> start_ms;
  Shared<std::int32_t> fade;
  Shared<std::int64_t> fade_start_ms;
  Shared<std::int32_t> frog_frame;
  Shared<std::int64_t> voice_next_ms;
  Shared<std::int32_t> x, y, alpha;  // of the present picture
};

constinit AttractState attract{0, FIRST_START_MS, 0, 0, 0, 0, OFF_SCREEN_X, BOARD_Y, 255};

AttractItem present_item() {
  return script.rows[attract.step].item;
}

void hide() {
  attract.x = OFF_SCREEN_X;
  attract.y = BOARD_Y;
  attract.alpha = 255;
  attract.frog_frame = 0;
}

// The picture is off the screen before it becomes another one.
void next_row() {
  hide();
  attract.start_ms =
      now_ms() + static_cast<std::int64_t>(script.rows[attract.step].gap_s * 1000.0F);
  attract.step = (attract.step + 1) % ROW_COUNT;
}

// Where no tickets are to be won, or always the same number, nothing is promised.
void skip_what_is_not_paid() {
  const bool tickets = pref_on(PREF_TICKET_USE);
  if (present_item() == ITEM_JACKPOT && (!tickets || pref_on(PREF_FIXED_TICKET))) next_row();
  if (present_item() == ITEM_EAT_BUGS && !tickets) next_row();
}

void fade_step() {
  if (attract.fade == 0 || now_ms() <= attract.fade_start_ms) return;
  const float s = seconds_since(attract.fade_start_ms);
  if (s > FADE_S) {
    attract.fade = 0;
    hide();
    attract.step = 0;
  } else {
    attract.alpha = static_cast<std::int32_t>(lerp(255.0F, 0.0F, 2.0F * s));
  }
}

bool somebody_plays() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    const bool credit =
        audit_count(AUDIT_CURRENT_CREDITS, side) > 0 && pref_int(PREF_COINS_TO_PLAY) > 0;
    if (!station_idle(side) || win_show_active(side) || credit) return true;
  }
  return false;
}

// Three hops in, a stand, three hops out to the left. A hop is half a second long and touches y 0
// in its middle.
void mark_move(float s) {
  constexpr struct {
    float until_s;
    int from_x, to_x;
  } LEGS[] = {{0.5F, 1784, 1331}, {1.0F, 1331, 878}, {1.5F, 878, 424},  {4.5F, 424, 424},
              {5.0F, 424, -29},   {5.5F, -29, -482}, {6.0F, -482, -935}};
  const auto* leg = LEGS;
  float begun_s = 0.0F;
  while (s > leg->until_s) begun_s = (leg++)->until_s;
  const float u = s - begun_s;
  const bool stands = leg->from_x == leg->to_x;
  const auto x = static_cast<std::int32_t>(
      lerp(static_cast<float>(leg->from_x), static_cast<float>(leg->to_x), 2.0F * u));
  const float y = stands ? LOGO_Y : LOGO_Y - 1024.0F * u + 2048.0F * u * u;
  attract.alpha = 255;
  attract.x = present_item() == ITEM_LOGO ? x - 256 : x;  // twice as wide as the others
  attract.y = static_cast<std::int32_t>(y);
}

void board_voice(float s) {
  if (s <= 1.0F || s > 2.0F) return;
  if (!is_due(tick_timers.next_vox_ms) || !is_due(attract.voice_next_ms)) return;
  cue_play(present_item() == ITEM_EAT_BUGS ? "voxeatbugsattract" : "voxwinticketsattract");
  attract.voice_next_ms = from_now_ms(30000.0, 60000.0);
  tick_timers.next_vox_ms = from_now_ms(2500.0, 2500.0);
}

// The frog runs through its sheet once, a second after the board has come.
std::int32_t frog_frame(float s) {
  if (s <= 1.0F) return 0;
  const std::int32_t frames = sheets[SHEET_FROG_ATTRACT].frames;
  const auto frame = static_cast<std::int32_t>((s - 1.0F) * static_cast<float>(frames) * 0.25F);
  return frame < frames ? frame : 0;
}

void board_move(float s) {
  const float whole = std::trunc(s);
  const float u = s > 0.0F && s == whole ? 1.0F : s - whole;
  const auto bob = static_cast<std::int32_t>(BOARD_Y - 64.0F * u + 64.0F * u * u);
  const float alpha = s <= FADE_S ? lerp(0.0F, 255.0F, 2.0F * s)
                      : s <= 5.5F ? 255.0F
                                  : lerp(255.0F, 0.0F, 2.0F * (s - 5.5F));
  attract.alpha = static_cast<std::int32_t>(alpha);
  if (present_item() == ITEM_EAT_BUGS) {
    attract.x = BOARD_X - 32;
    attract.y = bob;
    attract.frog_frame = frog_frame(s);
  } else {
    attract.x = BOARD_X + 16;
    attract.y = bob - 64;
  }
}

void picture_step() {
  if (now_ms() <= attract.start_ms) return;
  if (somebody_plays()) {
    attract.fade_start_ms = now_ms();
    attract.start_ms = now_ms() + AFTER_PLAY_MS;
    attract.fade = 1;
    return;
  }
  const float s = seconds_since(attract.start_ms);
  const bool board = present_item() == ITEM_JACKPOT || present_item() == ITEM_EAT_BUGS;
  if (board) board_voice(s);
  if (s > STAND_S) {
    next_row();
  } else if (board) {
    board_move(s);
  } else {
    mark_move(s);
  }
}

constexpr PanelIndex picture_of(AttractItem item) {
  switch (item) {
    case ITEM_LOGO:
      return PANEL_LILYHOPLOGO;
    case ITEM_MAKER:
      return PANEL_SLYMARVELS;
    case ITEM_ORB:
      return PANEL_ORBLOGO;
    case ITEM_JACKPOT:
      return PANEL_LRG_LILYPAD;
    case ITEM_EAT_BUGS:
      return PANEL_EAT_BUGS_TCK;
  }
  return PANEL_LILYHOPLOGO;
}

void jackpot_draw(int x, int y, std::uint32_t colour) {
  constexpr int PITCH_PX = 150;
  picture_draw(PANEL_WIN, x + 122, y - 72, colour);
  picture_draw(PANEL_TICKETS, x + 38, y + 320, colour);
  std::int32_t value = std::clamp(value_advertised(jackpot_value()), 0, 9999);
  int digits = 1;
  for (std::int32_t rest = value / 10; rest > 0; rest /= 10) ++digits;
  const int units_x = x + 250 - PITCH_PX / 2 + PITCH_PX / 2 * (digits - 1);
  for (int i = 0; i < digits; ++i, value /= 10) {
    picture_draw(static_cast<PanelIndex>(PANEL_JACK_0 + value % 10), units_x - PITCH_PX * i,
                 y + 123, colour);
  }
}

}  // namespace

void attract_step() {
  skip_what_is_not_paid();
  fade_step();
  picture_step();
  if (!station_idle(SIDE_LEFT) || !station_idle(SIDE_RIGHT)) {
    attract.start_ms = now_ms() + AFTER_PLAY_MS;
  }
}

void attract_draw() {
  const AttractItem item = present_item();
  const int x = attract.x;
  const int y = attract.y;
  const std::uint32_t colour = faded(COLOUR_WHITE, attract.alpha);
  picture_draw(picture_of(item), x, y, colour);
  if (item == ITEM_JACKPOT) jackpot_draw(x, y, colour);
  if (item == ITEM_EAT_BUGS) {
    cell_draw(SHEET_FROG_ATTRACT, attract.frog_frame, x + 86, y - 252, colour);
  }
}

void attract_reset() {
  hide();
  attract.step = 0;
  attract.start_ms = FIRST_START_MS;
  attract.fade = 0;
  attract.fade_start_ms = 0;
  attract.voice_next_ms = 0;
}
