// Gradual changes of volume.
#include <algorithm>
#include <cstdint>
#include <iterator>

#include "sound/player_steps.h"

bool jps_ramp_add(JpsPlayer& player, int track, int end_volume, float seconds) {
  const auto free = std::ranges::find(player.ramps, 0U, &JpsRamp::active);
  if (free == std::end(player.ramps)) return false;
  const float start_time = jps_clock_s() - player.start_time;
  *free = {1,
           start_time,
           start_time + seconds,
           jpsdrvr_track(track).volume,
           end_volume,
           static_cast<std::uint16_t>(track)};
  return true;
}

void jps_ramps_run(JpsPlayer& player, float t) {
  for (JpsRamp& ramp : player.ramps) {
    if (ramp.active == 0) continue;
    const float length = ramp.end_time - ramp.start_time;
    const float part = length > 0 ? std::clamp((t - ramp.start_time) / length, 0.0F, 1.0F) : 1.0F;
    const auto way = static_cast<float>(ramp.end_volume - ramp.start_volume);
    const float volume = static_cast<float>(ramp.start_volume) + part * way;
    jpsdrvr_set_volume(ramp.track, static_cast<int>(volume));
    if (part >= 1.0F) ramp.active = 0;
  }
}

void jps_ramps_drop(JpsPlayer& player, int track) {
  for (JpsRamp& ramp : player.ramps) {
    if (ramp.track == track) ramp.active = 0;
  }
}
