// The lanes with what stands on them: gold riders and their tickets, splashes, hearts, sparks.
#include <cstdint>

#include "gfx/strip.h"           // gfx_strip_draw
#include "playfield/paytable.h"  // tier1_value
#include "playfield/playfield.h"
#include "presentation/draw_tools.h"
#include "presentation/scene.h"

namespace {

constexpr int RIDER_X_PX = 16;   // from the left edge of what it stands on
constexpr int TICKET_X_PX = -4;  // the tag's middle

struct GoldLook {  // heights are from the top edge of the cell
  int rider_y;
  int ticket_y;  // the tag's middle
  std::uint32_t ticket_colour;
  int text_y;  // the white text's middle
};

constexpr GoldLook turtle_look = {-58, -2, COLOUR_WHITE, 0};
constexpr GoldLook log_look = {-84, -28, 0xFFCCCCCC, -26};

void gold_value_draw(int x, int y, float scale, std::int32_t value) {
  const int digits = digits_counted(value, 4);
  const float edge = value < 100 ? -4.0F : 3.0F;
  const float left =
      static_cast<float>(x) + edge - GLYPH_HALF_WIDTH_PX * static_cast<float>(digits) * scale;
  const float top = static_cast<float>(y) - GLYPH_HALF_HEIGHT_PX * scale;
  text_draw_scaled(FONT_14X22, COLOUR_BLACK, static_cast<int>(left), static_cast<int>(top + 1.0F),
                   scale, scale, "%d", value);
  text_draw_scaled(FONT_14X22, COLOUR_WHITE, static_cast<int>(left - 1.0F), static_cast<int>(top),
                   scale, scale, "%d", value);
}

void gold_draw(GoldRider& rider, const LaneSlot& slot, const GoldLook& look, std::int32_t value) {
  const int x = slot.x;
  const int y = slot.y;
  rider.x = x + RIDER_X_PX;
  rider.y = y + look.rider_y;
  cell_draw(static_cast<SheetIndex>(rider.sheet_index.get()), rider.frame, rider.x, rider.y);
  if (!tickets_advertised()) return;
  const float scale = rider.scale;
  const float left = static_cast<float>(x + TICKET_X_PX) - 64.0F * scale;
  const float top = static_cast<float>(y + look.ticket_y) - 32.0F * scale;
  picture_draw_scaled(PANEL_PINK_TICKET, static_cast<int>(left), static_cast<int>(top), scale,
                      look.ticket_colour);
  gold_value_draw(x, y + look.text_y, scale, value_advertised(value));
}

// Gives each gold object that has been on screen its rider, by number from the far bank on.
void lane_golds_draw(int lane, int& riders) {
  for (int cell = 0; cell < LANE_CELLS; ++cell) {
    const LaneSlot& slot = lanes[lane].slots[cell];
    const std::int32_t kind = lane_cells[lane][cell];
    if (kind != CELL_TIER1 && kind != CELL_TIER2) continue;
    if ((slot.x == 0 && slot.y == 0) || riders == RIDER_COUNT) continue;
    GoldRider& rider = gold_riders[riders++];
    rider.lane = lane;
    rider.slot = cell;
    if (kind == CELL_TIER2) {
      gold_draw(rider, slot, turtle_look, tier2_value());
    } else {
      gold_draw(rider, slot, log_look, tier1_value());
    }
  }
}

// A worker ends an effect at any moment: its frame is read once.
void effect_draw(const Effect& effect) {
  const std::int32_t frame = effect.frame;
  if (frame < 0) return;
  cell_draw(static_cast<SheetIndex>(effect.sheet_index.get()), frame, effect.x, effect.y);
}

}  // namespace

void lanes_draw() {
  int riders = 0;
  for (int lane = 0; lane < LANE_COUNT; ++lane) {
    gfx_strip_draw(&lanes[lane]);
    lane_golds_draw(lane, riders);
    for (const SplashFx& splash : splash_fx) {
      if (splash.lane == lane) effect_draw(splash);
    }
  }
}

void hearts_draw() {
  for (const HeartFx& heart : heart_fx) effect_draw(heart);
}

void sparks_draw() {
  for (const SparkFx& spark : spark_fx) effect_draw(spark);
}
