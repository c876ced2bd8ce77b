// Test pictures for the monitor: colours, purity, convergence.
#include <cstdint>

#include "gfx/frame.h"  // LAYOUT_WIDTH
#include "gfx/panel.h"  // gfx_rect_draw, gfx_line_draw
#include "gfx/text.h"
#include "io/jamma.h"
#include "operator/menu_tree.h"
#include "operator/test_screen.h"
#include "sound/jps.h"

namespace {

constexpr int GRID_PX = 40;

void bars() {
  constexpr struct {
    int y;
    std::uint32_t channels;  // 0xFF for each channel in use
  } BLOCKS[] = {{32, 0x00FFFFFF}, {192, 0x00FF0000}, {352, 0x0000FF00}, {512, 0x000000FF}};
  for (const auto& block : BLOCKS) {
    for (std::uint32_t i = 0; i < 16; ++i) {
      const std::uint32_t colour = 0xFF000000 | (0x00111111 * i & block.channels);
      gfx_rect_draw(32 + 81 * static_cast<int>(i), block.y, 81, 64, colour, colour);
    }
    gfx_rect_draw(32, block.y + 64, 1296, 64, COLOUR_BLACK, 0xFF000000 | block.channels);
  }
}

void fill_screen(std::uint32_t colour) {
  gfx_rect_draw(0, 0, LAYOUT_WIDTH + 1, LAYOUT_HEIGHT + 1, colour, colour);
}

void line(int x0, int y0, int x1, int y1) {
  gfx_line_draw(nullptr, 1.0F, x0, y0, x1, y1, COLOUR_WHITE);
}

void grid() {
  fill_screen(COLOUR_BLACK);
  for (int x = 0; x < LAYOUT_WIDTH; x += GRID_PX) line(x, 0, x, LAYOUT_HEIGHT);
  line(LAYOUT_WIDTH, 0, LAYOUT_WIDTH, LAYOUT_HEIGHT);
  for (int y = 0; y < 760; y += GRID_PX) line(0, y, LAYOUT_WIDTH, y);
  line(0, LAYOUT_HEIGHT, LAYOUT_WIDTH, LAYOUT_HEIGHT);
  for (int y = GRID_PX / 2; y < LAYOUT_HEIGHT; y += GRID_PX) {
    for (int x = GRID_PX / 2; x < LAYOUT_WIDTH; x += GRID_PX) {
      gfx_rect_draw(x, y, 2, 2, COLOUR_WHITE, COLOUR_WHITE);
    }
  }
}

void captions(const char* caption) {
  const char* more = "Hit Test or Right Start to continue";
  text_draw(FONT_8X12, COLOUR_BLACK, 33, 697, "%s", caption);
  text_draw(FONT_8X12, COLOUR_BLACK, 33, 717, "%s", more);
  text_draw(FONT_8X12, COLOUR_WHITE, 32, 696, "%s", caption);
  text_draw(FONT_8X12, COLOUR_WHITE, 32, 716, "%s", more);
}

void purity(std::uint32_t colour, const char* caption) {
  fill_screen(colour);
  captions(caption);
}

bool next_pressed() {
  if (!jamma_pressed(PRESS_TST) && !jamma_pressed(PRESS_P2S)) return false;
  jps_bank_play_name("menu_select");
  return true;
}

}  // namespace

void monitor_test_next() {
  if (next_pressed()) test_screen = test_screen + 1;
}

void monitor_test_end() {
  if (next_pressed()) test_screen_end();
}

void color_bars_draw() {
  bars();
  captions("Color Bars");
}

void white_purity_draw() {
  purity(0xFFFFFFFF, "White Purity");
}

void red_purity_draw() {
  purity(0xFFFF0000, "Red Purity");
}

void green_purity_draw() {
  purity(0xFF00FF00, "Green Purity");
}

void blue_purity_draw() {
  purity(0xFF0000FF, "Blue Purity");
}

void convergence_draw() {
  grid();
  captions("Convergence");
}
