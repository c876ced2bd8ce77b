// Volume in attract and in play, the glide between the two, and the change of music, beside their
// model: hours at random, and every word compared after each step.
#include "presentation/volume.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <filesystem>

#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/tick_timers.h"
#include "presentation/win_show.h"
#include "presentation/win_show_start.h"
#include "tests/fakes/jps_fake.h"
#include "tests/presentation/lockstep.h"

namespace {

class VolumeLockstep : public Lockstep {
 protected:
  static int curve(int step) {
    return step <= 5 ? 25 * step : step <= 10 ? 12 * step + 65 : 7 * step + 115;
  }
  static int held(int step) { return std::clamp(step, 0, 20); }

  void begin() {
    model_store(8);
    value = curve(8);
    cues.emplace_back("bgm");
    music_at = now_ms() + 180000;
  }
  void model_store(int new_step) {
    step = level[attract] = new_step;
    stored = true;
  }
  void switch_over() {
    const auto& t = tick_timers;
    const bool show = win_show_active(SIDE_LEFT) || win_show_active(SIDE_RIGHT);
    const bool quiet = t.no_money_ms > 15000 && t.idle_both_ms > 15000;
    const bool over = attract ? show || t.idle_both_ms == 0 || t.no_money_ms == 0 : quiet && !show;
    if (!over) return;
    attract = !attract;
    switched = now_ms();
    if (!attract) return;
    for (std::int64_t& at : demo_at) {
      at = now_ms() + 7500 + static_cast<std::int64_t>(7500 * random_unit());
    }
  }
  void model_step() {
    switch_over();
    const float t = static_cast<float>(now_ms() - switched) / (attract ? 4000.0F : 1000.0F);
    if (t > 1 && level[attract] != step) model_store(held(level[attract]));
    const auto end = [&](bool row) { return static_cast<float>(curve(held(level[row]))); };
    const int glided = static_cast<int>(glide(end(!attract), end(attract), t));
    value = t > 1 ? curve(step) : attract ? std::min(value, glided) : std::max(value, glided);
    if (now_ms() <= music_at) return;
    const bool plays = attract && tick_timers.idle_both_ms > 15000;
    if (plays) cues.emplace_back("nextbgm");
    music_at = now_ms() + (plays ? 180000 : 30000);
  }
  void model_button(int by) {
    if (value != curve(step)) return;
    model_store(held(step + by));
    value = curve(step);
    shown_until = now_ms() + 1000;
  }

  // Money, frogs, a show, or settings from a damaged file.
  void change() {
    const auto some_ms = [this] { return one_of<std::int64_t>({0, 1, 15000, 15001, 20000}); };
    tick_timers.idle_both_ms = once_in(3) ? 20000 : some_ms();
    tick_timers.no_money_ms = once_in(2) ? 20000 : some_ms();
    if (once_in(20)) win_show_start(die(SIDE_COUNT), 10);
    if (once_in(5)) win_show_reset();
    played.clear();
    next_vox = tick_timers.next_vox_ms;
    if (!once_in(10)) return;
    const bool row = once_in(2);
    level[row] = one_of<int>({INT_MIN, -1, 0, 3, 8, 12, 16, 20, 99, INT_MAX});
    set_pref(row ? PREF_ATTRACT_VOLUME : PREF_VOLUME, level[row]);
  }
  void compare() {
    const auto& t = tick_timers;
    ASSERT_EQ((std::array<std::int64_t, 7>{attract_flag, volume_step, volume_value,
                                           pref_int(PREF_VOLUME), pref_int(PREF_ATTRACT_VOLUME),
                                           t.volume_overlay_until, t.next_music_check_ms}),
              (std::array<std::int64_t, 7>{attract, step, value, level[0], level[1], shown_until,
                                           music_at}));
    ASSERT_EQ(jps_fake.master_volume, value);
    ASSERT_EQ((std::array{t.attract_demo_next[0].get(), t.attract_demo_next[1].get()}), demo_at);
    ASSERT_EQ(drive.has("prefs"), stored);
    std::filesystem::remove(drive.file("prefs"));
    stored = false;
  }

  bool attract = true, stored = false;
  int step = 0, value = 0, level[2] = {16, 8};  // of play, of attract
  std::int64_t switched = now_ms(), music_at = 0, shown_until = 0;
  std::array<std::int64_t, 2> demo_at{};
};

TEST_F(VolumeLockstep, LevelsAndMusicFollowTheirModel) {
  both(attract_begin, [this] { begin(); });
  ASSERT_NO_FATAL_FAILURE(compare());
  for (int i = 0; i < 1000; ++i) {
    game_clock.now_ms += one_of<int>({1, 17, 17, 250, 500, 1000});
    if (once_in(200)) game_clock.now_ms = std::max(now_ms(), music_at);
    if (once_in(8)) change();
    both(attract_volume_step, [this] { model_step(); });
    ASSERT_NO_FATAL_FAILURE(compare()) << "step " << i;
    if (!once_in(8)) continue;
    const int by = attract == once_in(4) ? 1 : -1;
    both([by] { volume_button(by); }, [&] { model_button(by); });
    ASSERT_NO_FATAL_FAILURE(compare()) << "button, step " << i;
  }
}

}  // namespace
