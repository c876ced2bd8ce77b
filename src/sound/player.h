// Runs the playlists of the banks, up to 32 at a time, on the driver's 16 tracks.
#pragma once

#include <cstdint>

#include "sound/bank.h"

constexpr int JPS_PLAYERS = 32;
constexpr int JPS_RAMPS = 10;
constexpr int JPS_LOOPS = 16;

// A volume that changes from one value to another.
struct JpsRamp {
  std::uint32_t active;
  float start_time, end_time;  // of the player
  std::int32_t start_volume, end_volume;
  std::uint16_t track;  // of the driver
};

// A slot is free while `remaining` is 0; -1 never becomes 0.
struct JpsLoop {
  std::uint32_t start_pc;
  std::int32_t remaining;
};

struct JpsPlayer {
  const JpsCommand* armed_command;  // an ONSMARKER command waiting for its marker
  const JpsPlaylist* playlist;      // null: this player is free
  float start_time;                 // the clock at time 0; loops and jumps change it
  std::uint32_t pc;                 // next command of the playlist
  std::int32_t tracks[JPS_TRACKS];  // logical track to driver track, or -1
  std::uint16_t priority;
  JpsRamp ramps[JPS_RAMPS];
  JpsLoop loops[JPS_LOOPS];
  std::uint32_t volume;  // requested at the start, 0 to 255
};

// Like jps_bank_play_name (sound/jps.h), but by the playlist's number in a bank, registered or not.
std::uint32_t jps_bank_play(const JpsBank& bank, std::int32_t number, int volume = 255);

// Steps all players to the clock's present time. Any thread.
void jps_update_all();

// Ends all players, silences their tracks, and clears all markers and signals.
void jps_stop_all_players();

// Clears all players, markers and signals, whatever the driver plays. For start-up.
void jps_players_reset();

// How many players are running.
int jps_players_running();
