#include "frame/main_loop.h"

#include <cstdint>
#include <cstdio>

#include "frame/app_window.h"
#include "frame/game_clock.h"  // last_render_ms
#include "frame/render_frame.h"
#include "gfx/frame.h"
#include "platform/clock.h"
#include "platform/display.h"

constexpr double FRAME_MS = 8.333333969116211;  // 1/120 s as a 32-bit float has it

void main_loop() {
  std::int64_t frames = 0;
  std::int64_t first_ms = 0;
  for (;;) {
    app_window_proc(display_poll_events());
    if (app_window.quit) break;
    const std::int64_t now = clock_ms();
    if (static_cast<double>(game_clock.last_render_ms) + FRAME_MS > static_cast<double>(now)) {
      clock_sleep_ms(1);
      continue;
    }
    gfx_frame_run(render_frame);
    game_clock.last_render_ms = now;
    if (frames++ == 0) {
      first_ms = clock_ms();
      std::printf("first frame %lld ms after start\n", static_cast<long long>(first_ms));
      std::fflush(stdout);
    }
  }
  const auto drawn_s = static_cast<double>(clock_ms() - first_ms) / 1000.0;
  std::printf("%lld frames, %.1f a second\n", static_cast<long long>(frames),
              static_cast<double>(frames) / drawn_s);
}
