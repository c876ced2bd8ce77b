// The playlist sound system as game code sees it.
#pragma once

#include <cstdint>

// Starts a playlist of a loaded bank; its commands at time 0 have run when this returns. The answer
// is the mask of the driver's tracks that it took, 0 if there is no such bank or name, no free
// player or no track to be had. Of `volume` the low 8 bits count. Never waits for the mixing. Any
// thread.
std::uint32_t jps_bank_play_name(const char* bank, const char* name, int volume = 255);
// The same in the game's bank.
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

// Brings sound up. 0, or -1 after a message: the game then runs in silence.
int jps_init();
// False if one of its threads doesn't end: what that thread uses is then left alone.
bool jps_shutdown();

// Loads the bank of playlists. False if there is none.
bool jps_bank_load(const char* name);
