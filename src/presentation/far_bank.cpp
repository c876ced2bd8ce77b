// The river's foam, the far bank and the jackpot that it promises.
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "playfield/paytable.h"  // jackpot_value
#include "playfield/playfield.h"
#include "presentation/draw_tools.h"
#include "presentation/scene.h"

namespace {

constexpr int FOAM_TILE_PX = 473;

struct FarBank {
  struct FoamScroll {  // pixels
    float near_x = -FOAM_TILE_PX;
    float far_x = LAYOUT_WIDTH;
  } foam;
  struct BonusPulse {
    float scale = 1.0F;
    float alpha = 1.0F;
  } pulse;
};

constinit FarBank state;

constexpr int FOAM_TILES = 4;
constexpr int FOAM_Y_PX = 68;

constexpr float GLYPH_WIDTH_PX = FONTS[FONT_29X43].glyph_width;
constexpr float GLYPH_HEIGHT_PX = FONTS[FONT_29X43].glyph_height;

void foam_step() {
  state.foam.near_x += 0.37F;
  if (state.foam.near_x >= 0.0F) state.foam.near_x = -FOAM_TILE_PX;
  state.foam.far_x -= 0.23F;
  if (state.foam.far_x <= LAYOUT_WIDTH - FOAM_TILE_PX) state.foam.far_x = LAYOUT_WIDTH;
}

void pulse_step() {
  state.pulse.scale += 0.005F;
  state.pulse.alpha -= 0.0075F;
  if (state.pulse.alpha < -1.0F) state.pulse = {};
}

void ghost_draw(const char* value, float centre) {
  const auto alpha = static_cast<std::int32_t>(state.pulse.alpha * 255.0F);
  const float scale = state.pulse.scale;
  const auto count = static_cast<float>(std::strlen(value));
  const auto x = static_cast<int>(centre - GLYPH_WIDTH_PX * 0.5F * scale * count);
  const auto y = static_cast<int>(29.0F - GLYPH_HEIGHT_PX * 0.5F * (scale - 1.0F));
  text_draw_scaled(FONT_29X43, faded(COLOUR_BLACK, alpha), x, y, scale, scale, "%s", value);
  text_draw_scaled(FONT_29X43, faded(COLOUR_WHITE, alpha), x - 3, y - 3, scale, scale, "%s", value);
}

void lily_value_draw(const char* value, float centre) {
  if (state.pulse.alpha > 0.0F) ghost_draw(value, centre);
  const auto count = static_cast<float>(std::strlen(value));
  const auto x = static_cast<int>(centre - 0.5F * GLYPH_WIDTH_PX * count);
  text_draw(FONT_29X43, COLOUR_BLACK, x, 29, "%s", value);
  text_draw(FONT_29X43, COLOUR_WHITE, x - 3, 26, "%s", value);
}

}  // namespace

void foam_draw() {
  constexpr std::uint32_t NEAR_COLOUR = 0xC0FFFFFF;
  const int near_x = static_cast<int>(state.foam.near_x);
  const int far_x = static_cast<int>(state.foam.far_x);
  for (int i = 0; i < FOAM_TILES; ++i) {
    picture_draw(PANEL_RIVERFOAM_1, near_x + i * FOAM_TILE_PX, FOAM_Y_PX, NEAR_COLOUR);
  }
  for (int i = 0; i < FOAM_TILES; ++i) {
    picture_draw(PANEL_RIVERFOAM_2, far_x - i * FOAM_TILE_PX, FOAM_Y_PX);
  }
  foam_step();
}

void far_bank_draw() {
  for (const Scenery& scenery : far_bank) {
    const auto sheet = static_cast<SheetIndex>(scenery.sheet_index);
    if (sheet == SHEET_LILYPAD3) {
      cell_draw_scaled(sheet, scenery.frame, scenery.x, scenery.y, scenery.scale);
    } else {
      cell_draw(sheet, scenery.frame, scenery.x, scenery.y);
    }
  }
}

void jackpot_lily_draw() {
  if (!tickets_advertised()) return;
  char value[12];
  std::snprintf(value, sizeof value, "%d", value_advertised(jackpot_value()));
  pulse_step();
  picture_draw(PANEL_LILY_BONUS_TXT, 310, -1);
  lily_value_draw(value, 343.0F);
  picture_draw(PANEL_LILY_BONUS_TXT, 990, -1);
  lily_value_draw(value, 1023.0F);
}

void far_bank_reset() {
  state = {};
}
