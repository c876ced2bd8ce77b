#include <cmath>
#include <cstdint>

#include "frame/game_clock.h"  // now_ms
#include "gfx/text.h"
#include "io/jamma.h"
#include "io/watchdog_link.h"
#include "operator/menu_tree.h"
#include "operator/test_screen.h"
#include "platform/shared.h"
#include "sound/jps.h"

namespace {

enum WatchdogTestState : std::int32_t { TEST_IDLE, TEST_COUNTING, TEST_CANCELLED, TEST_FAILED };

constexpr std::int64_t COUNTDOWN_MS = 10000;
constexpr std::int64_t AFTER_CANCEL_MS = 1000;

struct WatchdogTest {
  Shared<WatchdogTestState> state;
  Shared<std::int64_t> deadline_ms;
};
constinit WatchdogTest test{};

void begin() {
  test.state = TEST_COUNTING;
  watchdog_feed.paused = 1;
  watchdog_send_word(WATCHDOG_WORD_SHORT);
  test.deadline_ms = now_ms() + COUNTDOWN_MS;
  jps_bank_play_name("menu_select");
}

void cancel() {
  test.deadline_ms = now_ms() + AFTER_CANCEL_MS;
  test.state = TEST_CANCELLED;
  watchdog_feed.paused = 0;
  watchdog_feed.next_time = test.deadline_ms.get();
  watchdog_send_word(WATCHDOG_WORD_LONG);
  jps_bank_play_name("menu_cancel");
}

void leave() {
  test.state = TEST_IDLE;
  watchdog_feed.paused = 0;
  watchdog_send_word(WATCHDOG_WORD_LONG);
  test_screen_end();
  jps_bank_play_name("menu_cancel");
}

}  // namespace

void watchdog_test_begin() {
  test.state = TEST_IDLE;
}

void watchdog_test_input() {
  const bool pressed = jamma_pressed(PRESS_TST) || jamma_pressed(PRESS_P2S);
  if (!pressed) {
    // The countdown is over and nothing has reset the machine.
    const bool over = test.state == TEST_COUNTING && now_ms() >= test.deadline_ms;
    if (over) test.state = TEST_FAILED;
    return;
  }
  switch (test.state.get()) {
    case TEST_IDLE:
      begin();
      break;
    case TEST_COUNTING:
      cancel();
      break;
    case TEST_CANCELLED:
    case TEST_FAILED:
      leave();
      break;
  }
}

void watchdog_test_draw() {
  const auto say = [](int y, const char* text) {
    text_draw(FONT_8X12, COLOUR_WHITE, 680, y, "%s", text);
  };
  say(104, "Watchdog Test");
  say(204, "Hit Test or Right Start to Begin");
  switch (test.state.get()) {
    case TEST_IDLE:
      break;
    case TEST_COUNTING: {
      const double left_s = static_cast<double>(test.deadline_ms - now_ms()) / 1000.0;
      text_draw(FONT_8X12, COLOUR_WHITE, 680, 424, "...PC will RESET in %2d seconds...",
                static_cast<int>(std::lround(left_s)));
      say(444, "*** Hit Test or Right Start to CANCEL ***");
      break;
    }
    case TEST_CANCELLED:
      say(464, "WATCHDOG TEST CANCELED - Hit Test or Right Start to exit");
      break;
    case TEST_FAILED:
      say(464, "WATCHDOG TEST FAILED - Hit Test or Right Start to exit");
      break;
  }
}
