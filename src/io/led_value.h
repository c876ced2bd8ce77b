// The rules' door to the LED board. It includes nothing, so that a lower floor may call it.
#pragma once

// Shows the jackpot's present value on the LED board. Any thread; never waits.
void led_update();

// Blinks the display (1) or lets it stand (0). Any thread; never waits.
void led_set_blink(int on);
