#include <cstdint>

#include "gfx/panel.h"  // gfx_rect_draw
#include "gfx/text.h"
#include "io/jamma.h"
#include "operator/menu_tree.h"
#include "operator/test_screen.h"
#include "sound/jps.h"

void dip_test_input() {
  if (!jamma_pressed(PRESS_SRV) && !jamma_pressed(PRESS_P2S)) return;
  test_screen_end();
  jps_bank_play_name("menu_cancel");
}

void dip_test_draw() {
  constexpr std::uint32_t SLOT = 0xFF000000;
  const auto dips = static_cast<std::uint32_t>(jamma_command(JAMMA_GET_DIPS));
  text_draw(FONT_8X12, COLOUR_WHITE, 680, 204, "DIP SWITCH VALUES");
  text_draw(FONT_8X12, COLOUR_WHITE, 562, 244, "VALUE");
  text_draw(FONT_8X12, COLOUR_WHITE, 664, 244, "STATE");
  text_draw(FONT_8X12, COLOUR_WHITE, 790, 244, "SWITCH");
  for (int row = 0; row < 8; ++row) {
    const int bit = 7 - row;
    const bool on = (dips >> bit & 1U) != 0;
    const int y = 275 + 20 * row;
    text_draw(FONT_8X12, COLOUR_WHITE, 562, y, "%s", on ? "On" : "Off");
    gfx_rect_draw(664, y - 4, 32, 16, SLOT, SLOT);
    gfx_rect_draw(on ? 664 : 680, y - 4, 16, 16, COLOUR_WHITE, COLOUR_WHITE);
    text_draw(FONT_8X12, COLOUR_WHITE, 790, y, "%d", bit + 1);
  }
  text_draw(FONT_8X12, COLOUR_WHITE, 680, 464, "Hit Service or Right Start to continue");
}
