#include "sound/jps.h"

#include <cmath>
#include <cstdio>
#include <memory>

#include "platform/clock.h"
#include "platform/thread.h"
#include "sound/complaints.h"
#include "sound/driver.h"
#include "sound/player.h"
#include "sound/playlist_parser.h"

namespace {

constexpr const char* GAME_BANK = R"(sounds\mainpls.txt)";
constexpr int TIMER_STOP_BOUND_MS = 1000;

struct Jps {
  std::shared_ptr<Thread> timer;
};

Jps& jps() {
  static Jps instance;
  return instance;
}

void run_timer(const Thread& self, void* /*context*/) {
  while (!thread_stop_requested(self)) {
    jps_update_all();
    jps_complaints_print();
    clock_sleep_ms(1);
  }
}

}  // namespace

int jps_init() {
  jps_players_reset();
  if (jpsdrvr_init() != 0) {
    std::puts("jps_init(): ERROR! Could not init sound hardware!");
    return -1;
  }
  jps().timer = thread_start("sound timer", THREAD_PRIORITY_NORMAL, run_timer, nullptr);
  jps_complaints_have_a_thread(jps().timer != nullptr);
  if (jps().timer == nullptr) {
    std::puts("ERROR! Couldn't create timer thread... playlister may not play sounds correctly");
  }
  return 0;
}

bool jps_shutdown() {
  if (jps().timer != nullptr) {
    thread_request_stop(*jps().timer);
    if (!thread_join(*jps().timer, TIMER_STOP_BOUND_MS)) return false;
    jps().timer = nullptr;
  }
  jps_complaints_have_a_thread(false);
  jps_banks_free();
  return jpsdrvr_shutdown();
}

bool jps_bank_load(const char* name) {
  return playlist_parse(name) != nullptr;
}

std::uint32_t jps_bank_play_name(const char* name) {
  const SoundLock lock;
  // A game without sounds reported that at its start.
  return jps_bank_find(GAME_BANK) == nullptr ? 0 : jps_bank_play_name(GAME_BANK, name);
}

void jps_stop_all() {
  jps_stop_all_players();
}

void jps_set_master_volume(int volume) {
  jpsdrvr_set_master_volume(volume);
}

void sound_pitch_scale(std::uint32_t tracks, double factor) {
  const SoundLock lock;
  for (int track = 0; track < JPS_TRACKS; ++track) {
    if ((tracks >> track & 1) == 0) continue;
    const double hz = jpsdrvr_get_frequency(track) * factor;
    if (hz >= 100 && hz <= 100000) jpsdrvr_set_frequency(track, static_cast<int>(std::lround(hz)));
  }
}

void jps_set_pan_all(int pan) {
  for (int track = 0; track < JPS_TRACKS; ++track) jpsdrvr_set_pan(track, pan);
}
