// What the headless display was asked to do, for tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/display.h"

struct HeadlessDisplay {
  DisplaySize window{0, 0};
  bool fullscreen = false;
  std::vector<DisplaySize> modes_asked;
  std::vector<DisplayModeResult> mode_results;  // returned in this order; then OK
  bool answer_yes = false;                      // to a question box
  bool can_ask = true;                          // somebody is there to answer it
  std::string context_error;                    // empty: the window gets a context
  int projection[4]{};                          // left, top, width, height
  std::uint64_t frames = 0;                     // begun
  std::uint64_t quads = 0;                      // drawn
  std::uint32_t textures = 0;
  std::vector<std::uint8_t> rgba;  // of the last texture in that format
  bool unscaled = true;            // the window has the size of the layout
  bool quit = false;               // the window is closed, or Esc is typed
  bool record = false;             // keep the quads themselves
  std::vector<DisplayQuad> recorded;
  std::vector<std::string> boxes;  // "title: text" of each message box
};

extern HeadlessDisplay headless_display;
