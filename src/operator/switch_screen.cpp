#include <cstdint>

#include "gfx/panel.h"  // gfx_rect_draw
#include "gfx/text.h"
#include "io/jamma.h"
#include "operator/menu.h"  // menu_clear_presses
#include "operator/menu_tree.h"
#include "operator/test_screen.h"
#include "platform/shared.h"
#include "sound/jps.h"

namespace {

constexpr int SLOTS = 8;
constexpr int CREDIT = 6;
constexpr std::int64_t LEAVE_AFTER_TICKS = 60;

struct SwitchRow {
  const char* label;
  int counter;  // JammaCounter
};
constexpr SwitchRow SWITCHES[SLOTS] = {
    {"START 1", COUNTER_P1S}, {"START 2", COUNTER_P2S}, {"COIN 1", COUNTER_C1},
    {"COIN 2", COUNTER_C2},   {"TEST", COUNTER_TST},    {"VOL +", COUNTER_VLU},
    {"CREDIT", COUNTER_SRV},  {"VOL -", COUNTER_VLD},
};

struct SwitchTestState {
  Shared<std::int32_t> held[SLOTS], seen[SLOTS];
  bool rising[SLOTS];          // its sound was played; kept between runs of the test
  std::int64_t service_ticks;  // total of all presses
};
constinit SwitchTestState test{};

// Without a board, all switches are up.
bool is_down(const JammaInputs* inputs, int slot) {
  return inputs != nullptr && (inputs->counters[SWITCHES[slot].counter] & 1U) != 0;
}

const JammaInputs* read_inputs() {
  JammaInputs* inputs = nullptr;
  const auto where = reinterpret_cast<std::intptr_t>(&inputs);
  return jamma_command(JAMMA_GET_INPUTS, where) == 0 ? inputs : nullptr;
}

std::uint32_t indicator_colour(int slot) {
  if (test.held[slot] != 0) return 0xFFFFFF00;
  return test.seen[slot] != 0 ? 0xFF404000 : 0xFF004020;
}

void box(int left, int top, int right, int bottom, std::uint32_t colour) {
  gfx_rect_draw(left, top, right - left, bottom - top, colour, colour);
}

void say(int x, int y, const char* text) {
  text_draw(FONT_8X12, COLOUR_WHITE, x, y, "%s", text);
}

}  // namespace

void switch_test_begin() {
  for (int slot = 0; slot < SLOTS; ++slot) {
    test.held[slot] = 0;
    test.seen[slot] = 0;
  }
}

void switch_test_input() {
  const JammaInputs* inputs = read_inputs();
  for (int slot = 0; slot < SLOTS; ++slot) {
    const bool down = is_down(inputs, slot);
    test.held[slot] = down;
    if (down) {
      test.seen[slot] = 1;
      if (!test.rising[slot]) jps_bank_play_name("menu_over");
      if (slot == CREDIT) ++test.service_ticks;
    }
    test.rising[slot] = down;
  }
  if (test.service_ticks <= LEAVE_AFTER_TICKS) return;
  menu_clear_presses();
  test.service_ticks = 0;
  test_screen_end();
}

void switch_test_draw() {
  constexpr std::uint32_t PANEL = 0x80000000;
  constexpr std::uint32_t CELL = 0xFF008020;
  constexpr struct {
    int top, bottom, heading_y;
    const char* heading;
  } PANELS[] = {{192, 290, 199, "Start Switches"},
                {313, 411, 320, "Coin Switches"},
                {434, 607, 441, "Test Switches"}};
  constexpr struct {
    int top, bottom, indicator_y, label_y;
  } ROWS[] = {
      {215, 283, 222, 245}, {336, 404, 343, 366}, {457, 525, 464, 487}, {532, 600, 539, 561}};

  say(680, 160, "Switch Test");
  for (const auto& panel : PANELS) {
    box(507, panel.top, 853, panel.bottom, PANEL);
    say(515, panel.heading_y, panel.heading);
  }
  bool all_seen = true;
  for (int slot = 0; slot < SLOTS; ++slot) {
    const auto& row = ROWS[slot / 2];
    const bool right = slot % 2 != 0;
    box(right ? 684 : 515, row.top, right ? 846 : 677, row.bottom, CELL);
    say(right ? 711 : 542, row.label_y, SWITCHES[slot].label);
    gfx_rect_draw(right ? 785 : 616, row.indicator_y, 54, 54, indicator_colour(slot),
                  indicator_colour(slot));
    all_seen = all_seen && test.seen[slot] != 0;
  }
  say(680, 630, "Hold Service To Exit");
  if (all_seen) say(680, 662, "All Switches Seen");
}
