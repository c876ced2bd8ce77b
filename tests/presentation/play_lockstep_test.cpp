// What is drawn and said in play, beside its model: states of the game at random, and every
// picture, word and place compared.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/sides.h"
#include "frame/tick_timers.h"
#include "platform/random.h"
#include "playfield/frog_queue.h"
#include "playfield/paytable.h"
#include "playfield/playfield.h"
#include "presentation/scene.h"
#include "presentation/voices.h"
#include "presentation/volume.h"
#include "tests/presentation/lockstep.h"
#include "tests/presentation/stage.h"

namespace {

constexpr int ROUNDS = 6000;

int length(const std::string& text) {
  return static_cast<int>(text.size());
}

class PlayLockstep : public Lockstep {
 protected:
  void words(const std::string& text, int x, int y) {
    picture(text, x + 2, y + 2, black(255));
    picture(text, x, y);
  }
  std::int64_t some_ms() {
    return one_of<std::int64_t>({0, 1, 1999, 2000, 2001, 2999, 3000, 3001, 4999, 5000, 5001, 5999,
                                 6000, 7999, 8000, 8999, 9000, 11000, die(20000)});
  }

  // The signs.

  void credit_sign(int left, int side) {
    const int credits = pref_on(PREF_FREEPLAY) ? 1 : audit_count(AUDIT_CURRENT_CREDITS, side);
    const int coins = audit_count(AUDIT_CURRENT_COINS, side),
              missing = pref_int(PREF_COINS_TO_PLAY) - coins;
    const auto centred = [&](const std::string& text, int y) {
      words(text, left + 128 - 7 * length(text) - 7, y);
    };
    if (credits > 0) picture("num_frogs_txt", left + 81, 654);
    if (credits == 1) picture("frogiconmed", left + 61, 649);
    if (credits == 2) picture("frogicon", left + 63, 678), picture("frogicon", left + 115, 678);
    if (credits > 2) {
      const std::string text = "    X " + std::to_string(credits);
      centred(text, 696);
      picture("frogicon", left + 128 - 7 * length(text) - 16, 678);
    }
    if (credits > 0) return;
    const bool swipes = pref_int(PREF_CURRENCY_UNIT) == 3;
    centred(swipes ? "SWIPE" : "INSERT", 683);
    if (swipes) centred(coins < 1 ? "CARD" : "AGAIN", 709);
    if (!swipes) centred(missing == 1 ? "COIN" : std::to_string(missing) + " COINS", 709);
  }
  void price_line(const std::string& text, int y, int shift = 0) {
    words(text, 680 - 7 * length(text) + shift, 654 + y);
  }
  void price(const std::string& cost) {
    const int frogs = pref_int(PREF_FROGS_PER_GAME);
    const std::string text = cost + (frogs == 1 ? " /       " : " /    X" + std::to_string(frogs));
    const int end = 680 + 7 * length(text);
    frogs == 1 ? picture("frogiconlrg", end - 108, 654) : picture("frogicon", end - 84, 683);
    price_line(text, 50);
  }
  void swipe_price() {
    const int frogs = pref_int(PREF_FROGS_PER_GAME), swipe = pref_int(PREF_COINS_PER_SWIPE),
              cost = pref_int(PREF_COINS_TO_PLAY);
    if (swipe % cost != 0) {
      price_line(swipe == 1 ? "SWIPE / COIN" : "SWIPE / " + std::to_string(swipe) + " COINS", 33);
      const std::string text =
          std::to_string(cost) + " COINS /    " + (frogs == 1 ? "" : "X" + std::to_string(frogs));
      picture("frogicon", 680 + 7 * length(text) - (frogs == 1 ? 56 : 84), 699);
      return price_line(text, 66);
    }
    const int all = frogs * (swipe / cost), x = 672;
    if (all > 4) {
      price_line("SWIPE /    X" + std::to_string(all), 50, -4);
      return picture("frogicon", 652, 683);
    }
    price_line("SWIPE / ", 50, all == 1 ? 0 : -53);
    if (all == 1) return picture("frogiconlrg", x, 654);
    const int places[4][2] = {{x, 663}, {x + 52, 663}, {x, 703}, {x + 52, 703}};
    for (int i = 0; i < all; ++i) picture("frogicon", places[i][0], all == 2 ? 683 : places[i][1]);
  }
  void model_signs() {
    const int places[3] = {13, 552, 1091};
    for (int i = 0; i < 3; ++i) {
      picture(i == 1 ? "anim_lngsign" : "anim_wdsign", places[i], 654, white(255), signs[i].frame);
    }
    credit_sign(13, 0);
    credit_sign(1091, 1);
    const int unit = pref_int(PREF_CURRENCY_UNIT), coins = pref_int(PREF_COINS_TO_PLAY);
    char money[16];
    std::snprintf(money, sizeof money, "%c%.2f", unit == 1 ? '$' : '@', 0.25 * coins);
    if (pref_on(PREF_FREEPLAY)) return price_line("FREEPLAY", 50);
    if (unit == 0) return price(coins == 1 ? "1 COIN" : std::to_string(coins) + " COINS");
    unit == 3 ? swipe_price() : price(money);
  }

  // What a player is asked.

  void model_prompts(int side) {
    const int right = 680 * side;
    const std::int64_t wait = tick_timers.credit_wait_ms[side];
    if (wait <= 5000 || tick_timers.idle_ms[side] <= 5000) return;
    picture(now_ms() % 1000 < 500 ? "prsbtn_frog_up" : "prsbtn_frog_dn", 249 + right, 434);
    picture("press_to_grn_txt", 212 + right, 380);
    picture("start_grn_txt", 212 + right, 542);
    const int limit = pref_int(PREF_TIMEOUT_SECONDS);
    if (limit < 0) return;
    const std::string text =
        std::to_string(static_cast<int>(limit - static_cast<double>(wait) / 1000));
    words(text, static_cast<int>(356 + right - 14.5 * length(text) - 14), 502);
  }
  void model_coin(int side) {
    if (now_ms() >= tick_timers.coin_prompt_until[side]) return;
    const double t = static_cast<double>(now_ms() - tick_timers.coin_prompt_start[side]) / 1000;
    const double pi = 3.14159265358979323846;
    const auto colour = white(static_cast<int>((0.5 + 0.5 * std::cos(2 * pi * t + pi)) * 255));
    const bool swipes = pref_int(PREF_CURRENCY_UNIT) == 3;
    picture(swipes ? "swipe_crd" : "insertcoin_grn", 218 + 680 * side, swipes ? 326 : 350, colour);
  }
  void model_bubble(int side) {
    if (frog_queues[side].count == 0 ||
        (frog_queues[side].places[0].get()->flags & FROG_HIDDEN) != 0)
      return;
    const std::int64_t wait = tick_timers.credit_wait_ms[side],
                       since = tick_timers.since_award_ms[side];
    std::string name;
    if (wait <= 2000 && since >= 1 && since <= 8999 && since % 3000 < 2000 && station_idle(side)) {
      name = "msg2_bubble";
    }
    if (wait > 2000 && pref_on(PREF_TICKET_USE)) {
      const bool fixed = pref_on(PREF_FIXED_TICKET);
      if (wait % (fixed ? 3000 : 6000) < 2000) name = "msg1_bubble";
      if (!fixed && wait % 6000 >= 3000 && wait % 6000 < 5000) name = "msg3_bubble";
    }
    if (!name.empty()) picture(name, 360 + 680 * side, 576);
  }
  void change_money() {
    set_pref(PREF_FREEPLAY, once_in(5) ? 1 : 0);
    set_pref(PREF_CURRENCY_UNIT, die(4));
    set_pref(PREF_COINS_TO_PLAY, 1 + die(10));
    set_pref(PREF_COINS_PER_SWIPE,
             one_of<int>({1, 2, 3, 4, 8, pref_int(PREF_COINS_TO_PLAY) * (1 + die(4))}));
    set_pref(PREF_FROGS_PER_GAME, 1 + die(5));
    set_pref(PREF_TIMEOUT_SECONDS, one_of<int>({-1, 10, 15, 30, INT_MIN}));
    set_pref(PREF_TICKET_USE, once_in(4) ? 0 : 1);
    set_pref(PREF_FIXED_TICKET, once_in(4) ? 1 : 0);
    for (int side = 0; side < SIDE_COUNT; ++side) {
      audits[AUDIT_CURRENT_CREDITS + side].count = one_of<int>({0, 0, 1, 2, 3, 12});
      audits[AUDIT_CURRENT_COINS + side].count = die(3);
      tick_timers.credit_wait_ms[side] = some_ms();
      tick_timers.idle_ms[side] = some_ms();
      tick_timers.since_award_ms[side] = some_ms();
      tick_timers.coin_prompt_start[side] = now_ms() - die(1000);
      tick_timers.coin_prompt_until[side] = now_ms() + die(3) - 1;
      for (Frog& frog : stations[side].frogs) frog.state = FROG_FREE;
      stations[side].frogs[0].state = once_in(4) ? FROG_HOPPING : FROG_FREE;
      frog_queues[side].count = once_in(8) ? 0 : 1;
      frog_queues[side].places[0] = &stations[side].frogs[1];
      stations[side].frogs[1].flags = once_in(8) ? std::uint32_t{FROG_HIDDEN} : 0U;
    }
    for (Scenery& sign : signs) sign.frame = die(4);
  }

  // What the frogs and the butterfly win.

  static bool promised() { return pref_on(PREF_TICKET_USE) && !pref_on(PREF_FIXED_TICKET); }
  static float digits(int value) { return value < 10 ? 1 : value < 100 ? 2 : 3; }

  void change_frog(Frog& frog) {
    frog.state = one_of<FrogState>({FROG_FREE, FROG_WAITING, FROG_LAUNCHING, FROG_HOPPING,
                                    FROG_RESTING, FROG_SINKING, FROG_WINNING, FROG_FADING});
    frog.flags = (once_in(3) ? std::uint32_t{FROG_DEMO} : 0U) |
                 (once_in(4) ? std::uint32_t{FROG_HIDDEN} : 0U);
    frog.sheet = &sheets[one_of<int>({SHEET_GFROG, SHEET_GFROG_WIN})];
    frog.frame = die(8);
    frog.ring_frame = die(4);
    frog.x = static_cast<float>(die(4000)) / 4;
    frog.y = die(600);
    frog.alpha = die(256);
    frog.ring_alpha = die(256);
    frog.pulse = die(256);
    frog.scale = one_of<float>({0.75F, 1.0F, 1.3F, 2.0F});
    frog.total_tickets = one_of<int>({0, 1, 9, 10, 99, 100, 1250});
  }
  void model_frog(const Frog& frog) {
    if (frog.state == FROG_FREE) return;
    const int x = static_cast<int>(frog.x), y = frog.y;
    const bool demo = (frog.flags & FROG_DEMO) != 0,
               won = frog.state == FROG_SINKING || frog.state == FROG_WINNING;
    if (frog.state != FROG_SINKING && (frog.flags & FROG_HIDDEN) == 0) {
      if (!demo) picture("anim_grn_rings", x - 132, y, white(frog.ring_alpha), frog.ring_frame);
      const bool win = frog.sheet == &sheets[SHEET_GFROG_WIN];
      const bool fades = frog.state == (win ? FROG_WINNING : FROG_FADING);
      picture(win ? "anim_gfrog_win" : "anim_gfrog", x, y, white(fades ? frog.alpha.get() : 255),
              frog.frame);
    }
    if (demo && frog.state != FROG_WAITING) {
      picture("demo", frog.x + 64, y + 192, white(frog.pulse));
    }
    const int tickets = frog.total_tickets;
    if (!promised() || frog.state == FROG_WAITING || tickets == 0) return;
    const float scale = frog.scale, left = static_cast<float>(x) + 208 - 64 * scale,
                top = static_cast<float>(y) - 64 * scale;
    if (won && !demo) picture("you_won_tck", left, top + 228, white(frog.alpha), 0, scale);
    picture("ticket", left, top + 232, white(frog.alpha), 0, scale);
    picture(std::to_string(tickets), static_cast<float>(x) + 207 - 7 * digits(tickets) * scale,
            static_cast<float>(y) + 234 - 11 * scale, black(frog.alpha) | 0xDC2000);
  }
  void change_butterfly() {
    butterfly.state =
        one_of<ButterflyState>({BUTTERFLY_PARKED, BUTTERFLY_FLYING, BUTTERFLY_CAUGHT});
    butterfly.x = static_cast<float>(die(4000)) / 4;
    butterfly.y = die(600);
    butterfly.dx = one_of<int>({-4, 5});
    butterfly.frame = die(8);
    butterfly.ticket_frame = die(8);
    butterfly.value = one_of<int>({5, 9, 10, 35, 99, 100, 400});
    butterfly.alpha = 1 + die(255);
    butterfly.scale = one_of<float>({0.75F, 1.0F, 1.3F});
  }
  void model_butterfly() {
    if (butterfly.state == BUTTERFLY_PARKED) return;
    const int x = static_cast<int>(butterfly.x), y = butterfly.y;
    const bool flies = butterfly.state == BUTTERFLY_FLYING;
    const auto fx = static_cast<float>(x), fy = static_cast<float>(y);
    const float scale = butterfly.scale;
    if (flies) picture("anim_butterfly", x, y, white(255), butterfly.frame, 1, butterfly.dx < 0);
    if (!promised()) return;
    picture("anim_cycleticket", fx + 36 - 64 * scale, fy + 104 - 32 * scale, white(butterfly.alpha),
            butterfly.ticket_frame, scale);
    const int value = std::min<int>(butterfly.value, pref_int(PREF_MAXIMUM_TICKETS));
    const std::string text = flies ? "?" : std::to_string(value);
    const float shift = flies ? 2 : 1;
    const float left = flies ? fx + 30 - 7 * scale : fx + 36 - 7 * digits(value) * scale;
    const float top = (flies ? fy + 97 : fy + 107) - 11 * scale;
    picture(text, left, top, black(butterfly.alpha));
    picture(text, left - shift, top - shift, white(butterfly.alpha));
  }
};

TEST_F(PlayLockstep, SignsAndPromptsFollowTheirModel) {
  for (int i = 0; i < ROUNDS; ++i) {
    game_clock.now_ms += die(2000);
    change_money();
    model_signs();
    ASSERT_EQ(drawn(signs_draw), model_lines()) << i;
    for (const int side : {SIDE_LEFT, SIDE_RIGHT}) model_prompts(side);
    ASSERT_EQ(drawn(prompt_start_draw), model_lines()) << i;
    for (const int side : {SIDE_LEFT, SIDE_RIGHT}) model_coin(side);
    ASSERT_EQ(drawn(prompt_coin_draw), model_lines()) << i;
    for (const int side : {SIDE_LEFT, SIDE_RIGHT}) model_bubble(side);
    ASSERT_EQ(drawn(bubbles_draw), model_lines()) << i;
  }
}

TEST_F(PlayLockstep, FrogsAndButterflyFollowTheirModel) {
  for (int i = 0; i < ROUNDS; ++i) {
    set_pref(PREF_TICKET_USE, once_in(4) ? 0 : 1);
    set_pref(PREF_FIXED_TICKET, once_in(4) ? 1 : 0);
    set_pref(PREF_MAXIMUM_TICKETS, one_of<int>({20, 250, 1250}));
    for (Station& station : stations) {
      for (Frog& frog : station.frogs) frog.state = FROG_FREE;
      change_frog(station.frogs[die(20)]);
      for (const Frog& frog : station.frogs) model_frog(frog);
    }
    ASSERT_EQ(drawn(frogs_draw), model_lines()) << i;
    change_butterfly();
    model_butterfly();
    ASSERT_EQ(drawn(butterfly_draw), model_lines()) << i;
  }
}

TEST_F(PlayLockstep, DamagedSettingsAreDrawnWithoutOverflow) {
  audits[AUDIT_CURRENT_COINS].count = 1;
  const struct {
    int unit, cost, frogs, coins_of_swipe;
    const char* drawn;
  } rows[] = {{CURRENCY_SWIPES, 1, INT_MAX, 2, "SWIPE /    X4294967294"},
              {CURRENCY_COINS, INT_MIN, 1, 2, "-2147483649 COINS"},
              {CURRENCY_SWIPES, 0, 1, 4, "SWIPE / 4 COINS"}};
  for (const auto& row : rows) {
    set_pref(PREF_CURRENCY_UNIT, row.unit);
    set_pref(PREF_COINS_TO_PLAY, row.cost);
    set_pref(PREF_FROGS_PER_GAME, row.frogs);
    set_pref(PREF_COINS_PER_SWIPE, row.coins_of_swipe);
    EXPECT_TRUE(has(seen(signs_draw), row.drawn)) << row.drawn;
  }
}

// --- voices -------------------------------------------------------------------------------------

struct ModelLine {
  const char* cue;
  int pause, more;      // ms to the next time of its own
  int gate, gate_more;  // and to that of any line
  std::int64_t next = 0;
};

class VoicesLockstep : public Lockstep {
 protected:
  static std::int64_t later(int ms, int more) {
    return static_cast<std::int64_t>(static_cast<double>(now_ms()) + ms + more * random_unit());
  }
  void say(ModelLine& it, bool wanted) {
    if (!wanted || !may_speak() || now_ms() <= it.next) return;
    const bool spoken = &it != &again || random_unit() < 0.75;
    if (spoken && sound_enabled != 0) cues.emplace_back(it.cue);  // silence starts the pause too
    it.next = later(it.pause, it.more);
    next_vox = later(it.gate, it.gate_more);
  }
  void model_step() {
    if (attract_flag == 0) chatter.next = later(5000, 10000);
    say(chatter, attract_flag != 0);
    const auto& t = tick_timers;
    const bool swipes = pref_int(PREF_CURRENCY_UNIT) == 3;
    for (int s = 0; s < SIDE_COUNT; ++s)
      say(press, t.credit_wait_ms[s] > 5000 && t.idle_ms[s] > 5000);
    for (int s = 0; s < SIDE_COUNT; ++s) say(coins, !swipes && now_ms() < t.coin_prompt_until[s]);
    for (int s = 0; s < SIDE_COUNT; ++s) {
      const bool waits = tick_timers.credit_wait_ms[s] > 3000;
      const std::int64_t since = tick_timers.since_award_ms[s];
      say(bugs, waits && pref_on(PREF_TICKET_USE));
      say(again, !waits && since >= 1 && since <= 8999 && station_idle(s));
    }
  }

  ModelLine chatter{"voxchatter", 15000, 30000, 2500, 2500};
  ModelLine press{"voxpressbutton", 7500, 7500, 2000, 2000};
  ModelLine coins{"voxinsertcoins", 5000, 5000, 2000, 1000};
  ModelLine bugs{"voxeatbugs", 12500, 12500, 2000, 2000};
  ModelLine again{"voxplayagain", 5000, 5000, 2000, 2000};
};

TEST_F(VoicesLockstep, LinesFollowTheirModel) {
  voices_reset();
  for (int i = 0; i < 100000; ++i) {
    game_clock.now_ms += once_in(20) ? die(3000) : 17;
    const int side = die(SIDE_COUNT);
    const auto ms = one_of<std::int64_t>({0, 1, 3000, 3001, 5000, 5001, 8999, 9000});
    const int what = die(200);
    if (what == 0) attract_flag = die(2);
    if (what < 2) tick_timers.credit_wait_ms[side] = ms;
    if (what == 2) tick_timers.idle_ms[side] = ms;
    if (what == 3) tick_timers.since_award_ms[side] = ms;
    if (what == 4) tick_timers.coin_prompt_until[side] = now_ms() + one_of<int>({0, 1, 20, 4000});
    if (what == 5) set_pref(PREF_CURRENCY_UNIT, die(4));
    if (what == 6) set_pref(PREF_TICKET_USE, die(2));
    if (what == 7) stations[side].frogs[0].state = once_in(3) ? FROG_HOPPING : FROG_FREE;
    if (what == 8) sound_enabled = once_in(4) ? 0 : 1;
    both(voices_step, [this] { model_step(); });
    if (HasFatalFailure()) FAIL() << "step " << i;
  }
}

// --- far bank -----------------------------------------------------------------------------------

class FarBankLockstep : public PlayLockstep {
 protected:
  FarBankLockstep() { far_bank_reset(); }

  void model_foam() {
    for (int i = 0; i < 4; ++i)
      picture("riverfoam_1", static_cast<int>(near_x) + 473 * i, 68, 0xC0FFFFFF);
    for (int i = 0; i < 4; ++i) picture("riverfoam_2", static_cast<int>(far_x) - 473 * i, 68);
    near_x += 0.37F;
    if (near_x >= 0) near_x = -473;
    far_x -= 0.23F;
    if (far_x <= 887) far_x = 1360;
  }
  void model_jackpot() {
    if (!promised()) return;
    scale += 0.005F;
    alpha -= 0.0075F;
    if (alpha < -1) scale = alpha = 1;
    const int most = std::max(pref_int(PREF_MAXIMUM_TICKETS), 0);  // a damaged file may hold less
    const std::string value = std::to_string(std::min(jackpot_value(), most));
    const auto count = static_cast<float>(value.size());
    const int ghost = std::max(static_cast<int>(alpha * 255), 0);
    for (const float left : {310.0F, 990.0F}) {
      picture("lily_bonus_txt", left, -1);
      const auto x = static_cast<int>(left + 33 - 14.5F * scale * count),
                 y = static_cast<int>(29 - 21.5F * (scale - 1)),
                 plain_x = static_cast<int>(left + 33 - 14.5F * count);
      picture(value, x, y, black(ghost));
      picture(value, x - 3, y - 3, white(ghost));
      picture(value, plain_x, 29, black(255));
      picture(value, plain_x - 3, 26);
    }
  }

  float near_x = -473, far_x = 1360, scale = 1, alpha = 1;
};

TEST_F(FarBankLockstep, FoamAndJackpotFollowTheirModel) {
  for (int frame = 0; frame < 3000; ++frame) {
    set_pref(PREF_MAXIMUM_TICKETS, one_of<int>({7, 42, 150, 1000, -5}));
    set_pref(PREF_TICKET_USE, once_in(50) ? 0 : 1);
    set_pref(PREF_FIXED_TICKET, once_in(50) ? 1 : 0);
    model_foam();
    ASSERT_EQ(drawn(foam_draw), model_lines()) << frame;
    model_jackpot();
    ASSERT_EQ(drawn(jackpot_lily_draw), model_lines()) << frame;
  }
}

}  // namespace
