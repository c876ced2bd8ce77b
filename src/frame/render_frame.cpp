#include "frame/render_frame.h"

#include "frame/game_mode.h"
#include "operator/boot_check.h"
#include "operator/info_pane.h"
#include "operator/menu.h"
#include "operator/test_screen.h"
#include "presentation/scene.h"

void render_frame() {
  switch (game_mode.get()) {
    case MODE_OPERATOR:
      test_screen_draw();
      break;
    case MODE_BOOT_CHECK:
      crc_check_draw();
      break;
    default:
      scene_draw();
      break;
  }
  pane_draw_all();
  if (menu_is_open()) menu_draw();
}
