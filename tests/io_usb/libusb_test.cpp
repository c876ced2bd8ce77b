// The watchdog's exchange through libusb, down to libusb's requests of the kernel.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "frame/game_clock.h"
#include "io/watchdog_link.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "tests/io_usb/emulated_usb.h"

namespace {

constexpr int VENDOR = 0x0C70, PRODUCT = 0x0774;
const Bytes ACKNOWLEDGE = {0x1C, 0x20, 0x38, 0x40}, FOOD = {0x1B, 0x20, 0x33, 0x4C},
            STATUS = {0x1C, 0x20, 0x34, 0x40}, ASKS = {0x1D, 0x20, 0x30, 0x40};

class Libusb : public testing::Test {
 protected:
  void SetUp() override {
    if (std::getenv("LILYHOP_TEST_USB") == nullptr) {
      GTEST_SKIP() << "only with LD_PRELOAD=libumockdev-preload.so.0, as ctest runs it";
    }
    environment.usbio = USBIO_LIBUSB;
    game_clock.now_ms = 0;
    watchdog_reset();
    bus();
    ASSERT_TRUE(umockdev_in_mock_environment());
  }
  void TearDown() override {
    watchdog_reset();
    while (!plugged.empty()) pull(plugged.begin()->first);
    environment.usbio = USBIO_NONE;
  }

  // One for the process: libusb keeps the system that it has seen first.
  static EmulatedBus& bus() {
    static EmulatedBus& instance = *new EmulatedBus;
    return instance;
  }
  EmulatedDevice& plug(int number, int vendor = VENDOR, int product = PRODUCT) {
    plugged[number] = std::make_unique<EmulatedDevice>();
    bus().plug(number, vendor, product, plugged[number].get());
    return *plugged[number];
  }
  void pull(int number) {
    bus().pull(number, plugged[number].get());
    pulled.push_back(std::move(plugged[number]));
    plugged.erase(number);
  }
  // Devices that this process has open.
  static int open_nodes() {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      const std::string path = std::filesystem::read_symlink(entry.path(), gone).string();
      count += path.find("/bus/usb/") != std::string::npos ? 1 : 0;
    }
    return count;
  }
  void tick(std::int64_t at_ms) {
    game_clock.now_ms = at_ms;
    watchdog_heartbeat();
  }
  // Ticks without moving the clock until the device has heard this, and nothing else.
  testing::AssertionResult hears(EmulatedDevice& device, const Bytes& bytes) {
    std::vector<Bytes> all;
    for (int i = 0; i < 500; ++i) {
      watchdog_heartbeat();
      for (const Bytes& heard : device.heard()) all.push_back(heard);
      if (all == std::vector<Bytes>{bytes}) return testing::AssertionSuccess();
      clock_sleep_ms(1);
    }
    return testing::AssertionFailure() << testing::PrintToString(all) << "\n" << device.requests();
  }

  std::map<int, std::unique_ptr<EmulatedDevice>> plugged;
  // Files may still be open on them.
  static inline std::vector<std::unique_ptr<EmulatedDevice>> pulled;
};

TEST_F(Libusb, FindsDeviceFeedsItAndAnswers) {
  EmulatedDevice& stranger = plug(2, 0x1D6B, 0x0002);
  EmulatedDevice& device = plug(3);
  watchdog_feed.next_time = 1000;
  watchdog_boot();
  EXPECT_TRUE(hears(device, ACKNOWLEDGE));
  EXPECT_EQ(device.count("claim"), 1) << device.requests();
  EXPECT_EQ(device.count("set configuration"), 0) << "already the right one";
  EXPECT_EQ(device.count("submit 02 interrupt 4"), 1);
  EXPECT_EQ(device.count("submit 81 interrupt 4"), 1) << "a read is under way, of four bytes";
  EXPECT_EQ(stranger.requests(), "") << "no request to another device";

  game_clock.now_ms = 1001;
  EXPECT_TRUE(hears(device, FOOD));
  device.say({0x1D, 0x20});
  device.say(ASKS);
  EXPECT_TRUE(hears(device, ACKNOWLEDGE));
  device.say({0x1C, 0x20, 0x30, 0x40});
  EXPECT_TRUE(hears(device, STATUS));

  watchdog_reset();
  EXPECT_EQ(device.count("discard"), 1) << "the read that was under way";
  EXPECT_EQ(open_nodes(), 0);
}

TEST_F(Libusb, BusyPipeTakesNoSecondWord) {
  EmulatedDevice& device = plug(4);
  device.hold_writes(true);
  watchdog_boot();
  EXPECT_EQ(watchdog_send_word(WATCHDOG_WORD_LONG), WATCHDOG_NOTHING);
  EXPECT_EQ(device.heard(), std::vector<Bytes>{ACKNOWLEDGE});
  device.hold_writes(false);
  for (int i = 0; i < 500 && watchdog_send_word(WATCHDOG_WORD_LONG) != WATCHDOG_OK; ++i) {
    clock_sleep_ms(1);
  }
  EXPECT_EQ(device.heard(), std::vector<Bytes>{FOOD});
}

TEST_F(Libusb, ReconnectsAfterUnplugging) {
  plug(5);
  watchdog_boot();
  tick(1);
  pull(5);
  for (int i = 0; i < 100; ++i) tick(20'002);
  EXPECT_EQ(watchdog_send_word(WATCHDOG_WORD_LONG), WATCHDOG_NOTHING);
  tick(40'003);
  tick(40'020);
  EXPECT_EQ(watchdog_send_word(WATCHDOG_WORD_LONG), WATCHDOG_NOTHING) << "nothing is plugged in";
  EXPECT_EQ(open_nodes(), 0);
  EmulatedDevice& again = plug(6);
  std::vector<Bytes> heard;
  for (int i = 0; i < 100 && heard.empty(); ++i) {  // the system's message takes its time
    clock_sleep_ms(20);
    watchdog_feed.next_time = now_ms();
    tick(now_ms() + 1);
    heard = again.heard();
  }
  EXPECT_EQ(heard, std::vector<Bytes>{STATUS});
}

TEST_F(Libusb, StalledReadResetsTheDevice) {
  EmulatedDevice& device = plug(7);
  watchdog_boot();
  EXPECT_TRUE(hears(device, ACKNOWLEDGE));
  watchdog_feed.next_time = 1000;
  device.fail_read(EPIPE);
  for (int i = 0; i < 500 && device.count("reset") == 0; ++i) {
    watchdog_heartbeat();
    clock_sleep_ms(1);
  }
  EXPECT_EQ(device.count("reset"), 1) << device.requests();
  device.say(ASKS);
  EXPECT_TRUE(hears(device, ACKNOWLEDGE));
  EXPECT_EQ(device.count("reset"), 1);
}

TEST_F(Libusb, DeviceClaimedByAnotherProgramIsLeftAlone) {
  plug(8).hold_interface();
  watchdog_boot();
  EXPECT_EQ(watchdog_send_word(WATCHDOG_WORD_LONG), WATCHDOG_NOTHING);
}

}  // namespace
