// The table of all sounds: name, kind and function of each. Each family of sounds is a source file
// that ends with its own rows.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "art/sound/master.h"

namespace art::sound {

// Makes the sound at any level. Any thread; always the same samples.
using Make = Wave (*)(int variant);

struct Row {
  const char* name;  // of the file, without ".wav"
  Kind kind;
  bool loop;  // its end leads into its start
  Make make;
  int variant = 0;  // for functions that make several sounds
};

struct Family {
  const char* source;  // from the project's root; its sounds are out of date when it changes
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

// The sound as it is written to its file.
Wave catalogue_render(const Row& row);

}  // namespace art::sound
