// Animated PNG files.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "art/picture.h"

namespace art {

// Writes frames of one size as they come, each for its time. After `finish` the file is complete;
// it plays for ever. One thread.
class AnimationWriter {
 public:
  // `frames` is the number of frames that will follow.
  AnimationWriter(const std::string& path, int width, int height, int frames);
  ~AnimationWriter();
  AnimationWriter(const AnimationWriter&) = delete;
  AnimationWriter& operator=(const AnimationWriter&) = delete;

  void add(const Picture& picture, int ms);
  // False if the file could not be written, or if the number of frames was wrong.
  bool finish();

 private:
  void chunk(const char* tag, const std::vector<uint8_t>& data);

  FILE* file_;
  int width_, height_, left_;
  uint32_t sequence_ = 0;
  bool good_;
};

}  // namespace art
