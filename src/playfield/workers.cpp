#include "playfield/workers.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "frame/game_clock.h"  // now_ms
#include "gfx/panel_table.h"   // sheets
#include "platform/random.h"   // random_unit
#include "playfield/playfield.h"

namespace {

struct SceneryRow {
  SheetIndex sheet;
  std::int32_t x, y;
  double period_s;
};

constexpr SceneryRow plant_rows[PLANT_COUNT] = {
    {SHEET_PLANTS1, 0, 0, 2.95},    {SHEET_PLANTS2, 0, 170, 2.73},
    {SHEET_PLANTS3, 0, 480, 2.51},  {SHEET_PLANTS4, 1104, 120, 2.82},
    {SHEET_PLANTS5, 1104, 0, 3.11}, {SHEET_PLANTS6, 848, 512, 2.61},
};
constexpr SceneryRow far_bank_rows[FAR_BANK_COUNT] = {
    {SHEET_FINISH, 84, -44, 3.27},
    {SHEET_FINISH, 764, -44, 3.37},
    {SHEET_LILYPAD3, 276, -16, 3.41},
    {SHEET_LILYPAD3, 956, -16, 3.49},
};
constexpr SceneryRow cattail_rows[CATTAIL_COUNT] = {
    {SHEET_CTAIL1, 154, 634, 3.03},
    {SHEET_CTAIL2, 390, 658, 3.37},
    {SHEET_CTAIL1, 834, 634, 2.93},
    {SHEET_CTAIL2, 1070, 658, 3.11},
};
constexpr SceneryRow sign_rows[SIGN_COUNT] = {
    {SHEET_WDSIGN, 13, 654, 2.93},
    {SHEET_LNGSIGN, 552, 654, 3.07},
    {SHEET_WDSIGN, 1091, 654, 3.13},
};

constexpr double PI = std::numbers::pi;
constexpr int LEFT_PAD = 2;
constexpr int RIGHT_PAD = 3;
constexpr float PAD_SIZE_PX = 128.0F;

// The kiss runs at the frame rate of the wave.
constexpr double WAVE_MS = 2250.0;
constexpr double KISS_MS = 1476.5625;

// The rider worker's memory.
constinit std::int64_t riders_last_ms = 0;

std::int32_t cycle_frame(std::int64_t elapsed_ms, std::int32_t frames, double length_ms) {
  return static_cast<std::int32_t>(static_cast<double>(elapsed_ms * frames) / length_ms) % frames;
}

template <int count>
void scenery_place(Scenery (&group)[count], const SceneryRow (&rows)[count]) {
  for (int i = 0; i < count; ++i) {
    group[i].sheet_index = rows[i].sheet;
    group[i].frame = 0;
    group[i].x = rows[i].x;
    group[i].y = rows[i].y;
    group[i].start = now_ms();
    group[i].scale = 1.0F;
  }
}

template <int count>
void scenery_step(Scenery (&group)[count], const SceneryRow (&rows)[count]) {
  const std::int64_t now = now_ms();
  for (int i = 0; i < count; ++i) {
    Scenery& scenery = group[i];
    const std::int32_t frame =
        cycle_frame(now - scenery.start, sheets[rows[i].sheet].frames, rows[i].period_s * 1000.0);
    if (frame == 0 && scenery.frame != 0) scenery.start = now;
    scenery.frame = frame;
  }
}

// Round its middle.
void pad_breathe(int pad, double phase) {
  Scenery& scenery = far_bank[pad];
  const float scale = std::cos(static_cast<float>(phase)) * 0.1F + 1.0F;
  const float grown = (scale - 1.0F) * 0.5F * PAD_SIZE_PX;
  scenery.scale = scale;
  scenery.x = static_cast<std::int32_t>(static_cast<float>(far_bank_rows[pad].x) - grown);
  scenery.y = static_cast<std::int32_t>(static_cast<float>(far_bank_rows[pad].y) - grown);
}

void scenery_worker_plants() {
  scenery_step(plants, plant_rows);
}
void scenery_worker_far_bank() {
  scenery_step(far_bank, far_bank_rows);
  const auto now = static_cast<double>(now_ms());
  pad_breathe(LEFT_PAD, now * 0.00075 * PI);
  pad_breathe(RIGHT_PAD, (now + 666.0) * 0.0007 * PI);
}
void scenery_worker_cattails() {
  scenery_step(cattails, cattail_rows);
}
void scenery_worker_signs() {
  scenery_step(signs, sign_rows);
}

void rider_step(GoldRider& rider, std::int64_t now, float shrink) {
  const std::int32_t sheet = rider.sheet_index;
  const std::int64_t start = rider.start;
  const bool kissing = sheet == SHEET_KISS;
  const std::int32_t frame =
      cycle_frame(now - start, sheets[sheet].frames, kissing ? KISS_MS : WAVE_MS);
  if (frame == rider.frame) return;
  if (rider.start != start || rider.sheet_index != sheet) return;  // a kiss has just begun
  rider.frame = frame;
  if (frame == 0) {
    if (kissing) rider.sheet_index = SHEET_WAVE;
    rider.start = now;
  }
  rider.scale = std::max(rider.scale - shrink, 1.0F);
}

void gold_rider_worker() {
  const std::int64_t now = now_ms();
  const auto shrink =
      static_cast<float>(static_cast<double>(now - riders_last_ms) / 1000.0 * 20.0 * 0.1);
  for (GoldRider& rider : gold_riders) rider_step(rider, now, shrink);
  riders_last_ms = now;
}

void riders_reset() {
  riders_last_ms = 0;
  for (GoldRider& rider : gold_riders) {
    rider.sheet_index = SHEET_WAVE;
    rider.frame = 0;
    rider.x = 0;
    rider.y = 0;
    rider.lane = 0;
    rider.slot = 0;
    rider.scale = 1.0F;
    rider.start = static_cast<std::int64_t>(static_cast<double>(now_ms()) - random_unit() * 1000.0);
  }
}

}  // namespace

void workers_step() {
  scenery_worker_plants();
  scenery_worker_far_bank();
  scenery_worker_cattails();
  scenery_worker_signs();
  gold_rider_worker();
  effects_step();
}

void workers_reset() {
  effects_reset();
  riders_reset();
  scenery_place(plants, plant_rows);
  scenery_place(far_bank, far_bank_rows);
  scenery_place(cattails, cattail_rows);
  scenery_place(signs, sign_rows);
}
