// What the drawing calls leave on the screen, read back as pixels.
#include <SDL_opengl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iomanip>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "art/picture.h"
#include "gfx/blit.h"
#include "gfx/panel.h"
#include "gfx/texture.h"
#include "platform/display.h"
#include "tests/gfx/pictures.h"
#include "tests/gl/screen.h"

namespace {

constexpr std::uint32_t RED = 0xFFFF0000;
constexpr std::uint32_t GREEN = 0xFF00FF00;
constexpr std::uint32_t BLUE = 0xFF0000FF;
constexpr std::uint32_t WHITE = 0xFFFFFFFF;

// Four quarters: red, green / blue, white.
std::uint32_t quarters(int x, int y, int width, int height) {
  if (y < height / 2) return x < width / 2 ? RED : GREEN;
  return x < width / 2 ? BLUE : WHITE;
}

// A line of pixels as lengths of one colour: "100 000000, 32 ff0000".
std::string runs(const Shot& shot, int x, int y, int step_x, int step_y, int count) {
  std::ostringstream text;
  text << std::hex << std::setfill('0');
  for (int length = 1; count > 0; --count, x += step_x, y += step_y, ++length) {
    const std::uint32_t colour = shot.at(x, y);
    if (count > 1 && colour == shot.at(x + step_x, y + step_y)) continue;
    text << std::to_string(length) << ' ' << std::setw(6) << colour << (count > 1 ? ", " : "");
    length = 0;
  }
  return text.str();
}
std::string row(const Shot& shot, int y, int count = 400) {
  return runs(shot, 0, y, 1, 0, count);
}
std::string column(const Shot& shot, int x, int count) {
  return runs(shot, x, 0, 0, 1, count);
}

struct Pixels : testing::Test {
  void SetUp() override { ASSERT_TRUE(screen_open()); }

  GlTexture* load(const std::string& name, int width, int height, const Paint& paint) {
    if (name.ends_with(".png")) {
      art::Picture picture(width, height);
      for (int i = 0; i < width * height; ++i) {
        const std::uint32_t c = paint(i % width, i / width);
        std::uint8_t* pixel = picture.at(i % width, i / width);
        for (const int shift : {16, 8, 0, 24}) *pixel++ = c >> shift & 0xFF;
      }
      EXPECT_TRUE(picture_write_png(picture, folder.path() + "/images/" + name));
    } else {
      const bool bitmap = name.ends_with(".bmp");
      folder.write("images/" + name,
                   bitmap ? bmp_bytes(width, height, paint) : tga_bytes(width, height, paint));
    }
    GlTexture* texture = nullptr;
    EXPECT_EQ(gfx_texture_load(("images\\" + name).c_str(), &texture, nullptr), 1);
    loaded.emplace_back(texture);
    return texture;
  }
  GlTexture* quartered() {
    return load("q.tga", 64, 64, [](int x, int y) { return quarters(x, y, 64, 64); });
  }
  static Shot shot(const std::function<void()>& draw) { return screen_shot(1360, 768, draw); }

  PictureFolder folder;
  std::vector<std::unique_ptr<GlTexture>> loaded;
};

TEST_F(Pixels, FrameTellsOfEachErrorOnce) {
  EXPECT_EQ(display_begin_frame(0), 0);
  glEnable(GL_RGBA);  // isn't one of the capabilities
  EXPECT_EQ(display_begin_frame(0), 1);
  EXPECT_EQ(display_begin_frame(0), 0);
}

TEST_F(Pixels, ProjectionIsOnTheWholeWindow) {
  glViewport(1, 2, 3, 4);
  display_set_projection(0, 0, 1360, 768);
  int seen[4] = {};
  glGetIntegerv(GL_VIEWPORT, seen);
  const DisplaySize window = display_window_size();
  EXPECT_EQ(std::to_array(seen), (std::array{0, 0, window.width, window.height}));
}

TEST_F(Pixels, TgaIsUprightAndUnfiltered) {
  const GlTexture* texture = quartered();
  const Shot seen = shot([&] {
    gfx_blit_tinted(100, 50, 64, 64, texture, 0, 0, 64, 64, WHITE, 0);
    gfx_blit_tinted(200, 50, 64, 64, texture, 0, 0, 64, 64, WHITE, 1);  // mirrored
    gfx_blit_tinted(300, 50, 128, 32, texture, 0, 0, 64, 64, WHITE, 0);
  });
  EXPECT_EQ(row(seen, 49), "400 000000");
  EXPECT_EQ(row(seen, 50, 440),
            "100 000000, 32 ff0000, 32 00ff00, 36 000000, 32 00ff00, 32 ff0000, 36 000000, "
            "64 ff0000, 64 00ff00, 12 000000");
  EXPECT_EQ(row(seen, 113),
            "100 000000, 32 0000ff, 32 ffffff, 36 000000, 32 ffffff, 32 0000ff, 136 000000");
  EXPECT_EQ(column(seen, 100, 200), "50 000000, 32 ff0000, 32 0000ff, 86 000000");
  EXPECT_EQ(column(seen, 427, 200), "50 000000, 16 00ff00, 16 ffffff, 118 000000");
}

TEST_F(Pixels, BitmapIsPaddedAndMagentaIsTransparent) {
  const GlTexture* texture = load("b.bmp", 100, 60, [](int x, int y) {
    if (y == 0 && (x == 50 || x == 51)) return x == 50 ? 0xFF00FFU : 0xFF01FFU;
    return quarters(x, y, 100, 60);
  });
  const Shot seen = shot([&] {
    gfx_rect_draw(0, 0, 400, 400, 0xFF203040, 0xFF203040);
    gfx_blit_tinted(10, 10, 100, 60, texture, 0, 0, 100, 60, WHITE, 0);
    gfx_blit_tinted(200, 10, 128, 64, texture, 0, 0, 128, 64, WHITE, 0);  // with its padding
  });
  EXPECT_EQ(row(seen, 10),
            "10 203040, 50 ff0000, 1 203040, 1 ff01ff, 48 00ff00, "
            "90 203040, 50 ff0000, 1 203040, 1 ff01ff, 48 00ff00, 100 203040");
  EXPECT_EQ(row(seen, 69),
            "10 203040, 50 0000ff, 50 ffffff, 90 203040, 50 0000ff, 50 ffffff, 100 203040");
  EXPECT_EQ(row(seen, 70), "400 203040");
}

TEST_F(Pixels, CompressedPngKeepsColoursAndAlpha) {
  const GlTexture* texture = load("p.png", 128, 64, [](int x, int y) {
    return x % 64 < 8 ? 0x00FFFFFFU : quarters(x, y, 128, 64);
  });
  EXPECT_EQ(texture->width, 128);
  EXPECT_EQ(texture->height, 64);
  ASSERT_NE(texture->coverage, nullptr) << "the texture can be read back";
  const Shot seen = shot([&] {
    gfx_rect_draw(0, 0, 400, 400, 0xFF102030, 0xFF102030);
    gfx_blit_tinted(0, 0, 128, 64, texture, 0, 0, 128, 64, WHITE, 0);
  });
  EXPECT_EQ(row(seen, 4), "8 102030, 56 ff0000, 8 102030, 56 00ff00, 272 102030");
  EXPECT_EQ(row(seen, 60), "8 102030, 56 0000ff, 8 102030, 56 ffffff, 272 102030");
}

TEST_F(Pixels, EarlierGlErrorDoesNotChangeAlphaReadBack) {
  const GlTexture* texture = load(
      "s.png", 128, 64, [](int x, int) { return static_cast<std::uint32_t>(x) << 25 | 0xFFFFFFU; });
  std::vector<std::uint8_t> alphas[2];
  for (int wrong = 0; wrong < 2; ++wrong) {
    if (wrong != 0) display_texture_create(-1, 1, PIXELS_RGBA, nullptr);
    alphas[wrong].resize(std::size_t{128} * 64);
    ASSERT_TRUE(display_texture_read_alpha(texture->id, alphas[wrong].data()));
  }
  EXPECT_EQ(alphas[0], alphas[1]);
  EXPECT_EQ(alphas[0][1], 128) << "the blocks were read: GL would have decoded a 2";
}

TEST_F(Pixels, TintMultipliesAndItsAlphaFades) {
  const GlTexture* texture = quartered();
  const Shot seen = shot([&] {
    gfx_rect_draw(0, 0, 400, 400, 0xFF0000FF, 0xFF0000FF);
    gfx_blit_tinted(0, 0, 64, 64, texture, 0, 0, 64, 64, 0x80FF8000, 0);
    gfx_blit_tinted(100, 0, 64, 64, texture, 0, 0, 64, 64, 0x00FFFFFF, 0);
    gfx_blit_tinted(200, 0, 64, 64, texture, 0, 0, 64, 64, WHITE, 0);
  });
  const std::uint32_t faded = seen.at(0, 0);  // red at 128/255 over blue
  EXPECT_NEAR(faded >> 16, 128, 1);
  EXPECT_NEAR(faded & 0xFF, 127, 1);
  EXPECT_NEAR(seen.at(63, 63) >> 8 & 0xFF, 64, 1) << "green of the tint, halved";
  EXPECT_EQ(seen.at(100, 0), 0x0000FFU);
  EXPECT_EQ(seen.at(200, 0), 0xFF0000U) << "the next picture is not tinted";
}

TEST_F(Pixels, PositiveAngleRotatesCounterClockwise) {
  const GlTexture* texture = quartered();
  const Shot seen = shot([&] {
    gfx_blit_rotated(100, 100, 64, 64, texture, 0, 0, 64, 64, 90.0F);
    gfx_blit_rotated(300, 100, 64, 64, texture, 0, 0, 64, 64, 45.0F);
  });
  EXPECT_EQ(seen.at(110, 110), 0x00FF00U) << "the right side is on top";
  EXPECT_EQ(seen.at(110, 150), 0xFF0000U);
  EXPECT_EQ(seen.at(150, 150), 0x0000FFU);
  EXPECT_EQ(seen.at(332, 90), 0x00FF00U) << "corners reach out";
  EXPECT_EQ(seen.at(290, 132), 0xFF0000U);
  EXPECT_EQ(seen.at(302, 102), 0U);
}

TEST_F(Pixels, RectIsAGradientAndLaterDrawsLieOnTop) {
  const Shot seen = shot([&] {
    gfx_rect_draw(0, 0, 256, 10, 0xFF000000, 0xFFFFFFFF);
    gfx_rect_draw(0, 20, 50, 50, RED, RED);
    gfx_rect_draw(25, 20, 50, 50, 0x80000000, 0x80000000);
  });
  for (int x = 0; x < 256; x += 51) EXPECT_NEAR(seen.at(x, 5) & 0xFF, x, 1);
  EXPECT_EQ(seen.at(0, 0), seen.at(0, 9));
  EXPECT_EQ(seen.at(10, 30), 0xFF0000U);
  EXPECT_NEAR(seen.at(30, 30) >> 16, 127, 1) << "the later one is on top";
  const Shot small = screen_shot(680, 384, [] { gfx_rect_draw(680, 384, 340, 192, RED, RED); });
  EXPECT_EQ(row(small, 192, 680), "340 000000, 170 ff0000, 170 000000");  // it fills the window
  EXPECT_EQ(column(small, 509, 384), "192 000000, 96 ff0000, 96 000000");
  glPixelStorei(GL_PACK_ALIGNMENT, 4);  // a library may leave it so
  const Shot odd = screen_shot(681, 384, [] { gfx_rect_draw(680, 0, 340, 384, RED, RED); });
  EXPECT_EQ(odd.at(342, 10), 0xFF0000U);
  EXPECT_EQ(odd.at(339, 10), 0U);
  EXPECT_EQ(odd.at(508, 190), 0xFF0000U);
  EXPECT_EQ(odd.at(512, 190), 0U);
}

TEST_F(Pixels, AlphaOfAnUncompressedTextureIsReadBack) {
  std::vector<std::uint8_t> pixels(4 * 6 * 3, 77), alpha(6 * 3);
  for (std::size_t i = 0; i < alpha.size(); ++i)
    pixels[4 * i + 3] = static_cast<std::uint8_t>(i * 9);
  const std::uint32_t texture = display_texture_create(6, 3, PIXELS_RGBA, pixels.data());
  ASSERT_TRUE(display_texture_read_alpha(texture, alpha.data()));
  for (std::size_t i = 0; i < alpha.size(); ++i) EXPECT_EQ(alpha[i], i * 9) << i;
}

// The window has 3 pixels for 2 of the layout: each that the box touches is drawn.
TEST_F(Pixels, OnlyWhatTheClipBoxTouchesIsDrawn) {
  DisplayQuad quad{0,    {10, 60, 60, 10}, {20, 20, 70, 70}, {}, {}, {RED, RED, RED, RED}, true,
                   true, {21, 31, 20, 30}};
  const Shot seen = screen_shot(2040, 1152, [&] {
    display_draw_quad(quad);
    quad.clipped = false;
    for (float& x : quad.x) x += 100;
    display_draw_quad(quad);
  });
  EXPECT_EQ(row(seen, 60), "31 000000, 31 ff0000, 103 000000, 75 ff0000, 160 000000");
  EXPECT_EQ(column(seen, 40, 200), "46 000000, 46 ff0000, 108 000000");
}

// A sheet of cells with soft blots and opaque blocks, some up to the cell's edge.
std::uint32_t blot(int x, int y) {
  const int cell = x / 64 + y / 64 * 4;
  const int cx = x % 64;
  const int cy = y % 64;
  const std::uint32_t colour = (x * 37 + y * 91) * 2654435761U >> 8;
  const int far = (cx - 32) * (cx - 32) + (cy - 32) * (cy - 32);
  int alpha = 0;
  if (cell % 4 == 0) alpha = far < 300 ? 255 : std::max(0, 255 - (far - 300));
  if (cell % 4 == 1) alpha = cy >= 20 ? 255 : 0;
  if (cell % 4 == 2) alpha = 255;
  if (cell % 4 == 3) alpha = cx > 50 && cy < 9 ? 90 : 0;
  return static_cast<std::uint32_t>(alpha) << 24 | colour;
}

// At the layout's own size, and where window pixels and layout pixels differ.
TEST_F(Pixels, SkippingInvisiblePixelsChangesNothing) {
  const GlTexture* sheet = load("s.tga", 256, 256, blot);
  const GlTexture* png = load("s.png", 256, 256, blot);
  const GlTexture* bitmap = load("s.bmp", 200, 150, blot);
  const auto draw = [&] {
    std::mt19937 random(11);
    const auto below = [&random](int n) { return static_cast<int>(random() % n); };
    const GlTexture* const all[] = {sheet, png, bitmap};
    gfx_blit_tinted(0, 0, 1360, 768, bitmap, 0, 0, 200, 150, WHITE, 0);
    for (int i = 0; i < 400; ++i) {
      const GlTexture* texture = all[below(3)];
      const bool cell = below(4) != 0;
      const int size = cell ? 64 : 128;
      const int scaled = size + (below(2) == 0 ? 0 : below(300) - 40);
      gfx_blit(below(1500) - 100, below(900) - 100, scaled, size + below(2) * 33, texture,
               below(2) * 64, below(2) * 64, size, size, below(8) == 0 ? 30.0F : 0.0F,
               below(3) == 0 ? 0x90FFFFFF : WHITE, below(2));
    }
  };
  const auto expect_equal = [&draw](int width, int height) {
    gfx_blit_whole = true;
    const Shot whole = screen_shot(width, height, draw);
    gfx_blit_whole = false;
    const Shot saved = screen_shot(width, height, draw);
    ASSERT_FALSE(whole.rgb.empty());
    EXPECT_TRUE(whole.rgb == saved.rgb) << width << " x " << height;
  };
  const int sizes[][2] = {{1360, 768}, {640, 480}, {1920, 1080}, {1024, 768}, {1280, 720}};
  for (const auto& size : sizes) expect_equal(size[0], size[1]);
  display_set_projection(60, 30, 1360, 768);  // a part of the layout
  expect_equal(1360, 768);
  display_set_projection(0, 0, 1360, 768);
}

}  // namespace
