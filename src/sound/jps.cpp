#include "sound/jps.h"

// The cabinet is silent: there is no bank, so every name goes unheard and no track is taken.
std::uint32_t jps_bank_play_name(const char* /*name*/) {
  return 0;
}
void sound_pitch_scale(std::uint32_t /*tracks*/, double /*factor*/) {}
void jps_set_pan_all(int /*pan*/) {}
void jps_stop_all() {}
void jps_set_master_volume(int /*volume*/) {}
bool jps_init() {
  return false;
}
void jps_shutdown() {}
bool jps_bank_load(const char* /*name*/) {
  return false;
}
