// The playlist sound system for game code.
#pragma once

#include <cstdint>

// Starts a playlist of a loaded bank; its commands at time 0 have run when this returns. Returns
// the mask of the driver's tracks that it took; 0 if there is no such bank or name, or no free
// player or track. Only the low 8 bits of `volume` count. Never waits for the mixing. Any thread.
std::uint32_t jps_bank_play_name(const char* bank, const char* name, int volume = 255);
// The same in the game's bank.
std::uint32_t jps_bank_play_name(const char* name);

// Multiplies the frequency of each of the 16 tracks in the mask, unless the result is outside 100
// to 100000 Hz.
void sound_pitch_scale(std::uint32_t tracks, double factor);

// Pan of all 16 tracks, -10000 (left only) to 10000 (right only), in hundredths of a decibel of the
// quieter side.
void jps_set_pan_all(int pan);

// Stops everything that plays.
void jps_stop_all();

// Master volume, limited to 0 to 255.
void jps_set_master_volume(int volume);

// Starts the sound. 0, or -1 after a message: the game then runs in silence.
int jps_init();
// False if one of its threads doesn't end: what that thread uses is then left alone.
bool jps_shutdown();

// Loads the bank of playlists. False if there is none.
bool jps_bank_load(const char* name);
