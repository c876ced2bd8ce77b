// The game's sound on a host: any file can be opened, nothing is heard, and the clock is set by
// hand.
#pragma once

#include <string>

struct JpsBank;

class SoundStage {
 public:
  SoundStage();
  ~SoundStage();
  SoundStage(const SoundStage&) = delete;
  SoundStage& operator=(const SoundStage&) = delete;

  // Parses a file of the host and prints its errors. Null, after a line on standard error, if it
  // can't be read.
  JpsBank* parse(const std::string& file);

  int messages = 0;  // of the last parsed file
};
