// The frames of the line: how they are built, cut out of a stream of bytes, checked and decoded.
#include "io/jamma_wire.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

// What comes of bytes: each frame without its CR, "bad" and "lost".
std::string hear(WireFraming& framing, const std::string& bytes, bool checksums) {
  std::string heard;
  for (const char byte : bytes) {
    switch (wire_feed(framing, static_cast<std::uint8_t>(byte), checksums)) {
      case WIRE_FRAME:
        EXPECT_EQ(framing.buffer[framing.length - 1], '\r');
        heard.append(framing.buffer, framing.buffer + framing.length - 1);
        heard += ' ';
        break;
      case WIRE_BAD_CHECKSUM:
        heard += "bad ";
        break;
      case WIRE_CHECKSUMS_LOST:
        heard += "lost ";
        break;
      case WIRE_NOTHING:
        break;
    }
  }
  return heard;
}

std::string build(char letter, std::vector<std::uint8_t> data, bool checksum) {
  std::uint8_t frame[WIRE_FRAME_MAX];
  const std::size_t size = wire_build(frame, letter, data.data(), data.size(), checksum);
  return {frame, frame + size};
}

}  // namespace

TEST(Wire, BuildsFrames) {
  EXPECT_EQ(build('v', {}, true), "\nv\r8D");
  EXPECT_EQ(build('C', {0x00, 0x01}, true), "\nC0001\r1B");
  EXPECT_EQ(build('U', {0x00}, true), "\nU00\rCC");
  EXPECT_EQ(build('P', {0xAF, 0xFE}, false), "\nPaffe\r");
}

TEST(Wire, CutsFramesAndSkipsGarbageWhereverTheyAreSplit) {
  const struct {
    const char* bytes;
    bool checksums;
    const char* heard;
  } rows[] = {
      {"x8\r\r\n*R\rzz\nt0105\r12\nv5\nv5051\r", false, "*R t0105 v5051 "},  // LF begins anew
      {"\nv\r8Dx\r00\nv\r8E\r00\nv\r8D", true, "v bad v "},
      {"\nv\r8\nv\r8D", true, "bad v "},  // a digit was lost
      {"\nv\r8d", true, "bad "},          // checksum digits are upper case
      // A board that has lost the checksums: each frame goes, and the one after it. Then it has
      // them again, and may lose them again.
      {"\nv5051\r\nc0081\r\nt0000\r\ns00\r\n*R\r\nx\n\nv5051\r58\nv5051\r\nc", true,
       "lost v5051 lost "},
  };
  for (const auto& row : rows) {
    const std::string bytes = row.bytes;
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
      WireFraming framing;
      std::string heard = hear(framing, bytes.substr(0, cut), row.checksums);
      heard += hear(framing, bytes.substr(cut), row.checksums);
      EXPECT_EQ(heard, row.heard) << row.bytes << " cut at " << cut;
    }
  }
}

TEST(Wire, DropsFrameThatIsTooLong) {
  WireFraming framing;
  const std::string longest(WIRE_FRAME_MAX - 1, 'a');
  EXPECT_EQ(hear(framing, "\n" + longest + "\r", false), longest + " ");
  EXPECT_EQ(hear(framing, "\na" + longest + "\r\ns\r", false), "s ");
}

TEST(Wire, DecodesFrames) {
  const auto decode = [](const std::string& text) {
    std::uint8_t out[512];
    const std::size_t size =
        wire_decode(reinterpret_cast<const std::uint8_t*>(text.data()), text.size(), out);
    return std::vector<int>(out, out + size);
  };
  EXPECT_EQ(decode("t0aF"), (std::vector<int>{'t', 0x0A})) << "half a pair is no byte";
  EXPECT_EQ(decode("t0aFf"), (std::vector<int>{'t', 0x0A, 0xFF}));
  EXPECT_EQ(decode("t 0-a\tg9z9"), (std::vector<int>{'t', 0x0A, 0x99})) << "no digits: skipped";
  EXPECT_EQ(decode("*R1"), (std::vector<int>{'*', 'R', '1'}));
  EXPECT_EQ(decode(""), std::vector<int>{});
}

TEST(Wire, ChecksumRejectsFrameWithOneWrongByte) {
  const std::string good = build('S', {0x80, 0, 0x12, 0x3F, 0x40, 0, 0, 0xA1}, true);
  for (std::size_t place = 0; place < good.size(); ++place) {
    for (int value = 0; value < 256; ++value) {
      std::string bytes = good;
      bytes[place] = static_cast<char>(value);
      if (bytes == good) continue;
      WireFraming framing;
      const std::string heard = hear(framing, bytes, true);
      EXPECT_TRUE(heard.empty() || heard == "bad " || heard == "lost ")
          << place << " became " << value << ": " << heard;
      // Whatever the garbled frame left behind, the line is in step again after one more LF.
      hear(framing, "\n", true);
      EXPECT_TRUE(hear(framing, good + good, true).ends_with("S8000123f400000a1 "));
    }
  }
}
