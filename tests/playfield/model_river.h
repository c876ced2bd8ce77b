// The field without its frogs, written a second time. See model_frogs.h.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "books/prefs.h"
#include "frame/game_clock.h"
#include "platform/random.h"
#include "tests/playfield/tables.h"

constexpr float PI = std::numbers::pi_v<float>;

inline int whole(double value) {
  return static_cast<int>(value);
}
inline float f32(double value) {
  return static_cast<float>(value);
}
inline std::int64_t within_the_last_second() {
  return static_cast<std::int64_t>(static_cast<double>(now_ms()) - random_unit() * 1000.0);
}
inline int cycle(std::int64_t start, int frames, double ms) {
  return whole(static_cast<double>((now_ms() - start) * frames) / ms) % frames;
}
template <typename Value, typename... Words>
void set_all(Value value, Words&... words) {
  ((words = value), ...);
}
inline bool out_of_play(const Frog& frog) {
  const FrogState state = frog.state;
  return is_demo(frog) || state == FROG_FREE || state == FROG_WAITING || state == FROG_SINKING ||
         state == FROG_WINNING;
}

struct LaneModel {
  float speed, scroll;
  int cells[LANE_CELLS];
  bool eaten[LANE_CELLS];
  LaneSlot slots[LANE_CELLS];
};

template <typename Fx, int count>
struct RingModel {
  Fx records[count];
  int next;

  void reset(SheetIndex sheet) {
    for (Fx& fx : records) {
      fx.sheet_index = sheet;
      fx.frame = -1;
    }
  }
  Fx& start(int x, int y) {
    Fx& fx = records[next];
    next = (next + 1) % count;
    fx.frame = 0;
    fx.x = x;
    fx.y = y;
    fx.start = now_ms();
    return fx;
  }
  void step(int frames, double ms) {
    for (Fx& fx : records) {
      if (fx.frame < 0) continue;
      const double at = static_cast<double>(now_ms() - fx.start) * frames / ms;
      fx.frame = at < frames ? whole(at) : -1;
    }
  }
};

struct RiverModel {
  Station stations[SIDE_COUNT];
  LaneModel lanes[LANE_COUNT];
  Butterfly butterfly;
  GoldRider gold_riders[RIDER_COUNT];
  RingModel<SplashFx, SPLASH_COUNT> splashes;
  RingModel<SparkFx, SPARK_COUNT> sparks;
  RingModel<HeartFx, HEART_COUNT> hearts;
  Scenery scenery[SCENERY_COUNT];  // plants, far bank, cattails, signs
  int paytable_row, boost_factor;
  float from[LANE_COUNT], to[LANE_COUNT];  // speeds at the ends of the present change
  std::int64_t change_start, change_at, riders_last_ms;
  bool started, watched = true;

  int live_frogs(int side) const {
    return FROGS_PER_STATION -
           static_cast<int>(std::ranges::count_if(stations[side].frogs, out_of_play));
  }
  bool river_clear(int side) const {
    return std::ranges::all_of(stations[side].frogs, [](const Frog& frog) {
      return out_of_play(frog) || frog.lane < 1 || frog.lane > 5;
    });
  }

  // --- set-up ---

  void field_reset() {
    change_at = from_now_ms(15000, 15000);
    for (int lane = 0; lane < LANE_COUNT; ++lane) {
      lanes[lane].speed = from[lane] = to[lane] = LANES[lane].speed;
      lanes[lane].scroll = f32(whole(random_unit() * 1360.0));
      lane_fill(lane, lane == 1 ? NO_CELLS : LANES[lane].cells);
    }
    butterfly.x = -256.0F;
    butterfly.path = 1;
    butterfly.dx = 4;
    butterfly.state_time = butterfly.flight_time = now_ms();
    butterfly.scale = 1.0F;
    butterfly.alpha = 255;
    splashes.reset(SHEET_GFROG_SPLASH);
    sparks.reset(SHEET_SPARK);
    hearts.reset(SHEET_HEARTS);
    for (GoldRider& rider : gold_riders) {
      rider.sheet_index = SHEET_WAVE;
      rider.scale = 1.0F;
      rider.start = within_the_last_second();
    }
    for (int i = 0; i < SCENERY_COUNT; ++i) {
      scenery[i].sheet_index = SCENERY[i].sheet;
      scenery[i].x = SCENERY[i].x;
      scenery[i].y = SCENERY[i].y;
      scenery[i].start = now_ms();
      scenery[i].scale = 1.0F;
    }
    recompute();
  }

  void lane_fill(int lane, const char* cells) {
    for (int cell = 0; cell < LANE_CELLS; ++cell) lanes[lane].cells[cell] = cells[cell] - '0';
    slots_fill(lane);
  }

  void slots_fill(int lane) {
    for (int cell = 0; cell < LANE_CELLS; ++cell) {
      LaneSlot& slot = lanes[lane].slots[cell];
      const int kind = lanes[lane].cells[cell];
      const bool some = kind != CELL_EMPTY;
      slot.sheet = !some                ? nullptr
                   : kind == CELL_TIER1 ? &sheets[SHEET_LOG4GOLD]
                   : kind == CELL_TIER2 ? &sheets[SHEET_1TURTLEGOLD]
                                        : &sheets[LANES[lane].sheet];
      slot.frame = 0;
      slot.kind = some ? SLOT_ANIMATED : SLOT_EMPTY;
      slot.cycle_s = some ? LANES[lane].cycle_s : 0.0F;
      slot.cycle_start = some ? within_the_last_second() : 0;
      slot.active = some ? 1 : 0;
    }
  }

  void recompute() {
    const double coins =
        static_cast<double>(pref_int(PREF_COINS_TO_PLAY)) / pref_int(PREF_FROGS_PER_GAME);
    const float wanted =
        f32(static_cast<double>(pref_float(PREF_COIN_VALUE)) * pref_float(PREF_PAYOUT_PERCENT) *
            coins / pref_float(PREF_TICKET_VALUE));
    const float rest = wanted - f32(whole(wanted));
    const double halves = whole(wanted) + (rest < 0.25F ? 0.0 : rest < 0.75F ? 0.5 : 1.0);
    paytable_row = std::clamp(whole((halves - 3.0) * 2.0), 0, ROWS - 1);

    const int n = BUGS_PER_LANE[paytable_row] / (pref_on(PREF_TWO_POINT_TICKETS) ? 2 : 1);
    for (int lane = 7; lane <= 11; ++lane) {
      std::ranges::fill(lanes[lane].eaten, false);
      std::ranges::fill(lanes[lane].cells, CELL_EMPTY);
      for (int count = 0; count < n;) {
        for (int cell = 0; cell < LANE_CELLS && count < n; ++cell) {
          if (random_unit() >= n / 40.0) continue;
          lanes[lane].cells[cell] = CELL_BUG;
          ++count;
        }
      }
      slots_fill(lane);
    }
    boost_factor = pref_on(PREF_BOOST_BONUS) ? 2 : 1;
    lane_fill(1, boost_factor == 2 ? FEW_LOGS : LANES[1].cells);
  }

  // --- the game thread's steps ---

  void river_step() {
    if (!started) change_start = now_ms();
    started = true;
    const float n = f32(static_cast<double>(now_ms()));
    const float s = f32(static_cast<double>(change_start));
    const float e = f32(static_cast<double>(change_at));
    const float c = n < s ? s : n > e ? e : n;
    for (int lane = 1; lane <= 5; ++lane) {
      lanes[lane].speed =
          e == s ? to[lane] : from[lane] + (to[lane] - from[lane]) * (c - s) / (e - s);
    }
    if (now_ms() <= change_at) return;
    std::ranges::copy(to, from);
    change_start = now_ms();
    if (!river_clear(SIDE_LEFT) || !river_clear(SIDE_RIGHT)) {
      change_at = from_now_ms(500, 500);
      return;
    }
    const float wander[] = {0.0F, -0.5F, 1.0F, -0.75F, 0.5F, -0.25F};
    for (int lane = 1; lane <= 5; ++lane) to[lane] = LANES[lane].speed + wander[lane] * std::sin(n);
    change_at = from_now_ms(15000, 15000);
  }

  void lane_step(int number) {
    LaneModel& lane = lanes[number];
    if (lane.speed == 0.0F) return;
    const int w = LANES[number].sprite_w;
    const int frames = LANES[number].frames;
    for (int cell = 0; cell < LANE_CELLS; ++cell) {
      LaneSlot& slot = lane.slots[cell];
      const bool off_screen = slot.x + w <= 0 || slot.x >= 1360;
      const bool left_of_middle = slot.x > 680 - 1.5 * w && slot.x <= 680 - 0.5 * w;
      if (off_screen || left_of_middle) lane.eaten[cell] = false;
      if (!watched) continue;
      slot.active = lane.eaten[cell] ? 0 : 1;
      if (slot.kind == SLOT_EMPTY) continue;
      const float run = f32(static_cast<double>((now_ms() - slot.cycle_start) * frames));
      const int frame = whole(run / (slot.cycle_s * 1000.0F)) % frames;
      if (frame == 0 && slot.frame != 0) slot.cycle_start = now_ms();
      slot.frame = frame;
    }
    const float wrap = f32(40 * LANES[number].cell_size);
    lane.scroll += lane.speed;
    if (lane.scroll > wrap) lane.scroll -= wrap;
    if (lane.scroll < 0.0F) lane.scroll += wrap;
  }

  void butterfly_step() {
    Butterfly& fly = butterfly;
    const float a = seconds_since(fly.state_time);
    if (watched) butterfly_looks(a);
    if (fly.state == BUTTERFLY_PARKED && a > fly.wait_s) {
      fly.state = BUTTERFLY_FLYING;
      fly.path = std::min(whole(4.0 * random_unit()), 3);
      fly.dx = 4 - whole(-2.0 * random_unit());
      if (random_unit() < 0.5) fly.dx = -fly.dx;
      fly.state_time = fly.flight_time = now_ms();
      fly.y = 0;
      fly.x = fly.dx > 0 ? -256.0F : 1360.0F;
    } else if (fly.state == BUTTERFLY_FLYING) {
      fly.x += f32(fly.dx);
      const float u = fly.x + 128.0F;
      const float y[] = {
          std::cos(u * PI / 1360.0F) * (fly.dx >= 0 ? 106.0F : -106.0F) + 54.0F,
          std::cos(u * 2.0F * PI / 1360.0F + PI) * 112.0F + 60.0F,
          std::cos(u * 4.0F * PI / 1360.0F) * 52.0F,
          std::cos(u * 4.0F * PI / 1360.0F + PI) * 52.0F,
      };
      fly.y = whole(y[fly.path]);
      if (fly.x > 1360.0F || fly.x < -256.0F) park();
    } else if (fly.state == BUTTERFLY_CAUGHT && a > 2.0F) {
      park();
    }
  }

  void butterfly_looks(float a) {
    Butterfly& fly = butterfly;
    const float b = seconds_since(fly.flight_time);
    const bool caught = fly.state == BUTTERFLY_CAUGHT;
    fly.alpha = caught ? whole(255.0F * std::clamp((2.0F - a) * 4.0F * 0.5F, 0.0F, 1.0F)) : 255;
    fly.scale = caught ? 1.0F + 0.25F * a + 0.25F * std::sin(4.0F * PI * a * 0.5F)
                       : std::max(fly.scale - 0.1F, 1.0F);
    if (fly.state == BUTTERFLY_FLYING) fly.frame = whole(a * 32.0F / 1.2F) % 32;
    if (fly.state != BUTTERFLY_PARKED) fly.ticket_frame = whole(18.0F * b / 1.2F) % 18;
  }

  void park() {
    butterfly.state = BUTTERFLY_PARKED;
    butterfly.state_time = now_ms();
    butterfly.wait_s = f32(10.0 + 10.0 * random_unit());
    butterfly.x = -256.0F;
    butterfly.y = 0;
  }

  // --- the workers' steps ---

  void workers_step() {
    for (int i = 0; i < SCENERY_COUNT; ++i) {
      const int frame = cycle(scenery[i].start, SCENERY[i].frames, SCENERY[i].period_ms);
      if (frame == 0 && scenery[i].frame != 0) scenery[i].start = now_ms();
      scenery[i].frame = frame;
    }
    const auto now = static_cast<double>(now_ms());
    pad_breathe(PLANT_COUNT + 2, now * 0.00075 * std::numbers::pi);
    pad_breathe(PLANT_COUNT + 3, (now + 666.0) * 0.0007 * std::numbers::pi);
    riders_step();
    splashes.step(20, 625.0);
    sparks.step(16, 100.0);
    hearts.step(30, 1000.0);
    for (HeartFx& heart : hearts.records) {
      if (heart.frame < 0) continue;
      heart.x = gold_riders[heart.rider].x + 60;
      heart.y = gold_riders[heart.rider].y.get();
    }
  }

  void pad_breathe(int pad, double a) {
    const float scale = std::cos(f32(a)) * 0.1F + 1.0F;
    const float less = (scale - 1.0F) * 0.5F * 128.0F;
    scenery[pad].scale = scale;
    scenery[pad].x = whole(f32(SCENERY[pad].x) - less);
    scenery[pad].y = whole(f32(SCENERY[pad].y) - less);
  }

  void riders_step() {
    const double passed_s = static_cast<double>(now_ms() - riders_last_ms) / 1000.0;
    riders_last_ms = now_ms();
    for (GoldRider& rider : gold_riders) {
      const bool kissing = rider.sheet_index == SHEET_KISS;
      const int frame = cycle(rider.start, kissing ? 42 : 64, kissing ? 1476.5625 : 2250.0);
      if (frame == rider.frame) continue;
      rider.frame = frame;
      rider.scale = std::max(rider.scale - f32(passed_s * 20.0 * 0.1), 1.0F);
      if (frame != 0) continue;
      rider.sheet_index = SHEET_WAVE;
      rider.start = now_ms();
    }
  }
};
