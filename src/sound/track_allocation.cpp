// Which playlist gets which of the driver's tracks.
#include <algorithm>
#include <cstdint>

#include "sound/player_steps.h"

namespace {

// Which tracks a playlist may take from others.
enum class Reach { FREE, BELOW, UP_TO_EQUAL };

bool may_take(const JpsTrack& track, std::uint16_t priority, Reach reach) {
  if (track.owner == nullptr) return true;
  switch (reach) {
    case Reach::FREE:
      return false;
    case Reach::BELOW:
      return track.priority < priority;
    case Reach::UP_TO_EQUAL:
      return track.priority <= priority;
  }
  return false;
}

bool allows(const JpsPlaylist& playlist, int first) {
  return (playlist.track_mask >> first & 1) != 0;
}

// The first track of the first run of adjacent tracks that may be taken; -1 if there is none. The
// mask only says where the run may begin.
int find_run(const JpsPlayer& player, Reach reach) {
  const JpsPlaylist& playlist = *player.playlist;
  const int length = static_cast<int>(playlist.tracks_needed);
  for (int first = 0; first + length <= JPS_TRACKS; ++first) {
    if (!allows(playlist, first)) continue;
    int fitting = 0;
    while (fitting < length && may_take(jpsdrvr_track(first + fitting), player.priority, reach)) {
      ++fitting;
    }
    if (fitting == length) return first;
  }
  return -1;
}

// Among the tracks of no higher priority, the one whose owner has played longest; -1 if none.
int find_oldest(const JpsPlayer& player) {
  int oldest = -1;
  for (int track = 0; track < JPS_TRACKS; ++track) {
    if (!allows(*player.playlist, track)) continue;
    const JpsTrack& row = jpsdrvr_track(track);
    if (!may_take(row, player.priority, Reach::UP_TO_EQUAL)) continue;
    if (oldest < 0 || row.owner->start_time < jpsdrvr_track(oldest).owner->start_time) {
      oldest = track;
    }
  }
  return oldest;
}

// Takes a track from its owner, who stops if it was the last. Its sound ends, and no ramp of the
// old owner continues.
void release(int track) {
  JpsPlayer* const owner = jpsdrvr_track(track).owner;
  if (owner == nullptr) return;
  std::ranges::replace(owner->tracks, track, -1);
  jpsdrvr_stop(track);
  jpsdrvr_track(track).owner = nullptr;
  jps_ramps_drop(*owner, track);
  if (!jps_player_has_tracks(*owner)) jps_player_stop(*owner);
}

}  // namespace

std::uint32_t jps_allocate_tracks(JpsPlayer& player) {
  const int needed = static_cast<int>(player.playlist->tracks_needed);
  if (needed == 0) return 0;
  int first = find_run(player, Reach::FREE);
  if (first < 0) first = find_run(player, Reach::BELOW);
  if (first < 0) first = needed == 1 ? find_oldest(player) : find_run(player, Reach::UP_TO_EQUAL);
  if (first < 0) return 0;
  std::uint32_t taken = 0;
  for (int i = 0; i < needed; ++i) {
    const int track = first + i;
    release(track);
    JpsTrack& row = jpsdrvr_track(track);
    row.owner = &player;
    row.priority = player.priority;
    player.tracks[i] = track;
    taken |= 1U << track;
  }
  return taken;
}

bool jps_player_has_tracks(const JpsPlayer& player) {
  return std::ranges::any_of(player.tracks, [&player](std::int32_t track) {
    return track >= 0 && jpsdrvr_track(track).owner == &player;
  });
}
