#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "gfx/panel.h"
#include "gfx/texture.h"
#include "gfx/tga_reader.h"
#include "platform/headless/display_record.h"
#include "tests/gfx/pictures.h"

namespace {

std::uint32_t numbered(int x, int y) {
  return 0x01000000U * (10 * y + x) | 0x030201;
}

// As far as the headless display reads one.
const Bytes PNG_OF_256_BY_64 = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13,
                                'I',  'H', 'D', 'R', 0,    0,    1,    0,    0, 0, 0, 64};

struct TgaReader : testing::Test {
  bool read(const Bytes& file) {
    folder.write("images/a.tga", file);
    return tga_read(R"(images\a.tga)", image);
  }
  PictureFolder folder;
  TgaImage image{};
};

TEST_F(TgaReader, ReversesRowsAndSkipsId) {
  ASSERT_TRUE(read(tga_bytes(4, 2, numbered, 32, 2, "made by hand")));
  EXPECT_EQ(std::pair(image.width, image.height), std::pair(4, 2));
  EXPECT_EQ(image.pixels, (Bytes{1, 2, 3, 0,  1, 2, 3, 1,  1, 2, 3, 2,  1, 2, 3, 3,  //
                                 1, 2, 3, 10, 1, 2, 3, 11, 1, 2, 3, 12, 1, 2, 3, 13}));
}

TEST_F(TgaReader, RefusesOtherTypesWithMessageAndShortFilesWithout) {
  testing::internal::CaptureStdout();
  EXPECT_FALSE(read(tga_bytes(4, 2, numbered, 24)));
  EXPECT_FALSE(read(tga_bytes(4, 2, numbered, 32, 10)));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "FUCK!!\nFUCK!!\n");
  Bytes cut = tga_bytes(4, 2, numbered);
  cut.pop_back();
  testing::internal::CaptureStdout();
  EXPECT_FALSE(read(cut));
  EXPECT_FALSE(tga_read(R"(images\none.tga)", image));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(TgaReader, AllocatesNothingIfFileIsTooShort) {
  for (const std::uint8_t high : {0x20, 0xFF}) {
    Bytes file = tga_bytes(0, 0, numbered);
    file[13] = file[15] = high;  // of width and height
    EXPECT_FALSE(read(file));
    EXPECT_EQ(image.pixels.capacity(), 0U) << high;
  }
}

// Size, if the file is a picture, and whether there are a texture and its coverage.
std::string loaded(const std::string& name) {
  GlTexture* texture = nullptr;
  TextureInfo info{-1, -1};
  const int result = gfx_texture_load(("images\\" + name).c_str(), &texture, &info);
  std::string text = texture->id != 0 ? "texture" : "no texture";
  if (result != 0) text += " of " + std::to_string(info.width) + "x" + std::to_string(info.height);
  if (texture->coverage != nullptr) text += " with coverage";
  gfx_texture_free(texture);
  return text;
}

TEST(TextureLoad, FirstExtensionInNameSelectsReader) {
  const PictureFolder folder;
  const Bytes tga = tga_bytes(8, 16, numbered);
  const Bytes bmp = bmp_bytes(100, 60, numbered);
  struct Case {
    const char* name;
    Bytes file;
    const char* seen;
  };
  const Case cases[] = {
      {"a.tga", tga, "texture of 8x16 with coverage"},
      {"A.TGA", tga, "texture of 8x16 with coverage"},
      {"a.tga.png", tga, "texture of 8x16 with coverage"},
      {"a.Tga", tga, "no texture"},
      {"b.bmp", bmp, "texture of 100x60 with coverage"},  // the size without padding
      {"b.tga.bmp", bmp, "texture of 100x60 with coverage"},
      {"c.png", PNG_OF_256_BY_64, "texture of 256x64"},  // no pixels to read back
  };
  for (const Case& c : cases) {
    folder.write(std::string("images/") + c.name, c.file);
    EXPECT_EQ(loaded(c.name), c.seen) << c.name;
  }
  for (const char* name : {"none.tga", "none.png", "x"}) EXPECT_EQ(loaded(name), "no texture");
}

TEST(TextureLoad, BitmapFillsCornerOfItsTexture) {
  const PictureFolder folder;
  const auto colour = [](int x, int y) {
    return x == 2 && y == 0 ? 0xFF00FFU : 0x010203U * (1 + x + 3 * y);
  };
  folder.write("images/b.bmp", bmp_bytes(3, 3, colour));
  headless_display.record = true;
  loaded("b.bmp");
  headless_display.record = false;
  Bytes expected;  // red, green, blue, alpha
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) {
      const auto level = static_cast<std::uint8_t>(1 + x + 3 * y);
      Bytes pixel = {level, static_cast<std::uint8_t>(2 * level),
                     static_cast<std::uint8_t>(3 * level), 0xFF};
      if (x == 2 && y == 0) pixel = {0, 0, 0, 0};
      if (x == 3 || y == 3) pixel = {0, 0xFF, 0, 0};
      expected.insert(expected.end(), pixel.begin(), pixel.end());
    }
  }
  EXPECT_EQ(headless_display.rgba, expected);
}

TEST(TextureLoad, SizeThatIsNoPowerOfTwoHasNoCoverage) {
  const PictureFolder folder;
  folder.write("images/odd.tga", tga_bytes(12, 16, numbered));
  EXPECT_EQ(loaded("odd.tga"), "texture of 12x16") << "a width of 12 is padded to 16";
}

TEST(Panels, MissingFileLeavesPanelThatDrawsNothing) {
  const PictureFolder folder;
  const PanelName names[2] = {R"(images\none.tga)", R"(images\there.tga)"};
  folder.write("images/there.tga", tga_bytes(8, 8, [](int, int) { return 0xFFFFFFFFU; }));
  Panel table[2];
  EXPECT_EQ(gfx_panels_load(table, 2, names), 0);
  for (const Panel& panel : table) {
    EXPECT_STREQ(panel.name, names[&panel - table]);
    EXPECT_EQ(panel.width, &panel == table ? 0 : 8);
    EXPECT_EQ(panel.visible, 1);
    EXPECT_EQ(panel.flags, 1U);
    EXPECT_EQ(panel.colour, 0xFFFFFFFFU);
    EXPECT_EQ(panel.scale_x, 0.0F);
  }
  const std::uint64_t before = headless_display.quads;
  table[0].flags = PANEL_SOURCE_RECT;
  table[0].src_w = table[0].src_h = 50;
  gfx_panel_draw(table[0]);
  EXPECT_EQ(headless_display.quads, before);
  gfx_panel_draw(table[1]);
  EXPECT_EQ(headless_display.quads, before + 1);
  EXPECT_EQ(gfx_panels_free(table, 2), 0);
}

// PNG files are loaded while a TGA file is read, each once.
TEST(Panels, EachFileIsLoadedOnce) {
  const PictureFolder folder;
  folder.write("images/large.tga", tga_bytes(1024, 1024, numbered));
  PanelName names[8] = {};
  for (int i = 0; i < 8; ++i) {
    const std::string name = i == 3 ? "large.tga" : "p" + std::to_string(i) + ".png";
    if (i != 3) folder.write("images/" + name, PNG_OF_256_BY_64);
    ("images\\" + name).copy(names[i], sizeof names[i] - 1);
  }
  Panel table[8];
  const std::uint32_t before = headless_display.textures;
  gfx_panels_load(table, 8, names);
  EXPECT_EQ(headless_display.textures, before + 8);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(table[i].width, i == 3 ? 1024 : 256) << i;
  gfx_panels_free(table, 8);
}

}  // namespace
