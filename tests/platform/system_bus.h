// A system bus of the test's own, with a login manager on it that answers as it is told.
#pragma once

#include <atomic>
#include <string>
#include <thread>

#include "tests/temp_folder.h"

class SystemBus {
 public:
  SystemBus();  // DBUS_SYSTEM_BUS_ADDRESS leads to it
  ~SystemBus();
  SystemBus(const SystemBus&) = delete;
  SystemBus& operator=(const SystemBus&) = delete;

  std::string error;           // the answer to Reboot, "" for yes; set it before the question
  std::atomic<int> asked = 0;  // calls of Reboot
  std::atomic<bool> interactive = false;  // what the last one asked for

 private:
  void serve();

  TempFolder folder;
  int listener = -1;
  std::atomic<bool> ends = false;
  std::thread server;
};
