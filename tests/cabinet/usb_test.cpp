// The virtual cabinet's USB watchdog. What the end-to-end scripts see of it isn't tested here.
#include <gtest/gtest.h>

#include <string>

#include "cabinet/usb_watchdog.h"

namespace {

const std::string FOOD_60 = "\x1B\x20\x33\x4C", FOOD_8 = "\x1B\x20\x30\x48";

TEST(UsbWatchdog, MalformedBytesAreCounted) {
  UsbWatchdog device;
  usb_watchdog_receive(device, "\x1B\x20", 0);
  usb_watchdog_receive(device, "\x33\x4C", 0);
  EXPECT_EQ(device.malformed, 0) << "a word in two packets";
  usb_watchdog_receive(device, "\x20" + FOOD_60 + "\x1B\x20" + FOOD_60 + "\x1B\x30", 0);
  EXPECT_EQ(device.malformed, 1 + 2 + 2);
  EXPECT_EQ(device.words, 3);
}

TEST(UsbWatchdog, PulledDeviceForgetsItsState) {
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
  EXPECT_EQ(device.to_host, "") << "not before it is configured";
}

}  // namespace
