#include "tests/fakes/jps_fake.h"

#include <algorithm>
#include <cstdint>
#include <mutex>

#include "sound/jps.h"

JpsFake jps_fake;

namespace {

std::mutex lock;  // sounds are asked for from several threads

}  // namespace

void jps_fake_reset() {
  const std::lock_guard guard(lock);
  jps_fake = {};
}

int jps_fake_count(const std::string& name) {
  const std::lock_guard guard(lock);
  return static_cast<int>(std::ranges::count(jps_fake.played, name));
}

std::uint32_t jps_bank_play_name(const char* name) {
  std::function<void(const std::string&)> on_play;
  {
    const std::lock_guard guard(lock);
    jps_fake.played.emplace_back(name);
    on_play = jps_fake.on_play;
  }
  if (on_play) on_play(name);
  return 1;
}

void sound_pitch_scale(std::uint32_t /*tracks*/, double factor) {
  const std::lock_guard guard(lock);
  jps_fake.pitches.push_back(factor);
}

void jps_set_pan_all(int pan) {
  const std::lock_guard guard(lock);
  jps_fake.pan = pan;
}
void jps_stop_all() {
  const std::lock_guard guard(lock);
  ++jps_fake.stops;
}
void jps_set_master_volume(int volume) {
  const std::lock_guard guard(lock);
  jps_fake.master_volume = volume;
}
int jps_init() {
  return 0;
}
bool jps_shutdown() {
  return true;
}
bool jps_bank_load(const char* /*name*/) {
  return true;
}
