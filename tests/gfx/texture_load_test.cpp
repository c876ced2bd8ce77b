#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

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

TEST(TgaReader, ReversesRowsAndSkipsId) {
  const PictureFolder folder;
  folder.write("images/a.tga", tga_bytes(4, 2, numbered, 32, 2, "made by hand"));
  TgaImage image{};
  ASSERT_TRUE(tga_read(R"(images\a.tga)", image));
  EXPECT_EQ(image.width, 4);
  EXPECT_EQ(image.height, 2);
  EXPECT_EQ(image.pixels[3], 0) << "alpha of the top left pixel";
  EXPECT_EQ(image.pixels[7], 1);
  EXPECT_EQ(image.pixels[4 * 4 + 3], 10) << "alpha below it";
}

TEST(TgaReader, RefusesOtherTypesWithMessageAndShortFilesWithout) {
  const PictureFolder folder;
  folder.write("images/deep24.tga", tga_bytes(4, 2, numbered, 24));
  folder.write("images/packed.tga", tga_bytes(4, 2, numbered, 32, 10));
  Bytes cut = tga_bytes(4, 2, numbered);
  cut.pop_back();
  folder.write("images/short.tga", cut);
  TgaImage image{};
  testing::internal::CaptureStdout();
  EXPECT_FALSE(tga_read(R"(images\deep24.tga)", image));
  EXPECT_FALSE(tga_read(R"(images\packed.tga)", image));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "FUCK!!\nFUCK!!\n");
  testing::internal::CaptureStdout();
  EXPECT_FALSE(tga_read(R"(images\short.tga)", image));
  EXPECT_FALSE(tga_read(R"(images\none.tga)", image));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(TgaReader, AllocatesNothingIfFileIsTooShort) {
  const PictureFolder folder;
  for (const int side : {8000, 65535}) {
    Bytes file = tga_bytes(0, 0, numbered);
    for (const std::size_t at : {12U, 14U}) {
      file[at] = side & 0xFF;
      file[at + 1] = static_cast<std::uint8_t>(side >> 8);
    }
    folder.write("images/large.tga", file);
    TgaImage image{};
    EXPECT_FALSE(tga_read(R"(images\large.tga)", image));
    EXPECT_EQ(image.pixels.capacity(), 0U) << side;
  }
}

struct Loaded {
  int result;
  std::int32_t width, height;
  bool has_texture, has_coverage;
};

Loaded load(const char* name) {
  GlTexture* texture = nullptr;
  TextureInfo info{-1, -1};
  const int result = gfx_texture_load(name, &texture, &info);
  const Loaded loaded{result, info.width, info.height, texture->id != 0,
                      texture->coverage != nullptr};
  gfx_texture_free(texture);
  return loaded;
}

TEST(TextureLoad, FirstExtensionInNameSelectsReader) {
  const PictureFolder folder;
  const Bytes tga = tga_bytes(8, 16, numbered);
  const Bytes bmp = bmp_bytes(100, 60, numbered);
  for (const char* name : {"a.tga", "A.TGA", "a.tga.png", "a.Tga"}) {
    folder.write(std::string("images/") + name, tga);
  }
  folder.write("images/b.bmp", bmp);
  folder.write("images/b.tga.bmp", bmp);
  folder.write("images/c.png", PNG_OF_256_BY_64);

  for (const char* name : {R"(images\a.tga)", R"(images\A.TGA)", R"(images\a.tga.png)"}) {
    const Loaded loaded = load(name);
    EXPECT_EQ(loaded.result, 1) << name;
    EXPECT_EQ(loaded.width, 8) << name;
    EXPECT_EQ(loaded.height, 16) << name;
    EXPECT_TRUE(loaded.has_coverage) << name;
  }
  for (const char* name : {R"(images\b.bmp)", R"(images\b.tga.bmp)"}) {
    const Loaded loaded = load(name);
    EXPECT_EQ(loaded.result, 1) << name;
    EXPECT_EQ(loaded.width, 100) << "the size without padding";
    EXPECT_EQ(loaded.height, 60) << name;
  }
  const Loaded png_loaded = load(R"(images\c.png)");
  EXPECT_EQ(png_loaded.width, 256);
  EXPECT_EQ(png_loaded.height, 64);
  EXPECT_FALSE(png_loaded.has_coverage) << "no pixels to read back";
  for (const char* name : {R"(images\a.Tga)", R"(images\none.tga)", R"(images\none.png)", "x"}) {
    const Loaded loaded = load(name);
    EXPECT_EQ(loaded.result, 0) << name;
    EXPECT_FALSE(loaded.has_texture) << name;
  }
}

TEST(TextureLoad, BitmapFillsCornerOfItsTexture) {
  const PictureFolder folder;
  const auto colour = [](int x, int y) {
    return x == 2 && y == 0 ? 0xFF00FFU : 0x010203U * (1 + x + 3 * y);
  };
  folder.write("images/b.bmp", bmp_bytes(3, 3, colour));
  headless_display.record = true;
  load(R"(images\b.bmp)");
  headless_display.record = false;
  ASSERT_EQ(headless_display.rgba.size(), 4U * 4 * 4);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) {
      const std::uint8_t* p = &headless_display.rgba[4 * (4 * y + x)];
      const std::uint32_t found = p[3] << 24 | p[0] << 16 | p[1] << 8 | p[2];
      const bool outside = x == 3 || y == 3, nothing = x == 2 && y == 0;
      EXPECT_EQ(found, outside   ? 0x0000FF00U
                       : nothing ? 0U
                                 : 0xFF000000U | colour(x, y))
          << x << ',' << y;
    }
  }
}

TEST(TextureLoad, SizeThatIsNoPowerOfTwoHasNoCoverage) {
  const PictureFolder folder;
  folder.write("images/odd.tga", tga_bytes(12, 16, numbered));
  const Loaded loaded = load(R"(images\odd.tga)");
  EXPECT_TRUE(loaded.has_texture);
  EXPECT_FALSE(loaded.has_coverage) << "a width of 12 is padded to 16";
}

TEST(Panels, MissingFileLeavesPanelThatDrawsNothing) {
  const PictureFolder folder;
  const PanelName names[2] = {R"(images\none.tga)", R"(images\there.tga)"};
  folder.write("images/there.tga", tga_bytes(8, 8, [](int, int) { return 0xFFFFFFFFU; }));
  Panel table[2];
  EXPECT_EQ(gfx_panels_load(table, 2, names), 0);
  EXPECT_STREQ(table[0].name, names[0]);
  EXPECT_EQ(table[0].width, 0);
  EXPECT_EQ(table[1].width, 8);
  EXPECT_EQ(table[1].visible, 1);
  EXPECT_EQ(table[1].flags, 1U);
  EXPECT_EQ(table[1].colour, 0xFFFFFFFFU);
  EXPECT_EQ(table[1].scale_x, 0.0F);
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
