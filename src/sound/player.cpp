#include "sound/player.h"

#include <algorithm>
#include <iterator>

#include "platform/clock.h"
#include "sound/complaints.h"
#include "sound/jps.h"
#include "sound/markers.h"
#include "sound/player_steps.h"

namespace {

constexpr int COMMANDS_PER_UPDATE = 100;

struct Players {
  JpsPlayer rows[JPS_PLAYERS];
};

constinit Players players{};

const JpsCommand& command_at(const JpsPlayer& player) {
  return player.playlist->first_command[player.pc];
}

bool past_the_end(const JpsPlayer& player) {
  return player.pc >= player.playlist->command_count;
}

// Checks the marker that an armed command waits for. If it is set, the command runs, and the
// command that would have been next is skipped, unless it is END: skipping END would cut off the
// sound of an armed PLAY. The command after that is due at once.
void run_armed(JpsPlayer& player, float& t) {
  const std::uint32_t next = player.pc;
  const bool at_end = command_at(player).opcode == JPS_END;
  if (!jps_player_exec(*player.armed_command, player, t)) {
    --player.pc;
    return;
  }
  if (player.playlist == nullptr) return;
  if (at_end && player.pc == next + 1) player.pc = next;
  if (!past_the_end(player)) t = command_at(player).time;
}

// Runs the commands that are due. The limit stops a script that jumps without letting time pass
// from blocking the lock.
void run_due(JpsPlayer& player, float t) {
  for (int i = 0; i < COMMANDS_PER_UPDATE; ++i) {
    jps_player_exec(command_at(player), player, t);
    if (player.playlist == nullptr) return;
    if (past_the_end(player)) {
      jps_complain("jps_player_update(): ERROR! Premature end of playlist encountered\n");
      jps_player_stop(player);
      return;
    }
    // END looks at the tracks only once an update, and not before the sounds have started.
    if (command_at(player).opcode == JPS_END || t < command_at(player).time) return;
  }
}

}  // namespace

float jps_clock_s() {
  return static_cast<float>(clock_ms()) / 1000.0F;
}

void jps_player_stop(JpsPlayer& player) {
  player.playlist = nullptr;
  player.armed_command = nullptr;
  player.pc = 0;
  for (std::int32_t& track : player.tracks) {
    if (track < 0) continue;
    jpsdrvr_stop(track);
    jpsdrvr_track(track).owner = nullptr;
    track = -1;
  }
}

void jps_player_update(JpsPlayer& player, float t) {
  if (player.playlist == nullptr) return;
  jps_ramps_run(player, t);
  if (player.playlist->tracks_needed > 0 && !jps_player_has_tracks(player)) {
    jps_player_stop(player);
    return;
  }
  if (past_the_end(player)) {
    jps_complain("jps_player_update(): ERROR! Exceeded end of list\n");
    jps_player_stop(player);
    return;
  }
  if (player.armed_command != nullptr) {
    run_armed(player, t);
    if (player.playlist == nullptr) return;
    if (past_the_end(player)) {
      jps_complain("jps_player_update(): ERROR! Premature end of playlist encountered\n");
      jps_player_stop(player);
      return;
    }
  }
  if (command_at(player).time > t) return;
  run_due(player, t);
}

std::uint32_t jps_bank_play_name(const char* bank_name, const char* name, int volume) {
  const SoundLock lock;
  const JpsBank* const bank = jps_bank_find(bank_name);
  if (bank == nullptr) {
    jps_complain("jps_bank_play_name(): ERROR! Bank '%s' not loaded\n", bank_name);
    return 0;
  }
  const JpsPlaylist* const playlist = jps_find_playlist(*bank, jps_key(name));
  return playlist == nullptr ? 0 : jps_bank_play(*bank, playlist->number, volume);
}

std::uint32_t jps_bank_play(const JpsBank& bank, std::int32_t number, int volume) {
  const SoundLock lock;
  const JpsPlaylist* const playlist = jps_find_playlist(bank, number);
  if (playlist == nullptr) return 0;
  const auto free = std::ranges::find(players.rows, nullptr, &JpsPlayer::playlist);
  if (free == std::end(players.rows)) return 0;
  JpsPlayer& player = *free;
  player = {};
  std::ranges::fill(player.tracks, -1);
  player.playlist = playlist;
  player.volume = static_cast<std::uint32_t>(volume) & 0xFF;
  player.priority = playlist->priority;
  player.start_time = jps_clock_s();
  const std::uint32_t taken = jps_allocate_tracks(player);
  if (taken == 0 && playlist->tracks_needed > 0) {
    player.playlist = nullptr;
    return 0;
  }
  jps_player_update(player, 0);
  return taken;
}

void jps_update_all() {
  const SoundLock lock;
  const float now_s = jps_clock_s();
  for (JpsPlayer& player : players.rows) jps_player_update(player, now_s - player.start_time);
}

void jps_stop_all_players() {
  const SoundLock lock;
  for (JpsPlayer& player : players.rows) {
    if (player.playlist != nullptr) jps_player_stop(player);
  }
  jps_markers_reset();
}

void jps_players_reset() {
  const SoundLock lock;
  players = {};
  jps_markers_reset();
  jps_complaints_reset();
}

int jps_players_running() {
  const SoundLock lock;
  return static_cast<int>(std::ranges::count_if(
      players.rows, [](const JpsPlayer& p) { return p.playlist != nullptr; }));
}
