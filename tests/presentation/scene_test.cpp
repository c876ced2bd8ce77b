#include "presentation/scene.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/tick_timers.h"
#include "frame/ticket_status.h"
#include "io/jamma.h"
#include "playfield/paytable.h"
#include "playfield/playfield.h"
#include "playfield/workers.h"
#include "presentation/attract.h"
#include "presentation/debug_pages.h"
#include "presentation/volume.h"
#include "presentation/win_show_start.h"
#include "tests/presentation/stage.h"

namespace {

class Scene : public Stage {
 protected:
  // The first record of the left side, alone on the field.
  static Frog& frog(FrogState state, std::uint32_t flags = 0) {
    Frog& f = stations[SIDE_LEFT].frogs[0];
    f.sheet = &sheets[SHEET_GFROG];
    f.state = state;
    f.flags = flags;
    f.x = 212.75F;
    f.y = 184;
    f.scale = 1.0F;
    f.alpha = 200;
    return f;
  }
  static std::vector<std::string> order(const std::vector<Drawn>& drawn) {
    std::vector<std::string> names;
    for (const Drawn& d : drawn) {
      if (names.empty() || names.back() != d.what) names.push_back(d.what);
    }
    return names;
  }
};

TEST_F(Scene, DrawsLayersInOrder) {
  game_clock.now_ms = 16000;
  attract_step();
  game_clock.now_ms = 100000;
  win_show_start(SIDE_LEFT, 10);
  frog(FROG_RESTING);
  int log = 0;
  while (log < LANE_CELLS - 1 && lane_cells[1][log] == CELL_EMPTY) ++log;
  lanes[1].scroll = static_cast<float>(log * lanes[1].cell_size);  // brings it into view
  fx_heart_start(0);
  fx_spark_start(600, 600);
  butterfly.state = BUTTERFLY_FLYING;
  Frog& ready = stations[SIDE_RIGHT].frogs[3];  // shown by its bubble alone
  ready.state = FROG_FREE;
  ready.flags = 0;
  frog_queues[SIDE_RIGHT].count = 1;
  frog_queues[SIDE_RIGHT].places[0] = &ready;
  tick_timers.credit_wait_ms[SIDE_RIGHT] = 6001;
  tick_timers.idle_ms[SIDE_RIGHT] = 5001;
  tick_timers.coin_prompt_start[SIDE_LEFT] = 99500;  // opaque at 100000
  tick_timers.coin_prompt_until[SIDE_LEFT] = 200000;
  jamma_link_error = 1;
  tick_timers.volume_overlay_until = 200000;
  const std::vector<std::string> names = order(seen(scene_draw));
  std::size_t at = 0;
  for (const char* name :
       {"bkdrop_lft",     "bkdrop_rt",      "riverfoam_1",    "riverfoam_2",    "anim_finish",
        "anim_lilypad3",  "lily_bonus_txt", "grass_lft",      "grass_rt",       "dpatch",
        "dpatch2",        "anim_log3",      "anim_hearts",    "anim_butterfly", "anim_spark",
        "anim_ctail1",    "anim_grn_rings", "anim_gfrog",     "shadow",         "plants1",
        "plants6",        "anim_wdsign",    "anim_lngsign",   "lrg_lilypad",    "prsbtn_frog_up",
        "insertcoin_grn", "msg1_bubble",    "anim_thumbs_up", "ioerror"}) {
    const auto found =
        std::find(names.begin() + static_cast<std::ptrdiff_t>(at), names.end(), name);
    ASSERT_NE(found, names.end()) << name;
    at = static_cast<std::size_t>(found - names.begin());
  }
  EXPECT_EQ(names.back(), "ioerror");
}

TEST_F(Scene, RightShadowIsMirrored) {
  std::vector<Drawn> shadows;
  for (const Drawn& d : seen(scene_draw)) {
    if (d.what == "shadow") shadows.push_back(d);
  }
  ASSERT_EQ(shadows.size(), 2U);
  EXPECT_EQ(shadows[0].x, 0);
  EXPECT_FALSE(shadows[0].mirrored);
  EXPECT_EQ(shadows[1].x, 1104);
  EXPECT_TRUE(shadows[1].mirrored);
  for (const Drawn& d : shadows) EXPECT_EQ(d.colour, 0x80FFFFFFU);
}

TEST_F(Scene, ButterflyFacesItsDirectionOfFlight) {
  butterfly.state = BUTTERFLY_FLYING;
  butterfly.x = 300.0F;
  for (const int dx : {-4, 4, -6, 5}) {
    butterfly.dx = dx;
    const std::vector<Drawn> drawn = seen(butterfly_draw);
    EXPECT_EQ(first(drawn, "anim_butterfly").mirrored, dx < 0) << dx;
    EXPECT_FALSE(first(drawn, "anim_cycleticket").mirrored) << "its ticket is never mirrored";
  }
}

TEST_F(Scene, GoingDownDrawsOnlyItsMessage) {
  game_mode = MODE_GOING_DOWN;
  const std::vector<Drawn> drawn = seen(scene_draw);
  ASSERT_EQ(drawn.size(), 1U);
  EXPECT_EQ(places(drawn, "GOING DOWN FOR MAINTENANCE"), "680,384");
}

TEST_F(Scene, SunkenFrogShowsOnlyItsTickets) {
  Frog& f = frog(FROG_SINKING, FROG_HIDDEN);
  f.total_tickets = 150;
  f.scale = 2.0F;
  const std::vector<Drawn> drawn = seen(frogs_draw);
  EXPECT_EQ(order(drawn), (std::vector<std::string>{"you_won_tck", "ticket", "150"}));
  EXPECT_EQ(places(drawn, "you_won_tck"), "292,284");
  EXPECT_EQ(first(drawn, "ticket").width, 512) << "twice its size";
  EXPECT_EQ(places(drawn, "150"), "377,396");
}

TEST_F(Scene, GoldCellsGetRidersInOrder) {
  lanes[2].scroll = 0.0F;  // its first gold cells are 0, 4 and 12
  lanes[3].scroll = 0.0F;
  gold_riders[0].scale = 2.0F;
  prefs[PREF_MAXIMUM_TICKETS].int_value = 20;
  const std::vector<Drawn> drawn = seen(lanes_draw);
  EXPECT_EQ(gold_riders[0].lane, 2);
  EXPECT_EQ(gold_riders[0].slot, 0);
  EXPECT_EQ(gold_riders[1].slot, 4);
  EXPECT_EQ(gold_riders[1].x, 4 * 158 + 16);
  EXPECT_EQ(gold_riders[1].y, 96 - 58);
  EXPECT_EQ(first(drawn, "anim_wave").x, 16);
  EXPECT_EQ(first(drawn, "pink_ticket").width, 512);
  EXPECT_EQ(first(drawn, "pink_ticket").x, -4 - 128);
  EXPECT_EQ(first(drawn, "pink_ticket").y, 96 - 2 - 64);
  // "20" where 45 is paid: x 0 - 4 - 7 * 2 * 2, y 96 + 1 - 22
  EXPECT_EQ(places(drawn, "20").substr(0, 13), "-32,75 -33,74");
  paytable_row = PAYTABLE_ROWS - 1;
  ASSERT_GE(tier2_value(), 100);
  for (const auto& [most, place] : {std::pair{7, std::string("-11,86 -12,85")},
                                    {99, "-18,86 -19,85"},
                                    {100, "-25,86 -26,85"}}) {
    gold_riders[0].scale = 1.0F;
    prefs[PREF_MAXIMUM_TICKETS].int_value = most;
    EXPECT_EQ(places(seen(lanes_draw), std::to_string(most)).substr(0, place.size()), place);
  }
  int log = 0;
  while (gold_riders[log].lane != 3) ++log;
  EXPECT_EQ(gold_riders[log].y, 178 - 84);
  EXPECT_NE(places(drawn, "pink_ticket").find("-68,118"), std::string::npos) << "that of a log";
}

TEST_F(Scene, CellNeverOnScreenHasNoRider) {
  lanes[2].scroll = 0.0F;
  lanes_draw();
  int count = 0;
  for (const GoldRider& rider : gold_riders) count += rider.lane == 2 ? 1 : 0;
  EXPECT_EQ(count, 2) << "cells 0 and 4 of the eleven in view";
}

TEST_F(Scene, ShowsTicketAndLinkFaults) {
  ticket_status.ticket_error[SIDE_LEFT] = 1;
  std::vector<Drawn> drawn = seen(scene_draw);
  EXPECT_EQ(places(drawn, "ticketerror"), "20,320");
  EXPECT_EQ(places(drawn, "Tickets Owed: 0"), "72,426");
  ticket_status.ticket_error[SIDE_LEFT] = 0;
  ticket_status.ticket_error[SIDE_RIGHT] = 1;
  ticket_status.tickets_owed[SIDE_RIGHT] = 9;
  drawn = seen(scene_draw);
  EXPECT_EQ(places(drawn, "ticketerror"), "1084,320");
  EXPECT_EQ(first(drawn, "ticketerror").width, 128) << "half its size";
  EXPECT_EQ(places(drawn, "Tickets Owed: 9"), "1136,426");
  prefs[PREF_TWO_POINT_TICKETS].int_value = 1;
  EXPECT_TRUE(has(seen(scene_draw), "Tickets Owed: 18"));
  prefs[PREF_FIXED_TICKET].int_value = 1;
  EXPECT_TRUE(has(seen(scene_draw), "Tickets Owed: 9"));
  jamma_link_error = 1;
  drawn = seen(scene_draw);
  EXPECT_EQ(places(drawn, "ioerror"), "424,256");
  EXPECT_FALSE(has(drawn, "ticketerror"));
  jamma_link_error = 0;
  prefs[PREF_TICKET_USE].int_value = 0;
  EXPECT_FALSE(has(seen(scene_draw), "ticketerror"));
}

TEST_F(Scene, ShowsVolumeLevel) {
  attract_flag = 0;
  volume_step = 7;
  tick_timers.volume_overlay_until = 100001;
  EXPECT_EQ(places(seen(scene_draw), "Volume: 7 / 20"), "32,627");
  attract_flag = 1;
  EXPECT_EQ(places(seen(scene_draw), "Attract Volume: 7 / 20"), "32,627");
  tick_timers.volume_overlay_until = 100000;
  EXPECT_FALSE(has(seen(scene_draw), "Attract Volume: 7 / 20"));
}

// The pages whole are in tests/operator/screens.txt.
TEST_F(Scene, DebugPagesShowAnyStoredValue) {
  EXPECT_TRUE(seen(debug_page_draw).empty());
  audits[AUDIT_GAMES_PLAYED].count = -1;  // from a damaged file
  audits[AUDIT_TIME_TOTAL_PLAYED].time_ms = std::numeric_limits<std::int64_t>::min();
  debug_page = DEBUG_STATISTICS;
  std::vector<Drawn> drawn = seen(debug_page_draw);
  EXPECT_EQ(places(drawn, "Bugs Per Game Left               0.000   0.000"), "16,96");
  EXPECT_EQ(places(drawn, "Time Per Game Left               "), "16,320");
  debug_page = DEBUG_PREFS;
  std::memset(prefs[PREF_FREEPLAY].name, 'x', sizeof prefs[PREF_FREEPLAY].name);  // unterminated
  EXPECT_EQ(places(seen(debug_page_draw), std::string(32, 'x') + " 0"), "16,48");
  PrefRow& currency = prefs[PREF_CURRENCY_UNIT];
  currency.flags = PREF_SHOWS_CURRENCY;
  std::string line = currency.name;
  line.resize(33, ' ');
  for (const auto& [code, letters] : {std::pair{1, currency_codes[1]}, {-1, ""}, {99, ""}}) {
    currency.int_value = code;
    EXPECT_TRUE(has(seen(debug_page_draw), line + letters)) << code;
  }
  histogram[SIDE_RIGHT][251] = 3;
  debug_page = DEBUG_HISTOGRAM_1 + 1;
  drawn = seen(debug_page_draw);
  EXPECT_EQ(places(drawn, "HISTOGRAM 2"), "16,16 696,16");
  EXPECT_EQ(
      places(drawn, "0251 : 3        0261 : 0        0271 : 0        0281 : 0        0291 : 0"),
      "696,240");
  histogram[SIDE_RIGHT][251] = 0;
  debug_page = DEBUG_NONE;
}

}  // namespace
