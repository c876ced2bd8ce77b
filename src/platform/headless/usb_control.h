// The USB driver that a test installs; null: the machine has none.
#pragma once

class UsbDriver;

inline UsbDriver* headless_usb_driver = nullptr;
