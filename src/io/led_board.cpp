#include "io/led_board.h"

#include "io/led_value.h"

// No board is looked for yet; a cabinet without one plays on.
void led_open() {}
void led_close() {}
void led_update() {}
void led_set_blink(int /*on*/) {}
