#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "frame/game_clock.h"  // now_ms, seconds_since
#include "platform/random.h"   // random_unit
#include "playfield/looks.h"   // CAUGHT_SECONDS
#include "playfield/river.h"   // butterfly_update

namespace {

constexpr float LEFT_END_PX = -256.0F;
constexpr float RIGHT_END_PX = LAYOUT_WIDTH;
constexpr float PI = std::numbers::pi_v<float>;

void park() {
  butterfly.state = BUTTERFLY_PARKED;
  butterfly.state_time = now_ms();
  butterfly.wait_s = static_cast<float>(10.0 + 10.0 * random_unit());
  butterfly.x = LEFT_END_PX;
  butterfly.y = 0;
}

void take_off() {
  butterfly.state = BUTTERFLY_FLYING;
  butterfly.path = std::min(static_cast<std::int32_t>(4.0 * random_unit()), 3);
  const std::int32_t dx = 4 - static_cast<std::int32_t>(-2.0 * random_unit());
  butterfly.dx = random_unit() < 0.5 ? -dx : dx;
  butterfly.state_time = now_ms();
  butterfly.flight_time = now_ms();
  butterfly.y = 0;
  butterfly.x = butterfly.dx > 0 ? LEFT_END_PX : RIGHT_END_PX;
}

std::int32_t path_y(std::int32_t path, float x, std::int32_t dx) {
  const float u = x + 128.0F;
  switch (path) {
    case 0:  // turned over on the way back, so that it is one curve seen from both sides
      return static_cast<std::int32_t>(
          std::cos(u * PI / RIGHT_END_PX) * (dx >= 0 ? 106.0F : -106.0F) + 54.0F);
    case 1:
      return static_cast<std::int32_t>(std::cos(u * 2.0F * PI / RIGHT_END_PX + PI) * 112.0F +
                                       60.0F);
    case 2:
      return static_cast<std::int32_t>(std::cos(u * 4.0F * PI / RIGHT_END_PX) * 52.0F);
    default:
      return static_cast<std::int32_t>(std::cos(u * 4.0F * PI / RIGHT_END_PX + PI) * 52.0F);
  }
}

void fly() {
  butterfly.x += static_cast<float>(butterfly.dx);
  butterfly.y = path_y(butterfly.path, butterfly.x, butterfly.dx);
  if (butterfly.x > RIGHT_END_PX || butterfly.x < LEFT_END_PX) park();
}

}  // namespace

void butterfly_update() {
  const float a = seconds_since(butterfly.state_time);
  butterfly_looks_update(a);
  switch (butterfly.state) {
    case BUTTERFLY_PARKED:
      if (a > butterfly.wait_s) take_off();
      break;
    case BUTTERFLY_FLYING:
      fly();
      break;
    case BUTTERFLY_CAUGHT:
      if (a > CAUGHT_SECONDS) park();
      break;
    default:
      break;
  }
}
