// Picks the next sound of a group.
#include <algorithm>
#include <cstdint>
#include <span>

#include "platform/random.h"  // random_unit
#include "sound/player_steps.h"

namespace {

// A random sound by weight; the number of sounds if rounding goes past all of them.
std::uint32_t draw(const JpsGroup& group) {
  const auto chance = static_cast<float>(random_unit());
  float sum = 0;
  for (std::uint32_t i = 0; i < group.sound_count; ++i) {
    sum += group.sounds[i].weight;
    if (sum >= chance) return i;
  }
  return group.sound_count;
}

}  // namespace

JpsSound* jps_group_pick(JpsGroup& group) {
  const std::uint32_t drawn = draw(group);
  if (drawn == group.sound_count) return nullptr;
  const std::span<std::uint32_t> barred(group.recent, group.no_repeat);
  for (std::uint32_t step = 0; step < group.sound_count; ++step) {
    const std::uint32_t pick = (drawn + step) % group.sound_count;
    if (std::ranges::find(barred, pick) != barred.end()) continue;
    std::shift_right(std::begin(group.recent), std::end(group.recent), 1);
    group.recent[0] = pick;
    return group.sounds[pick].sound;
  }
  return nullptr;
}
