// The exchange with the USB watchdog, against devices of the test, on a clock set by hand.
#include <gtest/gtest.h>

#include <cstdint>
#include <ios>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "books/audits.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "io/watchdog_device.h"
#include "io/watchdog_link.h"
#include "platform/files.h"
#include "platform/headless/usb_control.h"
#include "tests/io_watchdog/fake_usb.h"
#include "tests/temp_folder.h"

namespace {

using Words = std::vector<std::uint16_t>;

class Watchdog : public testing::Test {
 protected:
  Watchdog() {
    files_use_roots(folder.path(), folder.path());
    audits_reset();
    game_mode = MODE_PLAY;
    game_clock.now_ms = 0;
    watchdog_reset();
  }
  ~Watchdog() override { watchdog_reset(); }

  // One tick.
  void tick(std::int64_t at_ms) {
    game_clock.now_ms = at_ms;
    watchdog_heartbeat();
  }
  // Ticks, 17 ms apart, and the time of the first in which `happened`; -1: none.
  template <typename Happened>
  std::int64_t first(std::int64_t from_ms, std::int64_t to_ms, Happened happened) {
    for (std::int64_t t = from_ms; t <= to_ms; t += 17) {
      tick(t);
      if (happened()) return t;
    }
    return -1;
  }
  // A device that was found at start-up and fed at 17 ms.
  std::shared_ptr<FakeDevice> running() {
    auto device = usb.plug();
    watchdog_boot();
    tick(17);
    device->words();
    return device;
  }
  static int resets_on_disk() {
    audits_reset();
    audits_load();
    return audit_count(AUDIT_WATCHDOG_COUNT);
  }

  TempFolder folder;
  FakeUsb usb;
};

TEST_F(Watchdog, OpensDeviceWithTheDriversRequests) {
  const auto device = usb.plug();
  watchdog_boot();
  EXPECT_EQ(usb.class_first, 0x325DDF96U);
  Bytes configuration(260);
  configuration[2] = 1;
  configuration[8] = 8;
  const std::vector<std::pair<std::uint32_t, Bytes>> expected = {
      {0x8094206C, {}},                        // the device: which driver
      {0x80942006, {0, 0, 0, 0, 1, 0, 0, 0}},  // who it is
      {0x80942024, configuration},
      {0x8094206C, {}},  // a handle for each endpoint
      {0x80942078, {0x81}},
      {0x8094206C, {}},
      {0x80942078, {0x02}},
  };
  EXPECT_EQ(device->requests, expected);
  EXPECT_EQ(device->words(), (Words{0xC080}));
  tick(17);
  EXPECT_EQ(device->words(), (Words{0xB03C})) << "fed in the first tick";
  watchdog_reboot_word();
  EXPECT_EQ(device->words(), (Words{0xB0FF}));
}

TEST_F(Watchdog, SkipsOtherDevicesUpToOneWithAnOldDriver) {
  const auto stranger = usb.plug();
  stranger->product = 0x0775;
  usb.plug()->vendor = 0x0C71;
  const auto device = usb.plug();
  watchdog_boot();
  EXPECT_EQ(usb.opened, (std::vector<std::string>{"0", "1", "2", "2", "2"}));
  EXPECT_EQ(stranger->open_files, 0);
  EXPECT_EQ(stranger->heard.size(), 0U);
  EXPECT_EQ(device->words(), (Words{0xC080}));
  usb.opened.clear();
  stranger->version = 0x0140;
  watchdog_boot();
  EXPECT_EQ(usb.opened, (std::vector<std::string>{"0"}));
  EXPECT_EQ(stranger->open_files + device->open_files, 0);
  EXPECT_EQ(watchdog_send_word(WATCHDOG_WORD_SHORT), WATCHDOG_NOTHING);
}

TEST_F(Watchdog, WhilePausedReadsButDoesNotFeed) {
  const auto device = running();
  watchdog_feed.paused = 1;
  EXPECT_EQ(watchdog_send_word(WATCHDOG_WORD_SHORT), WATCHDOG_OK);
  EXPECT_EQ(device->words(), (Words{0xB008}));
  device->say(0xD000);
  tick(90'000);
  EXPECT_EQ(device->words(), (Words{0xC080}));
  watchdog_feed.paused = 0;
  watchdog_feed.next_time = 91'000;
  tick(91'000);
  EXPECT_TRUE(device->words().empty());
  tick(91'017);
  EXPECT_EQ(device->words(), (Words{0xB03C}));
}

TEST_F(Watchdog, AnswersEachWordOfTheDevice) {
  const auto device = running();
  const std::pair<std::uint16_t, Words> cases[] = {
      {0xC000, {0xC040}}, {0xC0FE, {0xC040}}, {0xC001, {0xC081}}, {0xC0FF, {0xC081}},
      {0xD000, {0xC080}}, {0xD0A5, {0xC080}}, {0xF012, {}},       {0xB03C, {}},
      {0xC100, {}},       {0xD100, {}},       {0x0000, {}},
  };
  std::int64_t t = 34;
  for (const auto& [word, answers] : cases) {
    device->say(word);
    tick(t += 17);
    EXPECT_EQ(device->words(), answers) << std::hex << word;
  }
}

TEST_F(Watchdog, ReadsWordsSplitAcrossBlocks) {
  const auto device = running();
  device->says = {{0x31, 0x42, 0x1D, 0x20}, {0x30, 0x41, 0x1F, 0x20}};
  tick(34);
  EXPECT_EQ(device->words(), (Words{0xC080}));
  device->says = {{0x1D, 0x20, 0x30}};  // a short block is ignored
  tick(51);
  device->says = {{0x41, 0x41, 0x41, 0x41}};
  tick(68);
  EXPECT_TRUE(device->words().empty());
  device->say(0xD000);
  tick(85);
  EXPECT_EQ(device->words(), (Words{0xC080})) << "reading goes on after a short block";
}

TEST_F(Watchdog, BusyDeviceIsReadButGetsNoAnswers) {
  const auto device = running();
  device->busy = true;
  device->say(0xD000);  // while its answer is pending
  device->say(0xC000);  // this one gets none
  device->say(0xC001);
  tick(34);
  EXPECT_EQ(device->words(), (Words{0xC080}));
  EXPECT_TRUE(device->says.empty());
  EXPECT_EQ(audit_count(AUDIT_WATCHDOG_COUNT), 1);
  EXPECT_EQ(watchdog_send_word(WATCHDOG_WORD_LONG), WATCHDOG_NOTHING);
  tick(20'034);
  device->busy = false;
  tick(20'051);
  EXPECT_TRUE(device->words().empty()) << "a missed heartbeat is not repeated";
  tick(40'051);
  EXPECT_EQ(device->words(), (Words{0xB03C}));
}

TEST_F(Watchdog, ResetIsCountedOncePerRunAndStored) {
  const auto device = running();
  game_mode = MODE_OPERATOR;
  device->say(0xC001);
  tick(34);
  EXPECT_EQ(device->words(), (Words{0xC081}));
  EXPECT_EQ(audit_count(AUDIT_WATCHDOG_COUNT), 0) << "caused by the operator's test";
  game_mode = MODE_PLAY;
  for (int i = 1; i <= 3; ++i) {
    device->say(0xC001);
    tick(34 + 17 * i);
    EXPECT_EQ(device->words(), (Words{0xC081}));
    EXPECT_EQ(audit_count(AUDIT_WATCHDOG_COUNT), 1);
  }
  EXPECT_EQ(resets_on_disk(), 1);
}

TEST_F(Watchdog, ReconnectsAfterUnplugging) {
  const auto device = running();
  device->say(0xC001);
  tick(34);
  usb.pull(device);
  EXPECT_EQ(first(51, 60'000, [&] { return device->open_files == 0; }), 20'026)
      << "the next heartbeat closes it";
  EXPECT_EQ(watchdog_send_word(WATCHDOG_WORD_LONG), WATCHDOG_NOTHING);
  const int before = usb.searches;
  EXPECT_EQ(first(20'043, 60'000, [&] { return usb.searches > before; }), 40'035);
  const auto again = usb.plug();
  EXPECT_EQ(first(40'052, 400'000, [&] { return again->open_files > 0; }), 340'051)
      << "it is searched every five minutes";
  EXPECT_EQ(usb.searches, before + 2);
  EXPECT_EQ(again->words(), (Words{0xC040})) << "not the answer to the old device";
  again->say(0xC001);
  tick(340'068);
  EXPECT_EQ(again->words(), (Words{0xB03C, 0xC081}));
  EXPECT_EQ(audit_count(AUDIT_WATCHDOG_COUNT), 1) << "the same run";
}

TEST_F(Watchdog, FailedWriteClosesTheDevice) {
  const auto device = running();
  device->write_code = USB_ERROR_GONE;
  tick(20'034);
  EXPECT_EQ(watchdog_send_word(WATCHDOG_WORD_LONG), WATCHDOG_NOTHING);
  EXPECT_EQ(device->open_files, 0);
}

TEST_F(Watchdog, ReadErrorResetsTheDevice) {
  const auto device = running();
  device->requests.clear();
  device->read_code = USB_ERROR_NEEDS_RESET;
  for (int i = 2; i < 12; ++i) tick(17 * i);
  EXPECT_EQ(device->requests, (std::vector<std::pair<std::uint32_t, Bytes>>{{0x80942054, {}}}));
  device->say(0xD000);
  tick(500);
  EXPECT_EQ(device->words(), (Words{0xC080})) << "reading goes on";
}

TEST_F(Watchdog, FailedOpenDoesNotSelectAnotherDevice) {
  const auto stranger = usb.plug();
  stranger->product = 1;
  const auto device = usb.plug();
  device->bind_code = USB_ERROR_REQUEST;
  watchdog_boot();
  EXPECT_EQ(watchdog_send_word(WATCHDOG_WORD_LONG), WATCHDOG_NOTHING);
  device->bind_code = 0;
  tick(17);  // it is looked for again in the first tick
  EXPECT_EQ(device->words(), (Words{0xC040}));
  EXPECT_TRUE(stranger->heard.empty());
  headless_usb_driver = nullptr;
  EXPECT_FALSE(watchdog_open_device()) << "a machine without USB";
}

}  // namespace
