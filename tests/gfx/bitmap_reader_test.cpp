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
  Bytes info;
  put32(info, h.core ? 12 : 40);
  if (h.core) {
    put16(info, h.width);
    put16(info, h.height);
    put16(info, 1);
    put16(info, h.depth);
  } else {
    put32(info, h.width);
    put32(info, h.height);
    put16(info, 1);
    put16(info, h.depth);
    put32(info, h.compression);
    for (int i = 0; i < 3; ++i) put32(info, 0);
    put32(info, h.colours_used);
    put32(info, 0);
  }
  Bytes out;
  if (h.file_header) {
    out = {'B', 'M'};
    put32(out, 0);
    put32(out, 0);
    put32(out, 14 + info.size() + h.colours.size());
  }
  out.insert(out.end(), info.begin(), info.end());
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

// Rows of 3 pixels of 24 bits: blue, green, red, and three bytes of padding.
const Bytes rows24 = {3,    2,    1,    6, 5, 4, 9,   8, 7,   0, 0, 0,
                      0x13, 0x12, 0x11, 0, 0, 0, 255, 0, 255, 0, 0, 0};
const char* const pixels24 = "010203 040506 070809 111213 000000 ff00ff";

TEST(BitmapReader, ReadsBothHeadersWithAndWithoutFileHeader) {
  for (const bool file_header : {true, false}) {
    for (const bool core : {true, false}) {
      Header header;
      header.file_header = file_header;
      header.core = core;
      EXPECT_EQ(decoded(bitmap(header, rows24)), pixels24) << file_header << core;
    }
  }
  Header top_down;
  top_down.height = -2;
  EXPECT_EQ(decoded(bitmap(top_down, rows24)), "111213 000000 ff00ff 010203 040506 070809");
}

TEST(BitmapReader, LooksUpIndexesInColourTable) {
  const Bytes colours = {1, 2, 3, 0, 4, 5, 6, 0};  // blue first, four bytes each
  Header one{.width = 10, .height = 1, .depth = 1, .colours = colours};
  EXPECT_EQ(decoded(bitmap(one, {0b10000000, 0b01000000, 0, 0})),
            "060504 030201 030201 030201 030201 030201 030201 030201 030201 060504");
  Header four{.width = 3, .height = 1, .depth = 4, .colours_used = 2, .colours = colours};
  EXPECT_EQ(decoded(bitmap(four, {0x01, 0x70, 0, 0})), "030201 060504 000000") << "7 has no colour";
  EXPECT_EQ(decoded(bitmap(four, {0x21, 0x70, 0, 0})), "000000 060504 000000")
      << "nor has 2, where the pixels begin";
  Header eight{.width = 2, .height = 2, .depth = 8, .colours_used = 2, .colours = colours};
  EXPECT_EQ(decoded(bitmap(eight, {1, 0, 0, 0, 0, 1, 0, 0})), "060504 030201 030201 060504");
  Bytes core_colours;  // the short header has a full table, three bytes each
  for (int i = 0; i < 16; ++i) core_colours.insert(core_colours.end(), 3, i);
  Header core{.core = true, .width = 2, .height = 1, .depth = 4, .colours = core_colours};
  EXPECT_EQ(decoded(bitmap(core, {0x2F, 0, 0, 0})), "020202 0f0f0f");
}

TEST(BitmapReader, Converts16And32BitColoursTo24) {
  Header sixteen{.width = 2, .height = 1, .depth = 16};
  EXPECT_EQ(decoded(bitmap(sixteen, {0x00, 0x7C, 0x1F, 0x02})), "ff0000 0084ff");
  for (std::uint32_t level = 0; level < 32; ++level) {  // the top bits are repeated below
    Header blue{.width = 1, .height = 1, .depth = 16};
    char hex[8];
    std::snprintf(hex, sizeof hex, "0000%02x", level << 3 | level >> 2);
    EXPECT_EQ(decoded(bitmap(blue, {static_cast<std::uint8_t>(level), 0, 0, 0})), hex);
  }
  Bytes masks;
  for (const std::uint32_t mask : {0xF800U, 0x07E0U, 0x001FU}) put32(masks, mask);
  Header fields{.width = 1, .height = 1, .depth = 16, .compression = 3, .colours = masks};
  EXPECT_EQ(decoded(bitmap(fields, {0xE0, 0x07, 0, 0})), "00ff00");
  EXPECT_EQ(decoded(bitmap(fields, {0x20, 0x04, 0, 0})), "008600") << "33 of 63";
  masks.clear();
  for (const std::uint32_t mask : {0x3FF00000U, 0x00000001U, 0x0000FF00U}) put32(masks, mask);
  Header wide{.width = 1, .height = 1, .depth = 32, .compression = 3, .colours = masks};
  EXPECT_EQ(decoded(bitmap(wide, {0x01, 0x80, 0x00, 0x20})), "80ff80") << "10 bits, 1 and 8";
  Header deep{.width = 1, .height = 1, .depth = 32};
  EXPECT_EQ(decoded(bitmap(deep, {1, 2, 3, 77})), "030201") << "the fourth byte is ignored";
  EXPECT_EQ(decoded(bitmap(deep, {0xFF, 0, 0, 0})), "0000ff");
  EXPECT_EQ(decoded(bitmap(deep, {0, 0xFF, 0, 0})), "00ff00");
}

TEST(BitmapReader, DecodesRunLengths) {
  const Bytes colours = {0, 0, 0x10, 0, 0, 0, 0x11, 0, 0, 0, 0x12, 0, 0, 0, 0x13, 0};  // reds
  Header eight{.width = 4, .height = 3, .depth = 8, .compression = 1, .colours_used = 4};
  eight.colours = colours;
  const auto reds = [](const std::string& pixels) {
    std::string text;
    for (std::size_t i = 0; i < pixels.size(); i += 7) text += pixels[i + 1];
    return text;
  };
  // A run, plain pixels with padding, a move, and a run that would leave the picture.
  const Bytes code = {3, 1, 1, 2, 0, 0,        // bottom row
                      0, 3, 3, 2, 1, 0, 0, 0,  // row above, its last pixel left out
                      0, 2, 2, 0, 9, 3, 0, 1};
  EXPECT_EQ(reds(decoded(bitmap(eight, code))), "111232100033");
  Header four = eight;
  four.depth = 4;
  four.compression = 2;
  const Bytes code4 = {3, 0x12, 1, 0x20, 0, 0, 0, 4, 0x32, 0x10, 0, 0, 0, 2, 0, 0, 4, 0x30, 0, 1};
  EXPECT_EQ(reds(decoded(bitmap(four, code4))), "121232103030");
  for (std::size_t size = 0; size < code.size(); ++size) {
    const Bytes cut(code.begin(), code.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(decoded(bitmap(eight, cut)), "failed") << size;
  }
  Header top_down = eight;
  top_down.height = -3;
  EXPECT_EQ(decoded(bitmap(top_down, code)), "failed") << "bottom-up only";
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

TEST(BitmapReader, RefusesUnknownFormatsCutFilesAndHugeSizes) {
  BitmapImage image{};
  Bytes unknown = bitmap({}, rows24);
  unknown[14] = 39;
  EXPECT_EQ(bitmap_decode(unknown.data(), unknown.size(), image), BITMAP_UNKNOWN_FORMAT);
  const Bytes packed = bitmap({.depth = 8, .compression = 1}, rows24);
  EXPECT_EQ(bitmap_decode(packed.data(), packed.size(), image), BITMAP_NOT_CONVERTED);
  const Bytes whole = bitmap({}, rows24);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_NE(bitmap_decode(cut.data(), cut.size(), image), BITMAP_OK) << size;
  }
  for (const int size : {0, 40000, -40000, INT32_MIN}) {
    const Bytes large = bitmap({.height = size}, rows24);
    EXPECT_NE(bitmap_decode(large.data(), large.size(), image), BITMAP_OK) << size;
  }
}

TEST(BitmapReader, ShowsReasonInMessageBoxes) {
  const PictureFolder folder;
  Bytes unknown = bitmap({}, rows24);
  unknown[14] = 39;
  folder.write("images/odd.bmp", unknown);
  folder.write("images/jpeg.bmp", bitmap({.compression = 4}, rows24));
  BitmapImage image{};
  headless_display.boxes.clear();
  EXPECT_FALSE(bitmap_read(R"(images\odd.bmp)", image));
  EXPECT_FALSE(bitmap_read(R"(images\none.bmp)", image));
  EXPECT_FALSE(bitmap_read(R"(images\jpeg.bmp)", image));
  const std::vector<std::string> told = {
      "Error: Unknown DIB file format.", "Error: Failed to open DIB file images\\odd.bmp.\n",
      "Error: Failed to open DIB file images\\none.bmp.\n", "Error: Image file conversion error.",
      "Error: Failed to open DIB file images\\jpeg.bmp.\n"};
  EXPECT_EQ(headless_display.boxes, told);
}

}  // namespace
