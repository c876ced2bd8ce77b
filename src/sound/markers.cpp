#include "sound/markers.h"

namespace {

constexpr float MARKER_LIFE_S = 2.0F;

struct Marker {
  std::uint8_t set;
  float time_s;
};

struct Markers {
  Marker rows[JPS_MARKERS];
  // Counts of all numbers ever put in and taken out; a row is a count modulo the ring's size.
  std::uint16_t signals[JPS_SIGNALS];
  std::uint32_t head, tail;
};

constinit Markers markers{};

bool has_row(int number) {
  return number >= 0 && number < JPS_MARKERS;
}

}  // namespace

void jps_marker_set(int number, float now_s) {
  if (has_row(number)) markers.rows[number] = {1, now_s};
}

bool jps_marker_test(int number, float now_s) {
  if (!has_row(number)) return false;
  Marker& marker = markers.rows[number];
  if (marker.time_s != 0 && now_s - marker.time_s > MARKER_LIFE_S) {
    marker.set = 0;
    return false;
  }
  const bool set = marker.set != 0;
  marker = {};
  return set;
}

void jps_signal_post(std::uint16_t number) {
  if (markers.head - markers.tail == JPS_SIGNALS) ++markers.tail;
  markers.signals[markers.head++ % JPS_SIGNALS] = number;
}

bool jps_signal_take(std::uint16_t& number) {
  if (markers.head == markers.tail) return false;
  number = markers.signals[markers.tail++ % JPS_SIGNALS];
  return true;
}

void jps_markers_reset() {
  markers = {};
}
