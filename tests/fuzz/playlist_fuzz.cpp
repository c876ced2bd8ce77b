// Any bytes as a playlist file: it is parsed, and its playlists are played for a while.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/files.h"
#include "platform/headless/clock_control.h"
#include "platform/headless/sound_capture.h"
#include "sound/bank.h"
#include "sound/driver.h"
#include "sound/player.h"
#include "sound/playlist_parser.h"
#include "tests/playlist/waves.h"
#include "tests/temp_folder.h"

namespace {

constexpr int STEPS = 40;
constexpr int STEP_MS = 53;
constexpr std::uint32_t PLAYLISTS = 8;

const TempFolder& folder() {
  static const TempFolder made;
  return made;
}

void play_all(const JpsBank& bank) {
  std::int16_t samples[2 * 441];
  const std::uint32_t count = std::min(bank.playlist_count, PLAYLISTS);
  for (int step = 0; step < STEPS; ++step) {
    if (step % 16 == 0) {
      for (std::uint32_t i = 0; i < count; ++i) jps_bank_play(bank, bank.playlists[i].number);
    }
    sound_capture_render(441, samples, jpsdrvr_transition);
    headless_clock_advance(STEP_MS);
    jps_update_all();
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  files_use_roots(folder().path(), folder().path());
  folder().write("a.wav", flat_wave(0.1, 1000));
  folder().write("b.wav", flat_wave(1, 1000, 22050));
  return jpsdrvr_init();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  folder().write("pls.txt", std::string(reinterpret_cast<const char*>(data), size));
  headless_clock_set(1000);
  jps_players_reset();
  JpsBank* const bank = playlist_parse("pls.txt");
  if (bank != nullptr) play_all(*bank);
  jps_bank_free(bank);
  return 0;
}
