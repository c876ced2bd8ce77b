// The game lamps, written a second time: their effects, and what they show in each state of the
// game.
#pragma once

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

struct ModelLamp {
  int channel, brightest;
  int value = 0, target = 0, low = 0, step = 0, more_rounds = 0;
  int count = 0, gap = 0, wait = 0, times = 0;
  bool running = false, repeats = false, rising = false, lit = false, half = false;
  enum { JUMP, PULSE, BREATHE, BLINK, FADE } effect = JUMP;

  void pulse_up() {
    rising = true;
    step = 767;
    more_rounds = 10;
  }
  void set(int operation, int a, int b, int c, int d) {
    const int level = a < brightest ? a : brightest;
    if (operation == 6 || operation == 7) {
      repeats = operation == 6;
      times = operation == 6 ? a : 0;
      return;
    }
    if (operation == 8) {
      wait = a;
      return;
    }
    if (operation < 0 || operation > 8) {
      *this = {.channel = channel, .brightest = brightest, .running = true};
      return;
    }
    running = true;
    effect = operation < 2 ? JUMP : static_cast<decltype(effect)>(operation - 1);
    target = operation == 0 ? 0 : operation == 1 ? brightest : level;
    if (effect == PULSE) pulse_up();
    if (effect == BREATHE) {
      low = b;
      step = c;
      more_rounds = d;
      value = wait = 0;
      half = false;
      rising = true;
    }
    if (effect == BLINK) {
      gap = b;
      count = 0;
      lit = false;
    }
    if (effect == FADE) {
      value = level;
      target = b < brightest ? b : brightest;
      step = c;
      more_rounds = 0;
    }
  }

  void pulse() {
    value += rising ? step : -step;
    if (rising && value > target) {
      value = target;
      rising = false;
      step = 16;
      more_rounds = 4;
    } else if (!rising && value < low) {
      value = 0;
      running = false;
      pulse_up();
    }
  }
  void breathe() {
    if (wait > 0) {
      --wait;
      return;
    }
    value = rising ? std::min(value + step, target) : std::max(value - step, low);
    if (value != low && value != target) return;
    if (half) running = false;
    if (!half) rising = !rising;
    half = !half;
  }
  void blink() {
    if (count > 0) {
      --count;
      return;
    }
    if (lit) running = false;
    count = lit ? gap : 4;
    value = lit ? 0 : target;
    lit = !lit;
  }
  void fade() {
    value += step;
    if (value > brightest) value = brightest;
    if (value < 0) value = 0;
    if (value == target) running = false;
  }
  void round() {
    if (!running) return;
    if (effect == JUMP) value = target;
    if (effect == PULSE) pulse();
    if (effect == BREATHE) breathe();
    if (effect == BLINK) blink();
    if (effect == FADE) fade();
    if (running || !repeats) return;
    if (times > 0)
      --times, running = true;
    else if (times == -1)
      running = true;
    else
      repeats = false;
  }
};

struct ModelLamps {
  ModelLamp lamps[7] = {{3, 4095},  {2, 4095},  {5, 4095}, {7, 4095},
                        {13, 2048}, {14, 2048}, {15, 2048}};
  bool in_menus = false, invites[2] = {};
  int attract_left = 0, win_left = 0;  // ticks of the marquee's pattern
  bool attract_runs = false, win_runs = false;

  struct Side {
    bool idle, may_play;
  };

  void set(int lamp, int operation, int a = 0, int b = 0, int c = 0, int d = 0) {
    if (lamp >= 0 && lamp < 7) lamps[lamp].set(operation, a, b, c, d);
  }
  void set_for_ever(int lamp, int operation, int a, int b, int c, int d) {
    set(lamp, operation, a, b, c, d);
    set(lamp, 6, -1);
  }
  // True if the marquee begins another pattern.
  bool marquee_is_free(int& left, bool& runs) {
    if (left > 0 && runs) {
      --left;
      return false;
    }
    for (const int lamp : {6, 5, 4}) {
      if (left > 0) break;
      set(lamp, 0);
      set(lamp, 7);
    }
    return true;
  }
  void marquee(bool win, const std::function<int()>& chance) {
    (win ? attract_left : win_left) = 0;
    (win ? attract_runs : win_runs) = false;
    int& left = win ? win_left : attract_left;
    bool& runs = win ? win_runs : attract_runs;
    if (!marquee_is_free(left, runs)) return;
    const int waits[4][3] = {{}, {0, 60, 120}, {120, 60, 0}, {0, 120, 0}};
    const int pick = chance() % (win ? 2 : 4);
    for (int i = 0; i < 3; ++i) {
      if (win && pick == 1) {
        set_for_ever(6 - i, 4, 1024, 16, 0, 0);
      } else {
        set_for_ever(6 - i, 3, 1024, 0, win ? 128 : 8, 8);
      }
      if (!win) set(6 - i, 8, waits[pick][i]);
    }
    left = win ? 119 : 359;
    runs = true;
  }
  void update(bool in_operator_mode, const Side (&sides)[2], bool show,
              const std::function<int()>& chance) {
    if (in_operator_mode) {
      if (in_menus) return;
      for (int lamp = 0; lamp < 7; ++lamp) set(lamp, 0);
      invites[0] = invites[1] = attract_runs = win_runs = false;
      attract_left = win_left = 0;
      in_menus = true;
      return;
    }
    in_menus = false;
    for (int side = 0; side < 2; ++side) {
      const bool invite = sides[side].idle && sides[side].may_play;
      if (!invite) {
        set(2 + side, sides[side].idle ? 1 : 0);
        set(side, sides[side].idle ? 1 : 0);
      } else if (!invites[side]) {
        set_for_ever(2 + side, 4, 4095, 8, 0, 0);
        set_for_ever(side, 3, 4095, 0, 320, 0);
      }
      invites[side] = invite;
    }
    marquee(show, chance);
  }
  // Channel and value of each lamp whose value changes.
  std::vector<std::pair<int, int>> tick() {
    std::vector<std::pair<int, int>> changes;
    for (ModelLamp& lamp : lamps) {
      const int before = lamp.value;
      for (int rounds = 1 + lamp.more_rounds; rounds > 0; --rounds) lamp.round();
      if (lamp.value != before) changes.emplace_back(lamp.channel, lamp.value);
    }
    return changes;
  }
};
