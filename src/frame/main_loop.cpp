#include "frame/main_loop.h"

#include <cstdint>
#include <cstdio>

#include "frame/game_clock.h"  // last_render_ms
#include "frame/render_frame.h"
#include "gfx/frame.h"
#include "platform/clock.h"
#include "platform/display.h"

constexpr double FRAME_MS = 8.333333969116211;  // 1/120 s as a 32-bit float has it

void main_loop() {
  bool first = true;
  for (;;) {
    const DisplayEvents events = display_poll_events();
    if (events.moved) gfx_projection_set(LAYOUT_WIDTH, LAYOUT_HEIGHT);
    if (events.quit) return;
    const std::int64_t now = clock_ms();
    if (static_cast<double>(game_clock.last_render_ms) + FRAME_MS > static_cast<double>(now)) {
      clock_sleep_ms(1);
      continue;
    }
    gfx_frame_run(render_frame);
    game_clock.last_render_ms = now;
    if (first) {
      std::printf("first frame %lld ms after start\n", static_cast<long long>(clock_ms()));
      std::fflush(stdout);
      first = false;
    }
  }
}
