// Splashes, sparks and hearts: rings of records that are played through once.
#include "playfield/workers.h"

#include <cstdint>

#include "frame/game_clock.h"  // now_ms
#include "gfx/panel_table.h"   // sheets
#include "playfield/playfield.h"

namespace {

constexpr std::int64_t LONG_AGO_MS = -1'000'000;
constexpr std::int32_t HEART_OFFSET_PX = 60;  // from the rider's left edge

struct EffectRow {
  SheetIndex sheet;
  double duration_ms;
};
constexpr EffectRow SPLASH = {SHEET_GFROG_SPLASH, 625.0};
constexpr EffectRow SPARK = {SHEET_SPARK, 100.0};
constexpr EffectRow HEART = {SHEET_HEARTS, 1000.0};

struct EffectCounters {  // the next record of each ring
  int splash, spark, heart;
};
constinit EffectCounters next_effect{};

// A ring doesn't look whether its next record is idle: the oldest effect makes room.
template <typename Fx, int count>
Fx& take_next(Fx (&ring)[count], int& next, const EffectRow& row, int x, int y) {
  Fx& effect = ring[next];
  next = (next + 1) % count;
  effect.sheet_index = row.sheet;
  effect.x = x;
  effect.y = y;
  return effect;
}

// The frame follows from the start alone, so that a step that races with a start is put right by
// the next one.
void effect_start(Effect& effect) {
  effect.start = now_ms();
  effect.frame = 0;
}

template <typename Fx, int count>
void ring_step(Fx (&ring)[count], const EffectRow& row) {
  const std::int64_t now = now_ms();
  for (Effect& effect : ring) {
    const std::int32_t frames = sheets[row.sheet].frames;
    const double at = static_cast<double>(now - effect.start) * frames / row.duration_ms;
    effect.frame = at < frames ? static_cast<std::int32_t>(at) : -1;
  }
}

template <typename Fx, int count>
void ring_reset(Fx (&ring)[count], const EffectRow& row) {
  for (Effect& effect : ring) {
    effect.sheet_index = row.sheet;
    effect.frame = -1;
    effect.x = 0;
    effect.y = 0;
    effect.start = LONG_AGO_MS;
  }
}

std::int32_t heart_x(const GoldRider& rider) {
  return rider.x + HEART_OFFSET_PX;
}

void hearts_follow() {
  for (HeartFx& heart : heart_fx) {
    if (heart.frame < 0) continue;
    const GoldRider& rider = gold_riders[heart.rider];
    heart.x = heart_x(rider);
    heart.y = rider.y.get();
  }
}

}  // namespace

void fx_splash_start(int x, int y, int lane) {
  SplashFx& effect = take_next(splash_fx, next_effect.splash, SPLASH, x, y);
  effect.lane = lane;
  effect_start(effect);
}

void fx_spark_start(int x, int y) {
  effect_start(take_next(spark_fx, next_effect.spark, SPARK, x, y));
}

void fx_heart_start(int rider) {
  const GoldRider& under = gold_riders[rider];
  HeartFx& effect = take_next(heart_fx, next_effect.heart, HEART, heart_x(under), under.y);
  effect.rider = rider;
  effect_start(effect);
}

void effects_step() {
  ring_step(splash_fx, SPLASH);
  ring_step(spark_fx, SPARK);
  ring_step(heart_fx, HEART);
  hearts_follow();
}

void effects_reset() {
  next_effect = {};
  ring_reset(splash_fx, SPLASH);
  ring_reset(spark_fx, SPARK);
  ring_reset(heart_fx, HEART);
  for (SplashFx& splash : splash_fx) splash.lane = 0;
  for (HeartFx& heart : heart_fx) heart.rider = 0;
}
