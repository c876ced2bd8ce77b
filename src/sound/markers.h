// Markers, by which one playlist tells another that it has come somewhere, and the ring of signals.
// Hold the sound lock.
#pragma once

#include <cstdint>

constexpr int JPS_MARKERS = 2048;
constexpr int JPS_SIGNALS = 1024;

// Puts marker `number`, 0 to 2047, up at the clock's time `now_s`.
void jps_marker_set(int number, float now_s);

// Whether the marker is up; it is down after that. One that has stood for more than two seconds
// dies unread. False for a number that has no row.
bool jps_marker_test(int number, float now_s);

// Puts a number into the ring. When it is full the oldest goes.
void jps_signal_post(std::uint16_t number);

// Takes the oldest number out of the ring. False if it is empty.
bool jps_signal_take(std::uint16_t& number);

// All markers down, no signals.
void jps_markers_reset();
