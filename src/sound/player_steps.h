// The parts of the player. Hold the sound lock for all of them.
#pragma once

#include <cstdint>

#include "sound/player.h"

// The clock in seconds, as players and markers use it.
float jps_clock_s();

// Runs a player up to its time `t` in seconds.
void jps_player_update(JpsPlayer& player, float t);

// Ends a player and silences its tracks.
void jps_player_stop(JpsPlayer& player);

// Runs a command for the player, if its condition allows, and steps `pc`. A jump moves `t`. False
// if the marker that the command needs isn't set.
bool jps_player_exec(const JpsCommand& command, JpsPlayer& player, float& t);

// Takes the tracks that the player's playlist needs, if necessary from players of lower or, last,
// equal priority. Returns the mask of tracks taken; 0 if there are none for it.
std::uint32_t jps_allocate_tracks(JpsPlayer& player);

// Whether the player still owns any of its tracks.
bool jps_player_has_tracks(const JpsPlayer& player);

// Begins a ramp of a driver track from its present volume. False if no ramp is free.
bool jps_ramp_add(JpsPlayer& player, int track, int end_volume, float seconds);
// Sets the volumes of all ramps to their values at time `t`.
void jps_ramps_run(JpsPlayer& player, float t);
// Ends the ramps of a driver track.
void jps_ramps_drop(JpsPlayer& player, int track);

// A random sound of the group, by weight, that is none of the latest picks; null if there is none.
JpsSound* jps_group_pick(JpsGroup& group);
