#include "presentation/scene.h"

#include <algorithm>
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
#include "tests/presentation/lockstep.h"
#include "tests/presentation/stage.h"

namespace {

class Scene : public Lockstep {
 protected:
  // The lines that begin with one of these.
  static Lines named(const Lines& names, void (*draw)() = scene_draw) {
    Lines lines = drawn(draw);
    std::erase_if(lines, [&](const std::string& text) {
      return std::ranges::none_of(names, [&](const auto& name) { return text.starts_with(name); });
    });
    return lines;
  }
};

TEST_F(Scene, DrawsLayersInOrder) {
  game_clock.now_ms = 16000;
  attract_step();
  game_clock.now_ms = 100000;
  win_show_start(SIDE_LEFT, 10);
  stations[SIDE_LEFT].frogs[0].state = FROG_RESTING;
  stations[SIDE_LEFT].frogs[0].flags = 0;
  for (Lane& lane : lanes) lane.scroll = 0.0F;
  fx_splash_start(300, 300, 5);
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
  std::string names, last;
  for (const Drawn& d : seen(scene_draw)) {
    if (d.what != last) names += d.what + "; ";
    last = d.what;
  }
  EXPECT_EQ(names,
            "bkdrop_lft; bkdrop_rt; riverfoam_1; riverfoam_2; anim_finish; anim_lilypad3; "
            "lily_bonus_txt; 250; lily_bonus_txt; 250; grass_lft; grass_rt; dpatch; dpatch2; "
            "anim_log3; anim_1turtlegold; anim_1turtle; anim_wave; pink_ticket; 45; anim_wave; "
            "pink_ticket; 45; anim_log4gold; anim_log4; anim_log4gold; anim_wave; pink_ticket; "
            "25; anim_wave; pink_ticket; 25; anim_3turtles; anim_log1; anim_gfrog_splash; "
            "anim_caterpillar; anim_ladybug; anim_beetle; anim_lightningbug; anim_grasshopper; "
            "anim_hearts; anim_butterfly; anim_cycleticket; ?; anim_spark; anim_ctail1; "
            "anim_ctail2; anim_ctail1; anim_ctail2; anim_grn_rings; anim_gfrog; shadow; "
            "plants1; plants2; plants3; plants4; plants5; plants6; anim_wdsign; anim_lngsign; "
            "anim_wdsign; INSERT; COIN; INSERT; COIN; frogiconlrg; 1 COIN /       ; "
            "lrg_lilypad; win; tickets; jack_0; jack_5; jack_2; prsbtn_frog_up; "
            "press_to_grn_txt; start_grn_txt; insertcoin_grn; msg1_bubble; anim_thumbs_up; 10; "
            "Attract Volume: 0 / 20; ioerror; ");
}

TEST_F(Scene, BanksStandAtTheirPlacesAndRightShadowIsMirrored) {
  const std::uint32_t opaque = white(255);
  EXPECT_EQ(
      named({"bkdrop_lft", "bkdrop_rt", "grass_lft", "grass_rt", "dpatch", "dpatch2", "shadow"}),
      (Lines{line("bkdrop_lft", 0, 0, opaque), line("bkdrop_rt", 680, 0, opaque),
             line("grass_lft", 0, 653, opaque), line("grass_rt", 680, 653, opaque),
             line("dpatch", 214, 650, opaque), line("dpatch2", 894, 650, opaque),
             line("shadow", 0, 0, 0x80FFFFFF), line("shadow", 1104, 0, 0x80FFFFFF, 0, 1, true)}));
}

TEST_F(Scene, GoingDownDrawsOnlyItsMessage) {
  game_mode = MODE_GOING_DOWN;
  EXPECT_EQ(drawn(scene_draw), Lines{line("GOING DOWN FOR MAINTENANCE", 680, 384, white(255))});
}

// Cells that the strip hasn't placed have none. 45 and 25 are paid, but for the maximum.
TEST_F(Scene, GoldCellsInViewGetRidersInOrder) {
  for (Lane& lane : lanes) lane.scroll = 0.0F;
  gold_riders[0].scale = 2.0F;
  set_pref(PREF_MAXIMUM_TICKETS, 20);
  EXPECT_EQ(
      named({"anim_wave", "pink_ticket", "20"}, lanes_draw),
      (Lines{line("anim_wave", 16, 38, white(255)), line("pink_ticket", -132, 30, white(255), 0, 2),
             line("20", -32, 75, black(255)), line("20", -33, 74, white(255)),
             line("anim_wave", 648, 38, white(255)), line("pink_ticket", 564, 62, white(255)),
             line("20", 614, 86, black(255)), line("20", 613, 85, white(255)),
             line("anim_wave", 16, 94, white(255)), line("pink_ticket", -68, 118, 0xFFCCCCCC),
             line("20", -18, 142, black(255)), line("20", -19, 141, white(255))}));
  std::vector<int> standing;  // lane, cell and place of each
  for (const GoldRider& r : gold_riders) {
    if (r.lane == 0) continue;
    for (const auto* number : {&r.lane, &r.slot, &r.x, &r.y}) standing.push_back(*number);
  }
  EXPECT_EQ(standing, (std::vector{2, 0, 16, 38, 2, 4, 648, 38, 3, 0, 16, 94, 3, 9, 1510, 94}));
  gold_riders[0].scale = 1.0F;
  paytable_row = PAYTABLE_ROWS - 1;  // pays 125
  for (const auto& [most, x] : {std::pair{7, -12}, {99, -19}, {100, -26}}) {
    set_pref(PREF_MAXIMUM_TICKETS, most);
    const std::string text = std::to_string(most);
    EXPECT_EQ(named({text}, lanes_draw)[1], line(text, x, 85, white(255)));
  }
}

TEST_F(Scene, ShowsTicketAndLinkFaults) {
  const auto faults = [] { return named({"ticketerror", "Tickets Owed", "ioerror"}); };
  const auto ticket_fault = [](int x, int owed) {
    return Lines{line("ticketerror", x, 320, white(255), 0, 0.5F),
                 line("Tickets Owed: " + std::to_string(owed), x + 52, 426, white(255))};
  };
  ticket_status.ticket_error[SIDE_LEFT] = 1;
  EXPECT_EQ(faults(), ticket_fault(20, 0));
  ticket_status.ticket_error[SIDE_LEFT] = 0;
  ticket_status.ticket_error[SIDE_RIGHT] = 1;
  ticket_status.tickets_owed[SIDE_RIGHT] = 9;
  EXPECT_EQ(faults(), ticket_fault(1084, 9));
  set_pref(PREF_TWO_POINT_TICKETS, 1);
  EXPECT_EQ(faults(), ticket_fault(1084, 18));
  set_pref(PREF_FIXED_TICKET, 1);
  EXPECT_EQ(faults(), ticket_fault(1084, 9));
  jamma_link_error = 1;
  EXPECT_EQ(faults(), Lines{line("ioerror", 424, 256, white(255))});
  jamma_link_error = 0;
  set_pref(PREF_TICKET_USE, 0);
  EXPECT_EQ(faults(), Lines{});
}

TEST_F(Scene, ShowsVolumeLevelForASecond) {
  volume_step = 7;
  for (const bool attract : {false, true}) {
    const std::string text = attract ? "Attract Volume: 7 / 20" : "Volume: 7 / 20";
    attract_flag = attract ? 1 : 0;
    tick_timers.volume_overlay_until = now_ms() + 1;
    EXPECT_EQ(named({text}), Lines{line(text, 32, 627, white(255))});
    tick_timers.volume_overlay_until = now_ms();
    EXPECT_EQ(named({text}), Lines{});
  }
}

// The pages whole are in tests/operator/screens.txt.
TEST_F(Scene, DebugPagesShowAnyStoredValue) {
  const auto expect = [](int page, const std::string& text, const std::string& where) {
    debug_page = page;
    EXPECT_EQ(places(seen(debug_page_draw), text), where) << text;
    debug_page = DEBUG_NONE;
  };
  EXPECT_TRUE(seen(debug_page_draw).empty());
  audits[AUDIT_GAMES_PLAYED].count = -1;  // from a damaged file
  audits[AUDIT_TIME_TOTAL_PLAYED].time_ms = std::numeric_limits<std::int64_t>::min();
  expect(DEBUG_STATISTICS, "Bugs Per Game Left               0.000   0.000", "16,96");
  expect(DEBUG_STATISTICS, "Time Per Game Left               ", "16,320");
  std::memset(prefs[PREF_FREEPLAY].name, 'x', sizeof prefs[PREF_FREEPLAY].name);  // unterminated
  expect(DEBUG_PREFS, std::string(32, 'x') + " 0", "16,48");
  PrefRow& currency = prefs[PREF_CURRENCY_UNIT];
  currency.flags = PREF_SHOWS_CURRENCY;
  std::string name = currency.name;
  name.resize(33, ' ');
  for (const auto& [code, letters] : {std::pair{1, currency_codes[1]}, {-1, ""}, {99, ""}}) {
    currency.int_value = code;
    expect(DEBUG_PREFS, name + letters, "16,160");
  }
  histogram[SIDE_RIGHT][251] = 3;
  const std::string line =
      "0251 : 3        0261 : 0        0271 : 0        0281 : 0        0291 : 0";
  expect(DEBUG_HISTOGRAM_1 + 1, "HISTOGRAM 2", "16,16 696,16");
  expect(DEBUG_HISTOGRAM_1 + 1, line, "696,240");
  histogram[SIDE_RIGHT][251] = 0;
}

}  // namespace
