#include "platform/sound_device.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "platform/environment.h"
#include "platform/sound_backends.h"

bool sound_device_open(SoundRender render) {
  if (environment.sound == SOUND_SDL) {
    std::string error;
    if (sound_sdl_open(render, error)) return true;
    std::fprintf(stderr, "There is no sound device (%s): the sound runs unheard.\n", error.c_str());
  }
  return sound_clock_open(render, environment.sound_socket);
}

void sound_device_close() {
  sound_sdl_close();
  sound_clock_close();
}
