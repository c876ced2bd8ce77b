#include "io/jamma_wire.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

struct Heard {
  std::vector<std::string> frames;
  int bad = 0, lost = 0;
};

Heard hear(WireFraming& framing, const std::string& bytes, bool checksums) {
  Heard heard;
  for (const char byte : bytes) {
    switch (wire_feed(framing, static_cast<std::uint8_t>(byte), checksums)) {
      case WIRE_FRAME:
        heard.frames.emplace_back(framing.buffer, framing.buffer + framing.length);
        break;
      case WIRE_BAD_CHECKSUM:
        ++heard.bad;
        break;
      case WIRE_CHECKSUMS_LOST:
        ++heard.lost;
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

using Texts = std::vector<std::string>;

}  // namespace

TEST(Wire, BuildsFrames) {
  EXPECT_EQ(build('v', {}, true), "\nv\r8D");
  EXPECT_EQ(build('C', {0x00, 0x01}, true), "\nC0001\r1B");
  EXPECT_EQ(build('U', {0x00}, true), "\nU00\rCC");
  EXPECT_EQ(build('P', {0xAF, 0xFE}, false), "\nPaffe\r");
}

TEST(Wire, JoinsFrameSplitAnywhere) {
  const std::string bytes = "\nS80123456789abcde\r";
  for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
    WireFraming framing;
    Texts frames = hear(framing, bytes.substr(0, cut), false).frames;
    for (auto& frame : hear(framing, bytes.substr(cut), false).frames) frames.push_back(frame);
    EXPECT_EQ(frames, Texts{"S80123456789abcde\r"}) << cut;
  }
}

TEST(Wire, CutsJoinedFramesInOrderAndSkipsGarbage) {
  WireFraming framing;
  const Heard heard = hear(framing, "x8\r\r\n*R\rzz\nt0105\r12\nv5", false);
  EXPECT_EQ(heard.frames, (Texts{"*R\r", "t0105\r"}));
  EXPECT_EQ(heard.bad, 0);
  EXPECT_EQ(hear(framing, "\nv5051\r", false).frames, Texts{"v5051\r"}) << "LF begins anew";
}

TEST(Wire, DropsFrameThatIsTooLong) {
  WireFraming framing;
  const std::string longest = std::string(WIRE_FRAME_MAX - 1, 'a') + "\r";
  EXPECT_EQ(hear(framing, "\n" + longest, false).frames, Texts{longest});
  EXPECT_EQ(hear(framing, "\na" + longest + "\ns\r", false).frames, Texts{"s\r"});
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

TEST(WireChecksum, RejectsFrameWithOneWrongByte) {
  const std::string good = build('S', {0x80, 0, 0x12, 0x3F, 0x40, 0, 0, 0xA1}, true);
  for (std::size_t place = 0; place < good.size(); ++place) {
    for (int value = 0; value < 256; ++value) {
      std::string bytes = good;
      bytes[place] = static_cast<char>(value);
      if (bytes == good) continue;
      WireFraming framing;
      const Heard heard = hear(framing, bytes, true);
      EXPECT_TRUE(heard.frames.empty()) << place << " became " << value;
      // Whatever the garbled frame left behind, the line is in step again after one more LF.
      EXPECT_LE(hear(framing, "\n", true).bad, 1);
      EXPECT_EQ(hear(framing, good + good, true).frames.empty(), false);
    }
  }
}

TEST(WireChecksum, SkipsGarbageBetweenFrames) {
  WireFraming framing;
  const Heard heard = hear(framing, "\nv\r8Dx\r00\nv\r8E\r00\nv\r8D", true);
  EXPECT_EQ(heard.frames, (Texts{"v\r", "v\r"}));
  EXPECT_EQ(heard.bad, 1) << "none but the second frame";
}

TEST(WireChecksum, LosesOneFrameForLostDigit) {
  WireFraming framing;
  const Heard heard = hear(framing, "\nv\r8\nv\r8D", true);
  EXPECT_EQ(heard.frames, Texts{"v\r"});
  EXPECT_EQ(heard.bad, 1);
  EXPECT_EQ(hear(framing, "\nv\r8d", true).bad, 1) << "checksum digits are upper case";
}

TEST(WireChecksum, ReportsLostChecksumModeOnce) {
  WireFraming framing;
  Heard heard = hear(framing, "\nv5051\r\nc0081\r\nt0000\r\ns00\r\n*R\r", true);
  EXPECT_EQ(heard.frames, Texts{}) << "each frame goes, and the one after it";
  EXPECT_EQ(heard.lost, 1);
  EXPECT_EQ(heard.bad, 0);
  heard = hear(framing, "\nx\n" + build('v', {0x50, 0x51}, true), true);
  EXPECT_EQ(heard.frames, Texts{"v5051\r"}) << "the board has checksums again";
  EXPECT_EQ(hear(framing, "\nv5051\r\nc", true).lost, 1) << "and may lose them again";
}
