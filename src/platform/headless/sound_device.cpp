#include "platform/sound_device.h"

#include <algorithm>
#include <cstdint>

#include "platform/headless/sound_capture.h"

namespace {

struct Capture {
  SoundRender render = nullptr;
  bool unplugged = false;
};

constinit Capture state;

}  // namespace

bool sound_device_open(SoundRender render) {
  if (state.unplugged) return false;
  state.render = render;
  return true;
}

void sound_device_close() {
  state.render = nullptr;
}

void sound_capture_render(int frames, std::int16_t* out, void (*after_block)()) {
  while (frames > 0) {
    const int block = std::min(frames, SOUND_CAPTURE_BLOCK);
    if (state.render != nullptr) {
      state.render(out, block);
    } else {
      std::fill_n(out, block * 2, std::int16_t{0});
    }
    if (after_block != nullptr) after_block();
    out += block * 2;
    frames -= block;
  }
}

void sound_capture_plug(bool plugged) {
  state.unplugged = !plugged;
}

bool sound_capture_is_open() {
  return state.render != nullptr;
}
