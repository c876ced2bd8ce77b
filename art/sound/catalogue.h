// The table of all sounds: what each is called, what kind it is and who makes it. Each family of
// sounds is a source file that ends with its own rows.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "art/sound/master.h"

namespace art::sound {

// Makes the sound at any level, from nothing. Any thread; the same samples each time.
using Make = Wave (*)(int variant);

struct Row {
  const char* name;  // of the file, without ".wav"
  Kind kind;
  bool loop;  // its end runs into its start
  Make make;
  int variant = 0;  // for makers of several sounds
};

struct Family {
  const char* source;  // from the project's root: what decides whether its sounds are up to date
  std::span<const Row> rows;
  double cost;  // of one sound, in seconds
};

extern const Family kCalypsoFamily, kStrutFamily, kFloatFamily, kBoogieFamily, kJackpotFamily,
    kChaseFamily, kFrogFamily, kRiverFamily, kCabinetFamily, kCrowdFamily, kToneFamily,
    kVoiceFamily;

std::span<const Family* const> families();

struct Entry {
  const Family* family;
  const Row* row;  // null: no such sound
};
Entry catalogue_find(std::string_view name);

// The sound as it goes into its file.
Wave catalogue_render(const Row& row);

}  // namespace art::sound
