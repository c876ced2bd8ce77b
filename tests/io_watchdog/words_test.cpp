#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "io/watchdog_words.h"

namespace {

using Words = std::vector<std::uint16_t>;

Words decode(const std::vector<std::uint8_t>& bytes) {
  WatchdogDecoder decoder{};
  Words words;
  std::uint16_t word = 0;
  for (const std::uint8_t byte : bytes) {
    EXPECT_TRUE(watchdog_ring_put(decoder, byte));
    while (watchdog_decode(decoder, word)) words.push_back(word);
  }
  return words;
}

}  // namespace

TEST(WatchdogWords, EncodesAndDecodesEveryWord) {
  std::uint8_t bytes[4];
  watchdog_encode(0xB03C, bytes);
  EXPECT_EQ(std::vector<std::uint8_t>(bytes, bytes + 4),
            (std::vector<std::uint8_t>{0x1B, 0x20, 0x33, 0x4C}));
  for (int word = 0; word <= 0xFFFF; ++word) {
    watchdog_encode(static_cast<std::uint16_t>(word), bytes);
    ASSERT_EQ(decode({bytes, bytes + 4}), Words{static_cast<std::uint16_t>(word)});
  }
}

TEST(WatchdogWords, BrokenWordsAreDropped) {
  struct Case {
    const char* what;
    std::vector<std::uint8_t> bytes;
    Words words;
  };
  const Case cases[] = {
      {"a new start in the middle", {0x1C, 0x20, 0x1D, 0x20, 0x31, 0x42}, {0xD012}},
      {"two starts", {0x1C, 0x1D, 0x20, 0x31, 0x42}, {0xD012}},
      {"a byte lost", {0x1C, 0x20, 0x41, 0x1D, 0x20, 0x31, 0x42}, {0xD012}},
      {"the first byte lost", {0x20, 0x30, 0x41, 0x1D, 0x20, 0x31, 0x42}, {0xD012}},
      {"the first byte garbled", {0x5C, 0x20, 0x30, 0x41}, {}},
      {"a byte repeated", {0x1C, 0x20, 0x20, 0x30, 0x41}, {}},
      {"the last byte repeated", {0x1C, 0x20, 0x30, 0x41, 0x41}, {0xC001}},
      {"a byte without a tag", {0x1C, 0x20, 0x00, 0x30, 0x41}, {}},
      {"a tag that doesn't exist", {0x1C, 0x20, 0x30, 0x51, 0x41}, {}},
      {"noise around", {0xFF, 0x41, 0x1C, 0x20, 0x30, 0x41, 0x55, 0x22}, {0xC001}},
      {"two in a row", {0x1C, 0x20, 0x30, 0x41, 0x1D, 0x20, 0x31, 0x42}, {0xC001, 0xD012}},
  };
  for (const Case& c : cases) EXPECT_EQ(decode(c.bytes), c.words) << c.what;
}

TEST(WatchdogWords, RingWrapsAndReportsWhenFull) {
  WatchdogDecoder decoder{};
  decoder.ring_read = decoder.ring_write = 253;
  int taken = 0;
  while (watchdog_ring_put(decoder, static_cast<std::uint8_t>((taken % 4 + 1) << 4 | 7))) ++taken;
  EXPECT_EQ(taken, 255);
  std::uint16_t word = 0;
  int words = 0;
  for (; watchdog_decode(decoder, word); ++words) EXPECT_EQ(word, 0x7777);
  EXPECT_EQ(words, 63);
  EXPECT_TRUE(watchdog_ring_put(decoder, 0x47)) << "room again, with three bytes of a word left";
  EXPECT_TRUE(watchdog_decode(decoder, word));
}
