#include "gfx/bitmap_reader.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/headless/display_record.h"
#include "tests/gfx/pictures.h"

namespace {

struct Header {
  bool file_header = true;
  bool core = false;
  int width = 3, height = 2, depth = 24;
  std::uint32_t compression = 0;
  std::uint32_t colours_used = 0;
  Bytes colours{};  // colour table or masks, as stored
};

Bytes bitmap(const Header& h, const Bytes& rows) {
  Bytes out;
  if (h.file_header) {
    out = {'B', 'M'};
    put32(out, 0);
    put32(out, 0);
    put32(out, 14 + (h.core ? 12 : 40) + h.colours.size());
  }
  put32(out, h.core ? 12 : 40);
  const auto put_side = h.core ? put16 : put32;
  put_side(out, h.width);
  put_side(out, h.height);
  put16(out, 1);
  put16(out, h.depth);
  if (!h.core) {
    for (const std::uint32_t v : {h.compression, 0U, 0U, 0U, h.colours_used, 0U}) put32(out, v);
  }
  out.insert(out.end(), h.colours.begin(), h.colours.end());
  out.insert(out.end(), rows.begin(), rows.end());
  return out;
}

std::string decoded(const Bytes& file) {  // "rrggbb" of each pixel, bottom row first
  BitmapImage image{};
  if (bitmap_decode(file.data(), file.size(), image) != BITMAP_OK) return "failed";
  std::string text;
  for (std::size_t i = 0; i < image.pixels.size(); ++i) {
    char hex[4];
    std::snprintf(hex, sizeof hex, "%02x", image.pixels[i]);
    if (i != 0 && i % 3 == 0) text += ' ';
    text += hex;
  }
  return text;
}
std::string decoded(const Header& header, const Bytes& rows) {
  return decoded(bitmap(header, rows));
}

// However a file is cut, it is refused. What it had lies behind its end, to be seen if it is read.
void expect_no_cut_file_is_decoded(const Bytes& file) {
  for (std::size_t size = 0; size < file.size(); ++size) {
    BitmapImage image{};
    EXPECT_NE(bitmap_decode(file.data(), size, image), BITMAP_OK) << size;
  }
}

// Rows of 3 pixels of 24 bits: blue, green, red, and three bytes of padding.
const Bytes rows24 = {3,    2,    1,    6, 5, 4, 9,   8, 7,   0, 0, 0,
                      0x13, 0x12, 0x11, 0, 0, 0, 255, 0, 255, 0, 0, 0};

TEST(BitmapReader, ReadsBothHeadersWithAndWithoutFileHeader) {
  for (const bool file_header : {true, false}) {
    for (const bool core : {true, false}) {
      EXPECT_EQ(decoded({.file_header = file_header, .core = core}, rows24),
                "010203 040506 070809 111213 000000 ff00ff")
          << file_header << core;
    }
  }
  EXPECT_EQ(decoded({.height = -2}, rows24), "111213 000000 ff00ff 010203 040506 070809")
      << "top row first";
}

TEST(BitmapReader, LooksUpIndexesInColourTable) {
  const Bytes two = {1, 2, 3, 0, 4, 5, 6, 0};  // blue first, four bytes each
  EXPECT_EQ(decoded({.width = 10, .height = 1, .depth = 1, .colours = two}, {0x80, 0x40, 0, 0}),
            "060504 030201 030201 030201 030201 030201 030201 030201 030201 060504");
  const Header four{.width = 3, .height = 1, .depth = 4, .colours_used = 2, .colours = two};
  EXPECT_EQ(decoded(four, {0x01, 0x70, 0, 0}), "030201 060504 000000") << "7 has no colour";
  EXPECT_EQ(decoded(four, {0x21, 0x70, 0, 0}), "000000 060504 000000")
      << "nor has 2, where the pixels begin";
  const Header eight{.width = 2, .height = 2, .depth = 8, .colours_used = 2, .colours = two};
  EXPECT_EQ(decoded(eight, {1, 0, 0, 0, 0, 1, 0, 0}), "060504 030201 030201 060504");
  Bytes sixteen;  // the short header has a full table, three bytes each
  for (int i = 0; i < 16; ++i) sixteen.insert(sixteen.end(), 3, i);
  EXPECT_EQ(decoded({.core = true, .width = 2, .height = 1, .depth = 4, .colours = sixteen},
                    {0x2F, 0, 0, 0}),
            "020202 0f0f0f");
}

TEST(BitmapReader, Converts16And32BitColoursTo24) {
  const auto masks = [](std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    Bytes bytes;
    for (const std::uint32_t mask : {red, green, blue}) put32(bytes, mask);
    return bytes;
  };
  Header sixteen{.width = 2, .height = 1, .depth = 16};
  EXPECT_EQ(decoded(sixteen, {0x00, 0x7C, 0x1F, 0x02}), "ff0000 0084ff");
  for (std::uint8_t level = 0; level < 32; ++level) {  // the top bits are repeated below
    char hex[16];
    std::snprintf(hex, sizeof hex, "0000%02x 000000", level << 3 | level >> 2);
    EXPECT_EQ(decoded(sixteen, {level, 0, 0, 0}), hex);
  }
  sixteen.compression = 3;
  sixteen.colours = masks(0xF800, 0x07E0, 0x001F);
  EXPECT_EQ(decoded(sixteen, {0xE0, 0x07, 0x20, 0x04}), "00ff00 008600") << "63 and 33 of 63";
  Header deep{.width = 1, .height = 1, .depth = 32};
  EXPECT_EQ(decoded(deep, {1, 2, 3, 77}), "030201") << "the fourth byte is ignored";
  EXPECT_EQ(decoded(deep, {0xFF, 0, 0, 0}), "0000ff");
  EXPECT_EQ(decoded(deep, {0, 0xFF, 0, 0}), "00ff00");
  deep.compression = 3;
  deep.colours = masks(0x3FF00000, 0x00000001, 0x0000FF00);
  EXPECT_EQ(decoded(deep, {0x01, 0x80, 0x00, 0x20}), "80ff80") << "10 bits, 1 and 8";
}

TEST(BitmapReader, DecodesRunLengths) {
  Header header{.width = 4, .height = 3, .depth = 8, .compression = 1, .colours_used = 4};
  header.colours = {0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3, 0};  // reds
  const auto reds = [&](const Bytes& code) {
    std::string text;
    const std::string pixels = decoded(header, code);
    for (std::size_t i = 0; i < pixels.size(); i += 7) text += pixels[i + 1];
    return text;
  };
  // A run, plain pixels with padding, a move, and a run that would leave the picture.
  const Bytes code = {3, 1, 1, 2, 0, 0,        // bottom row
                      0, 3, 3, 2, 1, 0, 0, 0,  // row above, its last pixel left out
                      0, 2, 2, 0, 9, 3, 0, 1};
  EXPECT_EQ(reds(code), "111232100033");
  expect_no_cut_file_is_decoded(bitmap(header, code));
  header.height = -3;
  EXPECT_EQ(decoded(header, code), "failed") << "bottom-up only";
  header.height = 3;
  header.depth = 4;
  header.compression = 2;
  EXPECT_EQ(reds({3, 0x12, 1, 0x20, 0, 0, 0, 4, 0x32, 0x10, 0, 0, 0, 2, 0, 0, 4, 0x30, 0, 1}),
            "121232103030");
}

TEST(BitmapReader, AllocatesNothingIfFileIsTooShort) {
  BitmapImage image{};
  for (const Header& header :
       {Header{.width = 32768, .height = 32768},
        Header{.width = 32768, .height = 32768, .depth = 8, .compression = 1}}) {
    const Bytes file = bitmap(header, {0, 1});
    EXPECT_EQ(bitmap_decode(file.data(), file.size(), image), BITMAP_NOT_CONVERTED);
    EXPECT_EQ(image.pixels.capacity(), 0U);
  }
}

TEST(BitmapReader, RefusesCutFilesAndHugeSizes) {
  expect_no_cut_file_is_decoded(bitmap({}, rows24));
  for (const int height : {0, 40000, -40000, INT32_MIN}) {
    EXPECT_EQ(decoded({.height = height}, rows24), "failed") << height;
  }
}

TEST(BitmapReader, ShowsReasonInMessageBoxes) {
  const PictureFolder folder;
  Bytes unknown = bitmap({}, rows24);
  unknown[14] = 39;
  folder.write("images/odd.bmp", unknown);
  folder.write("images/jpeg.bmp", bitmap({.compression = 4}, rows24));
  headless_display.boxes.clear();
  for (const char* name : {R"(images\odd.bmp)", R"(images\none.bmp)", R"(images\jpeg.bmp)"}) {
    BitmapImage image{};
    EXPECT_FALSE(bitmap_read(name, image)) << name;
  }
  const std::vector<std::string> told = {
      "Error: Unknown DIB file format.", "Error: Failed to open DIB file images\\odd.bmp.\n",
      "Error: Failed to open DIB file images\\none.bmp.\n", "Error: Image file conversion error.",
      "Error: Failed to open DIB file images\\jpeg.bmp.\n"};
  EXPECT_EQ(headless_display.boxes, told);
}

}  // namespace
