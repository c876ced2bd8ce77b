#include "presentation/volume.h"

#include <algorithm>

#include "books/prefs.h"
#include "frame/game_clock.h"   // now_ms
#include "frame/tick_timers.h"  // idle_both_ms, no_money_ms, ...
#include "platform/random.h"    // random_unit
#include "playfield/cues.h"     // cue_play
#include "presentation/lerp.h"
#include "presentation/win_show_start.h"  // win_show_active
#include "sound/jps.h"

namespace {

constexpr std::int64_t ATTRACT_AFTER_MS = 15000;
constexpr std::int64_t RAMP_TO_ATTRACT_MS = 4000;  // soft slowly,
constexpr std::int64_t RAMP_TO_PLAY_MS = 1000;     // loud at once
constexpr std::int64_t MUSIC_EVERY_MS = 180000;
constexpr std::int64_t MUSIC_RETRY_MS = 30000;
constexpr std::int64_t OVERLAY_MS = 1000;

constinit std::int64_t switch_ms = 0;  // when the attract flag last changed

bool any_win_show() {
  return win_show_active(SIDE_LEFT) || win_show_active(SIDE_RIGHT);
}

void give_volume(std::int32_t value) {
  volume_value = std::clamp(value, 0, 255);
  jps_set_master_volume(volume_value);
}

void update_attract_flag() {
  if (!attract_flag && tick_timers.no_money_ms > ATTRACT_AFTER_MS &&
      tick_timers.idle_both_ms > ATTRACT_AFTER_MS && !any_win_show()) {
    attract_flag = 1;
    switch_ms = now_ms();
    for (auto& next : tick_timers.attract_demo_next) {
      next = now_ms() + 7500 + static_cast<std::int64_t>(random_unit() * 7500);
    }
  }
  if (attract_flag &&
      (tick_timers.idle_both_ms == 0 || tick_timers.no_money_ms == 0 || any_win_show())) {
    attract_flag = 0;
    switch_ms = now_ms();
  }
}

void glide() {
  const PrefIndex row = attract_flag ? PREF_ATTRACT_VOLUME : PREF_VOLUME;
  const std::int32_t attract = volume_curve(pref_int(PREF_ATTRACT_VOLUME));
  const std::int32_t play = volume_curve(pref_int(PREF_VOLUME));
  const std::int64_t elapsed = now_ms() - switch_ms;
  const std::int64_t ramp_ms = attract_flag ? RAMP_TO_ATTRACT_MS : RAMP_TO_PLAY_MS;
  if (elapsed > ramp_ms) {
    if (volume_step != pref_int(row)) {
      volume_move(volume_setting(attract_flag != 0) - volume_step, false, attract_flag != 0);
    } else if (volume_value != volume_curve(volume_step)) {
      // A glide that was reversed early ends a little short of its level. Left there, the buttons
      // would take it for one that still runs.
      give_volume(volume_curve(volume_step));
    }
    return;
  }
  const float part = static_cast<float>(elapsed) / static_cast<float>(ramp_ms);
  if (attract_flag) {  // the way down never rises, the way up never falls
    const auto target = static_cast<std::int32_t>(
        lerp(static_cast<float>(play), static_cast<float>(attract), part));
    give_volume(std::min<std::int32_t>(volume_value, target));
  } else {
    const auto target = static_cast<std::int32_t>(
        lerp(static_cast<float>(attract), static_cast<float>(play), part));
    give_volume(std::max<std::int32_t>(volume_value, target));
  }
}

void move_music_on() {
  if (now_ms() <= tick_timers.next_music_check_ms) return;
  if (attract_flag && tick_timers.idle_both_ms > ATTRACT_AFTER_MS) {
    cue_play("nextbgm");
    tick_timers.next_music_check_ms = now_ms() + MUSIC_EVERY_MS;
  } else {
    tick_timers.next_music_check_ms = now_ms() + MUSIC_RETRY_MS;
  }
}

}  // namespace

Shared<std::int32_t> volume_step{0};
Shared<std::int32_t> volume_value{0};
Shared<std::int32_t> attract_flag{1};

std::int32_t volume_curve(std::int32_t step) {
  step = std::clamp(step, 0, VOLUME_STEP_MAX);
  if (step <= 5) return 25 * step;
  if (step <= 10) return 12 * step + 65;
  return 7 * step + 115;
}

std::int32_t volume_setting(bool attract_row) {
  return std::clamp(pref_int(attract_row ? PREF_ATTRACT_VOLUME : PREF_VOLUME), 0, VOLUME_STEP_MAX);
}

void volume_set(std::int32_t step) {
  volume_step = std::clamp(step, 0, VOLUME_STEP_MAX);
  give_volume(volume_curve(volume_step));
}

void volume_move(std::int32_t delta, bool show, bool attract_row) {
  volume_set(volume_step + delta);
  prefs[attract_row ? PREF_ATTRACT_VOLUME : PREF_VOLUME].int_value = volume_step.get();
  if (show) tick_timers.volume_overlay_until = now_ms() + OVERLAY_MS;
  prefs_save();
}

void attract_volume_step() {
  update_attract_flag();
  glide();
  move_music_on();
}

void volume_button(std::int32_t delta) {
  if (volume_value != volume_curve(volume_step)) return;  // a glide is under way
  volume_move(delta, true, attract_flag != 0);
}

void attract_begin() {
  volume_set(pref_int(PREF_ATTRACT_VOLUME));
  prefs[PREF_ATTRACT_VOLUME].int_value = volume_step.get();
  prefs_save();
  attract_flag = 1;
  switch_ms = now_ms();
  cue_play("bgm");
  tick_timers.next_music_check_ms = now_ms() + MUSIC_EVERY_MS;
}
