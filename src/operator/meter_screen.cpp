#include "frame/sides.h"
#include "gfx/text.h"
#include "io/jamma.h"
#include "operator/menu_tree.h"
#include "operator/test_screen.h"
#include "sound/jps.h"

void meter_test_input() {
  if (jamma_pressed(PRESS_TST) || jamma_pressed(PRESS_P1S)) {
    jamma_command(JAMMA_PULSE_COIN_METER, SIDE_LEFT, 1);
    jamma_command(JAMMA_PULSE_COIN_METER, SIDE_RIGHT, 1);
    jps_bank_play_name("menu_select");
  } else if (jamma_pressed(PRESS_SRV) || jamma_pressed(PRESS_P2S)) {
    test_screen_end();
    jps_bank_play_name("menu_cancel");
  }
}

void meter_test_draw() {
  text_draw(FONT_8X12, COLOUR_WHITE, 680, 368, "Hit Test or Left Start to advance coin meter");
  text_draw(FONT_8X12, COLOUR_WHITE, 680, 384, "Hit Service or Right Start to exit");
}
