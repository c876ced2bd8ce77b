#include "tests/fakes/led_fake.h"

#include <cstdint>

#include "io/led_board.h"
#include "io/led_value.h"

void led_open() {}
void led_start() {}
bool led_stop() {
  return true;
}
void led_close() {}
void led_set_value(std::int32_t value) {
  led_fake_value = value;
}
bool led_active() {
  return false;
}
void led_update() {}
void led_set_blink(int on) {
  led_fake_blink = on;
}
