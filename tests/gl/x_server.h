// An X server of its own on a virtual screen, without a window manager.
#pragma once

#include <sys/types.h>

#include <string>

#include "platform/display.h"

class XServer {
 public:
  // Is ready when it returns, or `name` is empty. With GL, or with "-extension" without.
  explicit XServer(DisplaySize size, const char* gl = "+extension");
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  [[nodiscard]] const std::string& name() const { return display; }  // for DISPLAY

 private:
  pid_t process = -1;
  std::string display;
};
