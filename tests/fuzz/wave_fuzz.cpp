// Any bytes as a wave file: it is loaded whole and as a stream, and both are played.
#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/files.h"
#include "platform/headless/sound_capture.h"
#include "sound/bank.h"
#include "sound/bank_sounds.h"
#include "sound/driver.h"
#include "tests/temp_folder.h"

namespace {

constexpr int FRAMES = 4000;

const TempFolder& folder() {
  static const TempFolder made;
  return made;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  files_use_roots(folder().path(), folder().path());
  return jpsdrvr_init();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  folder().write("a.wav", std::string(reinterpret_cast<const char*>(data), size));
  JpsBank* const bank = jps_bank_alloc(0, 0, 2, 0, 0);
  JpsSound* const whole = jps_parse_addsound("", "a.wav", *bank, STREAM_NEVER);
  JpsSound* const stream = jps_parse_addsound("./", ".\\a.wav", *bank, STREAM_ALWAYS);
  if (whole != nullptr) {
    whole->loop = 1;
    jpsdrvr_play(whole, 0);
  }
  if (stream != nullptr) jpsdrvr_play(stream, 1);
  static std::int16_t samples[2 * FRAMES];
  sound_capture_render(FRAMES, samples, jpsdrvr_transition);
  jps_bank_free(bank);
  return 0;
}
