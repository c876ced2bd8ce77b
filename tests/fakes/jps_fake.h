// Stands in for the sound system at link time and remembers what it was asked to play.
#pragma once

#include <functional>
#include <string>
#include <vector>

struct JpsFake {
  std::vector<std::string> played;
  std::vector<double> pitches;
  int stops = 0;                                         // times that all sound was ended
  int pan = 0;                                           // of all tracks
  int master_volume = -1;                                // -1: never set
  std::function<void(const std::string& name)> on_play;  // called behind each sound asked for
};

extern JpsFake jps_fake;

void jps_fake_reset();
int jps_fake_count(const std::string& name);
