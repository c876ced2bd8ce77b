// The process: environment, window, context, subsystems, main loop, and the orderly way out.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "frame/app_window.h"
#include "frame/game_init.h"
#include "frame/main_loop.h"
#include "gfx/frame.h"
#include "operator/boot_check.h"  // build_stamp
#include "platform/clock.h"
#include "platform/display.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/thread.h"

int main(int argc, char** argv) {
  clock_ms();  // the game's time begins here
  if (argc == 2 && std::string_view(argv[1]) == "--version") {
    std::printf("Lily Hop %s, built %s %s\n", LILYHOP_VERSION, __DATE__, __TIME__);
    return 0;
  }
  // Line by line also into a journal: what was said last is what one wants to know after a reset.
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

  if (!app_create_window()) return 0;
  app_resize_window();
  thread_pin_to_one_processor();
  gfx_context_create(LAYOUT_WIDTH, LAYOUT_HEIGHT);
  build_stamp = {__DATE__, __TIME__};
  Game_Init();
  main_loop();
  if (Game_Shutdown() == 0) {
    display_restore_mode();
    std::fflush(stdout);
    std::_Exit(1);
  }
  return 0;
}
