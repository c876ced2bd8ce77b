// The playlist sound system as game code sees it.
#pragma once

#include <cstdint>

// Plays a named playlist of the game's bank. Returns the mask of the tracks that took it, 0 with no
// bank loaded or no such name. Never waits. Any thread.
std::uint32_t jps_bank_play_name(const char* name);

// Multiplies the frequency of each of the 16 tracks in the mask, unless it would leave 100 to
// 100000 Hz.
void sound_pitch_scale(std::uint32_t tracks, double factor);

// Pan of all 16 tracks, -10000 (left alone) to 10000 (right alone), in hundredths of a decibel of
// the quieter side.
void jps_set_pan_all(int pan);

// Ends all that plays.
void jps_stop_all();

// Master volume, held to 0 to 255.
void jps_set_master_volume(int volume);

// Brings sound up, or returns false: the game then runs in silence.
bool jps_init();
void jps_shutdown();

// Loads the bank of playlists. False if there is none.
bool jps_bank_load(const char* name);
