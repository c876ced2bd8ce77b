#include "presentation/ticket_flakes.h"

#include "frame/sides.h"
#include "gfx/panel_table.h"  // PANEL_TICKET
#include "platform/random.h"  // random_unit
#include "platform/shared.h"
#include "presentation/draw_tools.h"

namespace {

constexpr int FLAKES = 40;
constexpr double DROP_CHANCE = 0.01666666753590107;  // per pass of about a millisecond: 16 a second
constexpr float FALL = 12.0F;                        // pixels a move, for each second of age
constexpr std::int32_t GONE_BELOW_Y = 800;

struct TicketFlake {
  Shared<std::int32_t> active;
  Shared<std::int32_t> x, y;
  Shared<float> rotation;   // degrees
  float age, vx, vy, spin;  // age in seconds; worker thread
};

constinit TicketFlake flakes[SIDE_COUNT][FLAKES]{};

std::int32_t part_of(int whole) {
  return static_cast<std::int32_t>(whole * random_unit());
}

float chance(double least, double span) {
  return static_cast<float>(least + span * random_unit());
}

}  // namespace

void ticket_flakes_clear(int side) {
  for (TicketFlake& flake : flakes[side]) {
    flake.active = 0;
    flake.x = -256;
    flake.y = -128;
    flake.rotation = 0.0F;
    flake.age = flake.vx = flake.vy = flake.spin = 0.0F;
  }
}

void ticket_flakes_drop(int side) {
  if (random_unit() >= DROP_CHANCE) return;
  for (TicketFlake& flake : flakes[side]) {
    if (flake.active != 0) continue;
    flake.age = 0.0F;
    flake.x = HALF_WIDTH_PX * side + part_of(552);
    flake.y = -64 - part_of(64);
    flake.vx = chance(0.0, 64.0);
    flake.vy = chance(32.0, 128.0);
    flake.rotation = chance(0.0, 360.0);
    flake.spin = chance(-90.0, 180.0);
    flake.active = 1;
    return;
  }
}

void ticket_flakes_move(int side, float dt_s) {
  for (TicketFlake& flake : flakes[side]) {
    if (flake.active == 0) continue;
    flake.x = static_cast<std::int32_t>(static_cast<float>(flake.x) + flake.vx * dt_s);
    flake.y =
        static_cast<std::int32_t>(static_cast<float>(flake.y) + flake.vy * dt_s + FALL * flake.age);
    flake.rotation = flake.rotation + flake.spin * dt_s;
    flake.age += dt_s;
    if (flake.y > GONE_BELOW_Y) flake.active = 0;
  }
}

void ticket_flakes_draw(int side) {
  Panel panel = panels[PANEL_TICKET];
  panel.flags |= PANEL_ROTATED;
  panel.src_x = panel.src_y = 0;
  panel.src_w = panel.width;
  panel.src_h = panel.height;
  for (const TicketFlake& flake : flakes[side]) {
    if (flake.active == 0) continue;
    panel.x = flake.x;
    panel.y = flake.y;
    panel.rotation = flake.rotation;
    gfx_panel_draw(panel);
  }
}
