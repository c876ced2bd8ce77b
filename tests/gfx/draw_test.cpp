// What the drawing calls pass to the display: sizes, places, source rectangles.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
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

struct DrawTest : testing::Test {
  void SetUp() override {
    headless_display.record = true;
    headless_display.recorded.clear();
  }
  void TearDown() override { headless_display.record = false; }

  static const std::vector<DisplayQuad>& quads() { return headless_display.recorded; }
  static DisplayQuad only() {
    EXPECT_EQ(quads().size(), 1U);
    const DisplayQuad quad = quads().empty() ? DisplayQuad{} : quads().front();
    headless_display.recorded.clear();
    return quad;
  }

  GlTexture texture{1, 256, 128, nullptr};
  Panel panel = {&texture, 10, 20, 256, 128, 0.0F, 0.0F, 1, 1, 0xFFFFFFFF, 0, 0, 0, 0, 0.0F, {}, 0};
};

float width_of(const DisplayQuad& quad) {
  return quad.x[1] - quad.x[0];
}
float height_of(const DisplayQuad& quad) {
  return quad.y[2] - quad.y[1];
}

TEST_F(DrawTest, PanelFlagsDecideItsSize) {
  struct Case {
    std::uint32_t flags;
    float width, height, u1;
  };
  panel.width = 15;
  panel.height = 7;
  panel.src_w = 32;
  panel.src_h = 16;
  panel.scale_x = 1.3F;
  panel.scale_y = 0.7F;
  const Case cases[] = {
      {0, 15, 7, 15.0F / 256},
      {PANEL_HALF_SIZE, 7, 3, 15.0F / 256},
      {PANEL_SOURCE_RECT, 32, 16, 32.0F / 256},
      {PANEL_SOURCE_RECT | PANEL_HALF_SIZE, 32, 16, 32.0F / 256},
      {PANEL_SOURCE_RECT | PANEL_SCALED, 41, 11, 32.0F / 256},
      {PANEL_SCALED, 32, 16, 15.0F / 256},
      {PANEL_HALF_SIZE | PANEL_SCALED, 7, 3, 15.0F / 256},
  };
  for (const Case& c : cases) {
    panel.flags = c.flags;
    gfx_panel_draw(panel);
    const DisplayQuad quad = only();
    EXPECT_EQ(width_of(quad), c.width) << c.flags;
    EXPECT_EQ(height_of(quad), c.height) << c.flags;
    EXPECT_EQ(quad.u[1], c.u1) << c.flags;
    EXPECT_EQ(quad.x[0], 10.0F);
    EXPECT_EQ(quad.y[0], 20.0F);
  }
  panel.visible = 0;
  gfx_panel_draw(panel);
  EXPECT_TRUE(quads().empty());
  EXPECT_EQ(gfx_blit(0, 0, 1, 1, nullptr, 0, 0, 1, 1, 0.0F, 0xFFFFFFFF, 0), 0);
}

TEST_F(DrawTest, RotatedPanelIgnoresColourAndFlip) {
  panel.flags = PANEL_SOURCE_RECT | PANEL_ROTATED;
  panel.src_w = 100;
  panel.src_h = 50;
  panel.rotation = 90.0F;
  panel.colour = 0x80112233;
  panel.flip = 1;
  gfx_panel_draw(panel);
  const DisplayQuad quad = only();
  EXPECT_EQ(quad.colour[0], 0xFFFFFFFFU);
  EXPECT_LT(quad.u[0], quad.u[1]);
}

TEST_F(DrawTest, BlitDrawsOnlyTheVisiblePart) {
  std::vector<std::uint8_t> pixels(256 * 128 * 4);
  for (int y = 0; y < 128; ++y) {
    for (int x = 16; x < 128; ++x) pixels[(y * 256 + x) * 4 + 3] = 255;
  }
  texture.id = 77;
  texture.coverage = std::make_unique<Coverage>(coverage_make(256, 128, pixels.data() + 3, 4));
  const auto blit = [this](int width, int height, std::uint32_t colour, int flip) {
    gfx_blit_tinted(100, 0, width, height, &texture, 0, 0, 256, 128, colour, flip);
  };
  blit(256, 128, 0xFFFFFFFF, 0);
  DisplayQuad quad = only();
  EXPECT_EQ(quad.x[0], 116.0F) << "unscaled, the quad is the visible part";
  EXPECT_EQ(width_of(quad), 112.0F);
  EXPECT_TRUE(quad.opaque);
  EXPECT_FALSE(quad.clipped);

  blit(256, 128, 0x80FFFFFF, 1);
  quad = only();
  EXPECT_EQ(quad.x[0], 100.0F + 128.0F);
  EXPECT_FALSE(quad.opaque) << "a fading picture is not opaque";

  blit(128, 64, 0xFFFFFFFF, 0);
  quad = only();
  EXPECT_EQ(width_of(quad), 128.0F) << "scaled, the whole quad is clipped";
  EXPECT_TRUE(quad.clipped);
  EXPECT_EQ(quad.clip.x, 108);
  EXPECT_EQ(quad.clip.width, 56);
  headless_display.unscaled = false;  // also in a window of another size
  blit(256, 128, 0xFFFFFFFF, 0);
  quad = only();
  EXPECT_EQ(width_of(quad), 256.0F);
  EXPECT_EQ(quad.clip.x, 116);
  headless_display.unscaled = true;
  gfx_blit_tinted(0, 0, 64, 64, &texture, 160, 0, 64, 64, 0xFFFFFFFF, 0);
  EXPECT_TRUE(quads().empty()) << "nothing of it is visible";

  for (const auto& [w, h] : {std::pair{-64, 64}, {64, -64}}) {
    gfx_blit_tinted(0, 0, 64, 64, &texture, 100, 100, w, h, 0xFFFFFFFF, 0);
    quad = only();
    EXPECT_EQ(quad.u[1] - quad.u[0], static_cast<float>(w) / 256)
        << "a mirrored part is drawn whole";
    EXPECT_EQ(quad.v[2] - quad.v[1], static_cast<float>(h) / 128);
    gfx_blit_tinted(0, 0, w, h, &texture, 0, 0, 64, 64, 0xFFFFFFFF, 0);
    EXPECT_EQ(width_of(only()), static_cast<float>(w));
  }
}

TEST_F(DrawTest, FrameIsACellOfTheSheet) {
  gfx_frame_draw(&panel, 8, 4, 30, 11, 5, 6);
  EXPECT_EQ(panel.src_x, 96);
  EXPECT_EQ(panel.src_y, 32);
  EXPECT_EQ(panel.src_w, 32);
  EXPECT_EQ(panel.src_h, 32);
  EXPECT_EQ(panel.x, 5);
  EXPECT_EQ(panel.y, 6);
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
  int draw(float scroll) {
    for (int i = 0; i < 40; ++i) lane.slots[i].y = -1000;
    lane.scroll = scroll;
    return gfx_strip_draw(&lane);
  }
  [[nodiscard]] int placed() const {
    int count = 0;
    for (int i = 0; i < 40; ++i) count += lane.slots[i].y != -1000 ? 1 : 0;
    return count;
  }
  Lane lane{};
  SpriteSheet sheet{&panel, 8, 4, 30};
};

TEST_F(StripTest, PlacesSlotsInViewAndThreeMore) {
  EXPECT_EQ(draw(0.0F), 0);
  EXPECT_EQ(placed(), 20);
  EXPECT_EQ(lane.slots[0].x, 3);
  EXPECT_EQ(lane.slots[19].x, 3 + 19 * 80);
  EXPECT_EQ(draw(165.7F), 2);
  EXPECT_EQ(lane.slots[2].x, 3 - 5);
  EXPECT_EQ(lane.panels[2].x, 3 - 5);
  EXPECT_EQ(lane.slots[2].y, 200);
}

TEST_F(StripTest, WrapsAtBothEnds) {
  EXPECT_EQ(draw(39.5F * 80), 39);
  EXPECT_EQ(lane.slots[39].x, 3 - 40);
  EXPECT_EQ(lane.slots[0].x, 3 + 40) << "the first follows the last";
  EXPECT_EQ(draw(-165.0F), -2);
  EXPECT_EQ(lane.slots[38].x, 3 + 5) << "division and modulo go toward zero";
  EXPECT_EQ(lane.slots[0].x, 3 + 5 + 160);
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
  lane.slots[2].kind = SLOT_ANIMATED;  // eaten
  lane.slots[3].active = 1;            // empty
  draw(0.0F);
  EXPECT_EQ(only().x[0], 83.0F);
  lane.direction = 2;
  draw(0.0F);
  const DisplayQuad down = only();
  EXPECT_EQ(down.x[0], 3.0F);
  EXPECT_EQ(down.y[0], 280.0F);
}

struct TextTest : DrawTest {
  TextTest() {
    const auto white = [](int, int) { return 0xFFFFFFFFU; };
    folder.write("images/fonts/font8x12.bmp", bmp_bytes(128, 72, white));
    folder.write("images/fonts/zoinks14x22.tga", tga_bytes(256, 256, white));
    EXPECT_EQ(text_fonts_load(), 1);
  }
  ~TextTest() override { EXPECT_EQ(text_fonts_free(), 1); }
  PictureFolder folder;
};

TEST_F(TextTest, GlyphsFollowTheFontPicture) {
  text_draw(FONT_8X12, 0xFF123456, 40, 50, "%s", "aP1@\" \n");
  ASSERT_EQ(quads().size(), 7U);
  // a 0, P 41, 1 52, @ 63, quote 87, space 94, and a control code is drawn as a space
  const int glyphs[] = {0, 41, 52, 63, 87, 94, 94};
  for (int i = 0; i < 7; ++i) {
    const DisplayQuad& quad = quads()[i];
    EXPECT_EQ(quad.x[0], 40.0F + 8.0F * static_cast<float>(i));
    EXPECT_EQ(quad.y[0], 50.0F);
    EXPECT_EQ(quad.u[0] * 128, 8.0F * static_cast<float>(glyphs[i] % 16)) << i;
    EXPECT_EQ(quad.v[0] * 128, 12.0F * static_cast<float>(glyphs[i] / 16)) << i;
    EXPECT_EQ(quad.colour[0], 0xFF123456U);
  }
  EXPECT_EQ(text_width(FONT_8X12, "Volume"), 48);
  EXPECT_EQ(text_width(FONT_78X120, ""), 0);
}

TEST_F(TextTest, ScaledTextAdvancesByWholePixels) {
  const auto advance = [](float scale) {
    headless_display.recorded.clear();
    text_draw_scaled(FONT_14X22, COLOUR_WHITE, 0, 0, scale, scale, "%d", 12);
    return quads().at(1).x[0];
  };
  EXPECT_EQ(advance(1.5F), 21.0F);
  EXPECT_EQ(advance(1.3F), 18.0F);
  EXPECT_EQ(advance(0.05F), 0.0F);
  headless_display.recorded.clear();
  text_draw(FONT_14X22, COLOUR_WHITE, 0, 0, "x");
  EXPECT_EQ(width_of(only()), 14.0F) << "scaling ends with its line";
}

TEST_F(TextTest, LongLinesAreCut) {
  text_draw(FONT_8X12, COLOUR_WHITE, 0, 0, "%s", std::string(300, 'x').c_str());
  EXPECT_EQ(quads().size(), 127U);
}

TEST_F(DrawTest, NumbersAreTrimmedAndCentred) {
  const PictureFolder folder;
  folder.write("images/n.bmp", bmp_bytes(80, 12, [](int, int) { return 0xFFFFFFU; }));
  const PanelName names[1] = {R"(images\n.bmp)"};
  NumberFont font;
  EXPECT_EQ(gfx_numbers_load(&font, 1, names), 0);
  EXPECT_EQ(font.digit_width, 8);
  gfx_number_draw(47, 0, 100, 0, 0, 0, 4, 0);
  ASSERT_EQ(quads().size(), 4U);
  EXPECT_EQ(quads()[0].u[0], 0.0F);
  EXPECT_EQ(quads()[2].u[0] * 128, 32.0F);
  EXPECT_EQ(quads()[3].x[0], 124.0F);
  headless_display.recorded.clear();
  gfx_number_draw(470, 0, 100, 0, 10, 10, 9, 1 | 2 | 4);
  ASSERT_EQ(quads().size(), 3U);
  EXPECT_EQ(quads()[0].x[0], 85.0F);
  headless_display.recorded.clear();
  gfx_number_draw(470, 0, 100, 0, 10, 10, 4, 4);
  EXPECT_EQ(quads()[0].x[0], 60.0F);
  headless_display.recorded.clear();
  gfx_number_draw(0, 0, 100, 0, 10, 10, 0, 0);
  EXPECT_TRUE(quads().empty());
  EXPECT_EQ(gfx_numbers_free(&font, 1), 0);
  gfx_number_draw(1, 0, 0, 0, 0, 0, 1, 0);
  EXPECT_TRUE(quads().empty()) << "no font is loaded";
}

TEST_F(DrawTest, NumbersOfTheTableGoWithIt) {
  const PictureFolder folder;
  folder.write("images/fonts/numbers_credits.bmp",
               bmp_bytes(80, 12, [](int, int) { return 0xFFFFFFU; }));
  panel_table_load();
  EXPECT_EQ(number_font.digit_width, 8);
  panel_table_free();
  gfx_number_draw(1, 0, 0, 0, 0, 0, 1, 0);
  EXPECT_TRUE(quads().empty());
}

TEST_F(DrawTest, LinesAreQuads) {
  gfx_line_draw(nullptr, 2.0F, 10, 50, 90, 50, 0xFF123456);
  const DisplayQuad line = only();
  EXPECT_EQ(std::vector<float>(line.x, line.x + 4), (std::vector<float>{10, 90, 90, 10}));
  EXPECT_EQ(std::vector<float>(line.y, line.y + 4), (std::vector<float>{48, 48, 52, 52}));
  EXPECT_EQ(std::vector<std::uint32_t>(line.colour, line.colour + 4),
            std::vector<std::uint32_t>(4, 0xFF123456));
  gfx_line_draw(&texture, 2.0F, 10, 50, 90, 50, 0xFF123456);
  const DisplayQuad textured = only();
  EXPECT_EQ(std::vector<float>(textured.u, textured.u + 4), (std::vector<float>{0, 1, 1, 0}));
  EXPECT_EQ(std::vector<float>(textured.v, textured.v + 4), (std::vector<float>{0, 0, 1, 1}));
  EXPECT_EQ(textured.colour[2], 0xFFFFFFFFU);
  float c[8];
  gfx_line_to_quad(2.0F, 10, 50, 90, 50, c);
  EXPECT_EQ(std::vector<float>(c, c + 8), (std::vector<float>{10, 48, 90, 48, 10, 52, 90, 52}));
  gfx_line_to_quad(2.0F, 90, 50, 10, 50, c);
  EXPECT_EQ(std::vector<float>(c, c + 8), (std::vector<float>{10, 48, 90, 48, 10, 52, 90, 52}));
  gfx_line_to_quad(2.0F, 10, 10, 10, 90, c);
  EXPECT_EQ(std::vector<float>(c, c + 8), (std::vector<float>{12, 10, 12, 90, 8, 10, 8, 90}));
  gfx_line_to_quad(5.0F, 0, 0, 30, 40, c);  // m = -0.75, n = 0.8
  const float slanted[8] = {4, -3, 34, 37, -4, 3, 26, 43};
  for (int i = 0; i < 8; ++i) EXPECT_NEAR(c[i], slanted[i], 1e-5) << i;
}

}  // namespace
