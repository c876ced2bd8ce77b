#include "presentation/scene.h"

#include <cstdint>

#include "books/prefs.h"
#include "frame/game_clock.h"     // now_ms
#include "frame/game_mode.h"      // game_mode
#include "frame/tick_timers.h"    // volume_overlay_until
#include "frame/ticket_status.h"  // ticket_error, tickets_owed
#include "io/jamma.h"             // jamma_link_error
#include "playfield/playfield.h"
#include "presentation/attract.h"
#include "presentation/debug_pages.h"
#include "presentation/draw_tools.h"
#include "presentation/volume.h"
#include "presentation/win_show.h"

namespace {

void backdrop_draw() {
  picture_draw(PANEL_BKDROP_LFT, 0, 0);
  picture_draw(PANEL_BKDROP_RT, HALF_WIDTH_PX, 0);
}

void near_bank_draw() {
  picture_draw(PANEL_GRASS_LFT, 0, 653);
  picture_draw(PANEL_GRASS_RT, HALF_WIDTH_PX, 653);
  picture_draw(PANEL_DPATCH, 214, 650);
  picture_draw(PANEL_DPATCH2, 894, 650);
}

template <int count>
void scenery_draw(const Scenery (&group)[count]) {
  for (const Scenery& scenery : group) {
    cell_draw(static_cast<SheetIndex>(scenery.sheet_index), scenery.frame, scenery.x, scenery.y);
  }
}

void shade_draw() {
  constexpr std::uint32_t HALF_SEEN = 0x80FFFFFF;
  picture_draw(PANEL_SHADOW, 0, 0, HALF_SEEN);
  picture_draw(PANEL_SHADOW, 1104, 0, HALF_SEEN, true);
}

void volume_readout_draw() {
  if (now_ms() >= tick_timers.volume_overlay_until) return;
  const char* what = SETTINGS[attract_flag != 0 ? PREF_ATTRACT_VOLUME : PREF_VOLUME].name;
  text_draw(FONT_8X12, COLOUR_WHITE, 32, 627, "%s: %d / 20", what, volume_step.get());
}

void ticket_fault_draw(int side) {
  if (ticket_status.ticket_error[side] == 0 || !pref_on(PREF_TICKET_USE)) return;
  picture_draw_scaled(PANEL_TICKETERROR, side == SIDE_LEFT ? 20 : 1084, 320, 0.5F);
  const bool in_points = pref_on(PREF_TWO_POINT_TICKETS) && !pref_on(PREF_FIXED_TICKET);
  const std::int32_t paper = ticket_status.tickets_owed[side];
  text_draw(FONT_8X12, COLOUR_WHITE, side == SIDE_LEFT ? 72 : 1136, 426, "Tickets Owed: %d",
            in_points ? paper * 2 : paper);
}

// Without the link nobody knows how the dispensers are, so its fault stands alone.
void faults_draw() {
  if (jamma_link_error != 0) {
    picture_draw(PANEL_IOERROR, 424, 256);
    return;
  }
  for (int side = 0; side < SIDE_COUNT; ++side) ticket_fault_draw(side);
}

}  // namespace

void scene_draw() {
  if (game_mode == MODE_GOING_DOWN) {
    text_draw(FONT_8X12, COLOUR_WHITE, LAYOUT_WIDTH / 2, LAYOUT_HEIGHT / 2,
              "GOING DOWN FOR MAINTENANCE");
    return;
  }
  backdrop_draw();
  foam_draw();
  far_bank_draw();
  jackpot_lily_draw();
  near_bank_draw();
  lanes_draw();
  hearts_draw();
  butterfly_draw();
  sparks_draw();
  scenery_draw(cattails);
  frogs_draw();
  shade_draw();
  scenery_draw(plants);
  signs_draw();
  attract_draw();
  prompt_start_draw();
  prompt_coin_draw();
  bubbles_draw();
  win_show_draw();
  volume_readout_draw();
  faults_draw();
  debug_page_draw();
}
