// An X display that goes away: its library reports that on the thread that talks to it, and then
// ends the process.
#include <X11/Xlib.h>

#include <cstdlib>
#include <utility>

#include "platform/display.h"

namespace {

using Ending = void (*)();
constinit Ending on_loss = nullptr;

int lost(Display* /*display*/) {
  if (const Ending end = std::exchange(on_loss, nullptr)) end();
  std::_Exit(1);
}

}  // namespace

void display_when_lost(void (*end)()) {
  on_loss = end;
  XSetIOErrorHandler(lost);
}
