// Stands in for the LED board at link time and remembers what it was told last.
#pragma once

inline int led_fake_blink = 0, led_fake_value = 0;
