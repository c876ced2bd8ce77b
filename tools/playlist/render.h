#pragma once

#include <string>
#include <vector>

struct RenderRequest {
  std::string name;
  double at_s = 0;  // when it starts
};

struct RenderOptions {
  std::string script;
  std::vector<RenderRequest> requests;
  double for_s = 10;
  std::string output;
};

// Plays playlists of a file and writes the result as a wave file of 16-bit stereo at 44100 Hz,
// faster than real time. False, after a message, on failure.
bool render_playlists(const RenderOptions& options);
