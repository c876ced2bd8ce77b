// What the tests of models share: chances, the same step of the real thing and of the model, and
// all that is on the screen as lines of text.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/tick_timers.h"
#include "platform/random.h"
#include "playfield/playfield.h"
#include "presentation/win_show.h"
#include "tests/fakes/jps_fake.h"
#include "tests/presentation/stage.h"

using Lines = std::vector<std::string>;

// A picture, a cell of a sheet or a line of text: what it is, where, in which colour, and how large
// in 64ths, which no scale here lies halfway between.
inline std::string line(const std::string& what, int x, int y, std::uint32_t colour, int cell = 0,
                        float scale = 1, bool mirrored = false) {
  char rest[80];
  std::snprintf(rest, sizeof rest, " %d,%d %08X cell %d size %ld%s", x, y, colour, cell,
                std::lround(scale * 64), mirrored ? " mirrored" : "");
  return what + rest;
}

inline float glide(float from, float to, float t) {
  return t <= 0 ? from : t >= 1 ? to : from + t * (to - from);
}

inline std::uint32_t white(int alpha) {
  return static_cast<std::uint32_t>(alpha) << 24 | 0xFFFFFF;
}
inline std::uint32_t black(int alpha) {
  return static_cast<std::uint32_t>(alpha) << 24;
}

class Lockstep : public Stage {
 protected:
  Lockstep() {
    for (Frog& frog : stations[SIDE_RIGHT].frogs) frog.state = FROG_FREE;
    tick_timers.next_vox_ms = next_vox = now_ms();
    jps_fake.on_play = [this](const std::string& name) { played.push_back(name); };
  }
  ~Lockstep() override { win_show_reset(); }

  int die(int sides) { return static_cast<int>(dice() % static_cast<unsigned>(sides)); }
  bool once_in(int times) { return die(times) == 0; }
  template <typename T>
  T one_of(const std::vector<T>& values) {
    return values[dice() % values.size()];
  }

  // The same step of both, on the same chances; then what both played.
  template <typename Real, typename Model>
  void both(Real real, Model model) {
    const std::uint64_t seed = dice();
    random_seed(seed);
    real();
    const int next = random_15bit();
    random_seed(seed);
    model();
    ASSERT_EQ(random_15bit(), next) << "another number of chances drawn";
    ASSERT_EQ(played, cues);
    ASSERT_EQ(tick_timers.next_vox_ms, next_vox);
    played.clear();
    cues.clear();
  }
  bool may_speak() const { return now_ms() > next_vox; }
  void speak(const std::string& cue) {
    cues.push_back(cue);
    next_vox = now_ms() + static_cast<std::int64_t>(2500 + 2500 * random_unit());
  }

  static void set_pref(PrefIndex row, int value) { prefs[row].int_value = value; }

  // The model draws; what isn't seen is left out.
  void picture(const std::string& name, double x, double y, std::uint32_t colour = white(255),
               int cell = 0, float scale = 1, bool mirrored = false) {
    if (colour >> 24 == 0 || x >= 1360) return;
    mine.push_back(
        line(name, static_cast<int>(x), static_cast<int>(y), colour, cell, scale, mirrored));
  }
  // What the model has drawn since it was last asked.
  Lines model_lines() { return std::exchange(mine, {}); }

  // What is on the screen, in the order drawn.
  static Lines drawn(void (*draw)()) {
    Lines lines;
    for (const Drawn& d : seen(draw)) {
      if (d.x >= 1360) continue;
      lines.push_back(line(d.what, d.x, d.y, d.colour, d.cell, d.scale, d.mirrored));
    }
    return lines;
  }

  std::mt19937 dice;
  Lines played, cues, mine;
  std::int64_t next_vox = 0;
};
