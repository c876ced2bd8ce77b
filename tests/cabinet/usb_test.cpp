// The virtual cabinet's USB watchdog: its food, its bite, and what it says.
#include <gtest/gtest.h>

#include <string>

#include "cabinet/usb_watchdog.h"

namespace {

const std::string FOOD_60 = "\x1B\x20\x33\x4C", FOOD_8 = "\x1B\x20\x30\x48",
                  RESET_HEARD = "\x1C\x20\x38\x41", STATUS_RESET = "\x1C\x20\x30\x41";

TEST(UsbWatchdog, BitesWhenItsFoodIsOver) {
  UsbWatchdog device;
  usb_watchdog_advance(device, 1'000'000);
  EXPECT_EQ(device.bites, 0) << "it was never fed";
  usb_watchdog_receive(device, FOOD_60, 1'000'000);
  usb_watchdog_receive(device, FOOD_60, 1'020'000);
  usb_watchdog_advance(device, 1'079'999);
  EXPECT_EQ(device.bites, 0);
  usb_watchdog_receive(device, FOOD_8, 1'079'999);
  usb_watchdog_advance(device, 1'087'999);
  EXPECT_EQ(device.bites, 1);
  EXPECT_TRUE(device.bit);
  usb_watchdog_advance(device, 2'000'000);
  EXPECT_EQ(device.bites, 1) << "not again before it was fed";
  EXPECT_EQ(device.fed, 3);
}

TEST(UsbWatchdog, TellsOfAResetUntilItIsHeard) {
  UsbWatchdog device;
  device.reset_seen = true;
  usb_watchdog_advance(device, 1000);
  EXPECT_EQ(device.to_host, "") << "nobody has it open";
  usb_watchdog_configure(device);
  usb_watchdog_advance(device, 1000);
  usb_watchdog_advance(device, 9000);
  EXPECT_EQ(device.to_host, STATUS_RESET) << "once, while nobody reads it";
  device.to_host.clear();
  usb_watchdog_advance(device, 9001);
  EXPECT_EQ(device.to_host, STATUS_RESET);
  device.to_host.clear();
  usb_watchdog_receive(device, RESET_HEARD, 9002);
  usb_watchdog_advance(device, 60'000);
  EXPECT_EQ(device.to_host, "");
}

TEST(UsbWatchdog, CountsWhatMeansNothing) {
  UsbWatchdog device;
  usb_watchdog_receive(device, "\x1B\x20", 0);
  usb_watchdog_receive(device, "\x33\x4C", 0);
  EXPECT_EQ(device.malformed, 0) << "a word in two pieces is one";
  usb_watchdog_receive(device, "\x20" + FOOD_60 + "\x1B\x20" + FOOD_60 + "\x1B\x30", 0);
  EXPECT_EQ(device.malformed, 1 + 2 + 2);
  EXPECT_EQ(device.words, 3);
}

TEST(UsbWatchdog, PulledItForgets) {
  UsbWatchdog device;
  usb_watchdog_configure(device);
  usb_watchdog_receive(device, FOOD_8, 0);
  usb_watchdog_say(device, 0xD000);
  usb_watchdog_plug(device, false);
  EXPECT_EQ(device.to_host, "");
  usb_watchdog_advance(device, 100'000);
  EXPECT_EQ(device.bites, 0);
  usb_watchdog_plug(device, true);
  usb_watchdog_say(device, 0xD000);
  EXPECT_EQ(device.to_host, "") << "until a host has chosen its configuration";
}

}  // namespace
