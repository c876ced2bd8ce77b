// What the drawing calls pass to the display: sizes, places, source rectangles.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "gfx/blit.h"
#include "gfx/panel.h"
#include "gfx/panel_table.h"
#include "gfx/strip.h"
#include "gfx/text.h"
#include "gfx/texture.h"
#include "platform/headless/display_record.h"
#include "tests/gfx/pictures.h"

namespace {

constexpr std::uint32_t WHITE = 0xFFFFFFFF;

std::uint32_t white(int /*x*/, int /*y*/) {
  return WHITE;
}

struct DrawTest : testing::Test {
  DrawTest() {
    headless_display.record = true;
    headless_display.recorded.clear();
  }
  ~DrawTest() override { headless_display.record = false; }

  // Each quad since the last call: its place and size, the part of its texture in 128ths of a side,
  // and what of it is unusual.
  static std::string drawn() {
    std::string all;
    for (const DisplayQuad& q : std::exchange(headless_display.recorded, {})) {
      std::ostringstream text;
      text << (all.empty() ? "" : "; ") << q.x[0] << ',' << q.y[0] << ' ' << q.x[2] - q.x[0] << 'x'
           << q.y[2] - q.y[0] << " of " << q.u[0] * 128 << ',' << q.v[0] * 128 << ' '
           << (q.u[2] - q.u[0]) * 128 << 'x' << (q.v[2] - q.v[0]) * 128;
      if (q.x[1] != q.x[2] || q.x[3] != q.x[0] || q.y[1] != q.y[0] || q.y[3] != q.y[2])
        text << " turned";
      if (q.u[1] != q.u[2] || q.u[3] != q.u[0] || q.v[1] != q.v[0] || q.v[3] != q.v[2])
        text << " with a turned picture";
      if (q.clipped) {
        text << " clipped to " << q.clip.x << ',' << q.clip.y << ' ' << q.clip.width << 'x'
             << q.clip.height;
      }
      if (q.opaque) text << " opaque";
      if (q.colour[0] != WHITE) text << " #" << std::hex << q.colour[0];
      if (std::ranges::count(q.colour, q.colour[0]) != 4) text << " in several colours";
      all += text.str();
    }
    return all;
  }

  GlTexture texture{1, 256, 128, nullptr};
  Panel panel = {&texture, 10, 20, 256, 128, 0.0F, 0.0F, 1, 1, WHITE, 0, 0, 0, 0, 0.0F, {}, 0};
};

TEST_F(DrawTest, PanelFlagsDecideItsSizeAndLook) {
  panel.width = 15;
  panel.height = 7;
  panel.src_w = 32;
  panel.src_h = 16;
  panel.scale_x = 1.3F;
  panel.scale_y = 0.7F;
  panel.colour = 0x80112233;
  panel.flip = 1;
  panel.rotation = 90.0F;
  const std::pair<std::uint32_t, const char*> cases[] = {
      {0, "10,20 15x7 of 7.5,0 -7.5x7 #80112233"},
      {PANEL_HALF_SIZE, "10,20 7x3 of 7.5,0 -7.5x7 #80112233"},
      {PANEL_SOURCE_RECT, "10,20 32x16 of 16,0 -16x16 #80112233"},
      {PANEL_SOURCE_RECT | PANEL_HALF_SIZE, "10,20 32x16 of 16,0 -16x16 #80112233"},
      {PANEL_SOURCE_RECT | PANEL_SCALED, "10,20 41x11 of 16,0 -16x16 #80112233"},
      {PANEL_SCALED, "10,20 32x16 of 7.5,0 -7.5x7 #80112233"},
      {PANEL_HALF_SIZE | PANEL_SCALED, "10,20 7x3 of 7.5,0 -7.5x7 #80112233"},
      {PANEL_SOURCE_RECT | PANEL_ROTATED, "18,44 16x-32 of 0,0 16x16 turned"},
      {PANEL_ROTATED, "18,44 16x-32 of 0,0 7.5x7 turned"},
  };
  for (const auto& [flags, seen] : cases) {
    panel.flags = flags;
    gfx_panel_draw(panel);
    EXPECT_EQ(drawn(), seen) << flags;
  }
  panel.visible = 0;
  gfx_panel_draw(panel);
  EXPECT_EQ(gfx_blit(0, 0, 1, 1, nullptr, 0, 0, 1, 1, 0.0F, WHITE, 0), 0);
  EXPECT_EQ(drawn(), "");
}

TEST_F(DrawTest, BlitDrawsOnlyTheVisiblePart) {
  std::vector<std::uint8_t> alpha(256 * 128);
  for (int y = 0; y < 128; ++y) std::fill_n(&alpha[y * 256 + 16], 112, 255);
  texture.id = 77;
  texture.coverage = std::make_unique<Coverage>(coverage_make(256, 128, alpha.data(), 1));
  const auto blit = [this](int width, int height, std::uint32_t colour, int flip) {
    gfx_blit_tinted(100, 0, width, height, &texture, 0, 0, 256, 128, colour, flip);
    return drawn();
  };
  EXPECT_EQ(blit(256, 128, WHITE, 0), "116,0 112x128 of 8,0 56x128 opaque");
  EXPECT_EQ(blit(256, 128, 0x80FFFFFF, 1), "228,0 112x128 of 64,0 -56x128 #80ffffff")
      << "a fading picture is not opaque";
  EXPECT_EQ(blit(128, 64, WHITE, 0), "100,0 128x64 of 0,0 128x128 clipped to 108,-1 56x66")
      << "scaled, the whole quad is clipped";
  headless_display.unscaled = false;  // also in a window of another size
  EXPECT_EQ(blit(256, 128, WHITE, 0), "100,0 256x128 of 0,0 128x128 clipped to 116,-1 112x130");
  headless_display.unscaled = true;
  gfx_blit_tinted(0, 0, 64, 64, &texture, 160, 0, 64, 64, WHITE, 0);
  EXPECT_EQ(drawn(), "") << "nothing of it is visible";

  // Mirrored, it is drawn whole.
  gfx_blit_tinted(0, 0, 64, 64, &texture, 100, 100, -64, 64, WHITE, 0);
  gfx_blit_tinted(0, 0, 64, 64, &texture, 100, 100, 64, -64, WHITE, 0);
  gfx_blit_tinted(0, 0, -64, 64, &texture, 0, 0, 64, 64, WHITE, 0);
  gfx_blit_tinted(0, 0, 64, -64, &texture, 0, 0, 64, 64, WHITE, 0);
  EXPECT_EQ(drawn(),
            "0,0 64x64 of 50,100 -32x64; 0,0 64x64 of 50,100 32x-64; "
            "0,0 -64x64 of 0,0 32x64; 0,0 64x-64 of 0,0 32x64");
}

struct StripTest : DrawTest {
  StripTest() {
    gfx_strip_create(&lane, 1, 40);
    lane.cell_size = 80;
    lane.length = 1360;
    lane.x = 3.9F;
    lane.y = 200;
    for (int i = 0; i < 40; ++i) lane.slots[i].sheet = &sheet;
  }
  ~StripTest() override { gfx_strip_free(&lane); }
  Lane lane{};
  SpriteSheet sheet{&panel, 8, 4, 30};
};

TEST_F(StripTest, PlacesSlotsInViewAndThreeMoreRoundTheRing) {
  struct Case {
    float scroll;
    int first, x;  // number and place of the first slot in view
  };
  // Division and modulo go toward zero.
  for (const Case& c : {Case{0.0F, 0, 3}, {165.7F, 2, -2}, {3160.0F, 39, -37}, {-165.0F, -2, 8}}) {
    for (int i = 0; i < 40; ++i) lane.slots[i].y = -1000;
    lane.scroll = c.scroll;
    EXPECT_EQ(gfx_strip_draw(&lane), c.first);
    for (int n = 0; n < 40; ++n) {
      const int number = (c.first + n + 40) % 40;
      const LaneSlot& slot = lane.slots[number];
      ASSERT_EQ(slot.y, n < 20 ? 200 : -1000) << number;
      if (n >= 20) continue;
      ASSERT_EQ(slot.x, c.x + n * 80) << number;
      ASSERT_EQ(lane.panels[number].x, slot.x) << number;
    }
  }
}

TEST_F(StripTest, NewOneIsEmptyAndItsCellsAreOnePixelAcrossOrDown) {
  for (const int direction : {0, 1, 2, 3}) {
    Lane fresh{};
    fresh.cell_size = fresh.sprite_w = 7;
    fresh.scroll = 5.0F;
    gfx_strip_create(&fresh, direction, 3);
    EXPECT_EQ(fresh.direction, direction);
    EXPECT_EQ(fresh.slot_count, 3);
    EXPECT_EQ(fresh.scroll, 0.0F);
    EXPECT_EQ(fresh.cell_size, direction == 1 || direction == 2 ? 1 : 7);
    EXPECT_EQ(fresh.sprite_w, fresh.cell_size);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(fresh.slots[i].kind, SLOT_EMPTY);
    gfx_strip_free(&fresh);
  }
}

TEST_F(StripTest, DrawsActiveObjectsOnly) {
  lane.slots[1].kind = SLOT_ANIMATED;
  lane.slots[1].active = 1;
  lane.slots[1].frame = 11;
  panel.flags = PANEL_SOURCE_RECT;
  lane.slots[2].kind = SLOT_ANIMATED;  // eaten
  lane.slots[3].active = 1;            // empty
  gfx_strip_draw(&lane);
  lane.direction = 2;
  gfx_strip_draw(&lane);
  EXPECT_EQ(drawn(), "83,200 32x32 of 48,32 16x32; 3,280 32x32 of 48,32 16x32");
}

struct TextTest : DrawTest {
  TextTest() {
    folder.write("images/fonts/font8x12.bmp", bmp_bytes(128, 72, white));
    folder.write("images/fonts/zoinks14x22.tga", tga_bytes(256, 256, white));
    EXPECT_EQ(text_fonts_load(), 1);
  }
  ~TextTest() override { EXPECT_EQ(text_fonts_free(), 1); }
  PictureFolder folder;
};

TEST_F(TextTest, GlyphsFollowTheFontPicture) {
  text_draw(FONT_8X12, 0xFF123456, 40, 50, "%s", "aP1@\" \n");
  EXPECT_EQ(drawn(),
            "40,50 8x12 of 0,0 8x12 opaque #ff123456; "
            "48,50 8x12 of 72,24 8x12 opaque #ff123456; "
            "56,50 8x12 of 32,36 8x12 opaque #ff123456; "
            "64,50 8x12 of 120,36 8x12 opaque #ff123456; "
            "72,50 8x12 of 56,60 8x12 opaque #ff123456; "
            "80,50 8x12 of 112,60 8x12 opaque #ff123456; "
            "88,50 8x12 of 112,60 8x12 opaque #ff123456")
      << "a control code is drawn as a space";
  EXPECT_EQ(text_width(FONT_8X12, "Volume"), 48);
  EXPECT_EQ(text_width(FONT_78X120, ""), 0);
}

TEST_F(TextTest, ScaledTextAdvancesByWholePixelsAndItsScaleEndsWithIt) {
  for (const float scale : {1.3F, 0.05F}) {
    text_draw_scaled(FONT_14X22, COLOUR_WHITE, 0, 0, scale, scale, "%d", 12);
  }
  text_draw(FONT_14X22, COLOUR_WHITE, 0, 0, "1");
  EXPECT_EQ(drawn(),
            "0,0 18x28 of 28,33 7x11; 18,0 18x28 of 35,33 7x11; "
            "0,0 0x1 of 28,33 7x11; 0,0 0x1 of 35,33 7x11; 0,0 14x22 of 28,33 7x11 opaque");
}

TEST_F(TextTest, LongLinesAreCut) {
  text_draw(FONT_8X12, COLOUR_WHITE, 0, 0, "%s", std::string(300, 'x').c_str());
  EXPECT_EQ(headless_display.recorded.size(), 127U);
}

TEST_F(DrawTest, NumbersAreTrimmedAndCentred) {
  const PictureFolder folder;
  folder.write("images/fonts/numbers_credits.bmp", bmp_bytes(80, 12, white));
  panel_table_load();
  const auto number = [](int value, int width, int height, int digits, int flags) {
    gfx_number_draw(value, 0, 100, 0, width, height, digits, flags);
    return drawn();
  };
  EXPECT_EQ(number(47, 0, 0, 4, 0),
            "100,0 8x12 of 0,0 8x96; 108,0 8x12 of 0,0 8x96; "
            "116,0 8x12 of 32,0 8x96; 124,0 8x12 of 56,0 8x96");
  EXPECT_EQ(number(470, 10, 10, 9, 1 | 2 | 4),
            "85,0 10x10 of 32,0 8x96; 95,0 10x10 of 56,0 8x96; 105,0 10x10 of 0,0 8x96");
  EXPECT_EQ(number(7, 10, 10, 2, 4), "80,0 10x10 of 0,0 8x96; 90,0 10x10 of 56,0 8x96");
  EXPECT_EQ(number(0, 10, 10, 0, 0), "");
  panel_table_free();
  EXPECT_EQ(number(1, 0, 0, 1, 0), "") << "no font is loaded";
  const PanelName names[2] = {R"(images\fonts\numbers_credits.bmp)"};
  NumberFont fonts[2] = {{}, {nullptr, 5, 0, {}}};
  EXPECT_EQ(gfx_numbers_load(fonts, 1, names), 0);
  EXPECT_EQ(gfx_numbers_free(fonts, 1), 0);
  EXPECT_EQ(fonts[1].digit_width, 5) << "it isn't one of theirs";
}

TEST_F(DrawTest, LinesAreQuads) {
  gfx_line_draw(nullptr, 2.0F, 10, 50, 90, 50, 0xFF123456);
  gfx_line_draw(&texture, 2.0F, 10, 50, 90, 50, 0xFF123456);
  EXPECT_EQ(drawn(), "10,48 80x4 of 0,0 128x128 #ff123456; 10,48 80x4 of 0,0 128x128");
  struct Case {
    float half_width;
    int x0, y0, x1, y1;
    float corners[8];
  };
  const Case cases[] = {
      {2.0F, 10, 50, 90, 50, {10, 48, 90, 48, 10, 52, 90, 52}},
      {2.0F, 90, 50, 10, 50, {10, 48, 90, 48, 10, 52, 90, 52}},
      {2.0F, 10, 10, 10, 90, {12, 10, 12, 90, 8, 10, 8, 90}},
      {5.0F, 0, 0, 30, 40, {4, -3, 34, 37, -4, 3, 26, 43}},  // m = -0.75, n = 0.8
  };
  for (const Case& line : cases) {
    float corners[8];
    gfx_line_to_quad(line.half_width, line.x0, line.y0, line.x1, line.y1, corners);
    for (int i = 0; i < 8; ++i) EXPECT_NEAR(corners[i], line.corners[i], 1e-5) << line.x1 << i;
  }
}

}  // namespace
