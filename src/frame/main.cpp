// The process: environment, window, context, subsystems, main loop, and the orderly way out.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "frame/app_window.h"
#include "frame/game_clock.h"  // last_render_ms
#include "frame/game_init.h"
#include "frame/monitor_note.h"
#include "frame/render_frame.h"
#include "gfx/frame.h"
#include "operator/boot_check.h"  // build_stamp
#include "platform/clock.h"
#include "platform/display.h"
#include "platform/ending.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/power.h"  // power_restart
#include "platform/thread.h"

namespace {

constexpr double FRAME_MS = 8.333333969116211;  // 1/120 s as a 32-bit float has it

// Pumps the window's events and draws, at most 120 frames a second, until a quit.
void main_loop() {
  std::int64_t frames = 0;
  std::int64_t first_ms = 0;
  for (;;) {
    app_window_proc(display_poll_events());
    if (app_window.quit || ending_requested() != 0 || power_restart_ordered()) break;
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

// Until a signal comes, or Esc. It is drawn over and over because a monitor may be switched on
// late.
void show_monitor_note() {
  while (!app_window.quit && ending_requested() == 0) {
    app_window_proc(display_poll_events());
    gfx_frame_run(monitor_note_draw);
    clock_sleep_ms(100);
  }
}

void end_without_display() {
  std::fprintf(stderr, "The display is lost; the game ends.\n");
  Game_Shutdown();
}

}  // namespace

int main(int argc, char** argv) {
  clock_ms();  // the game's time begins here
  ending_watch();
  if (argc == 2 && std::string_view(argv[1]) == "--version") {
    std::printf("Lily Hop %s, built %s %s\n", LILYHOP_VERSION, __DATE__, __TIME__);
    return 0;
  }
  // Line by line also into a journal: after a reset the last lines matter most.
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  std::string error;
  if (!environment_read(error)) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return 2;
  }
  files_use_roots(environment.drive_d, files_program_folder());

  std::string line;
  for (int i = 1; i < argc; ++i) line.append(i > 1 ? " " : "").append(argv[i]);
  app_parse_command_line(line.c_str());

  if (!app_create_window()) {
    if (monitor_note_open()) show_monitor_note();
    return 0;
  }
  app_resize_window();
  thread_pin_to_one_processor();
  gfx_context_create(LAYOUT_WIDTH, LAYOUT_HEIGHT);
  build_stamp = {__DATE__, __TIME__, LILYHOP_VERSION};
  Game_Init();
  display_when_lost(end_without_display);
  main_loop();
  const bool all_ended = Game_Shutdown() != 0;
  if (power_restart_ordered()) {
    display_restore_mode();
    power_restart(argv);
  }
  if (!all_ended) {
    display_restore_mode();
    std::fflush(stdout);
    std::_Exit(1);
  }
  return 0;
}
