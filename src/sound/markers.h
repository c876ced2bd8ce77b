// Markers, by which playlists signal each other, and the ring of signals. Hold the sound lock.
#pragma once

#include <cstdint>

constexpr int JPS_MARKERS = 2048;
constexpr int JPS_SIGNALS = 1024;

// Sets marker `number`, 0 to 2047, at the clock's time `now_s`.
void jps_marker_set(int number, float now_s);

// Whether the marker is set; it is cleared by this. A marker that was set more than two seconds ago
// no longer counts. False for a number out of range.
bool jps_marker_test(int number, float now_s);

// Puts a number into the ring. If it is full, the oldest number is lost.
void jps_signal_post(std::uint16_t number);

// Takes the oldest number out of the ring. False if it is empty.
bool jps_signal_take(std::uint16_t& number);

// Clears all markers and signals.
void jps_markers_reset();
