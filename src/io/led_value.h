// The LED board for the rules. It includes nothing, so lower floors may call it.
#pragma once

// Shows the jackpot's present value on the LED board. Any thread; never waits.
void led_update();

// Blinks the display (1) or shows it steadily (0). Any thread; never waits.
void led_set_blink(int on);
