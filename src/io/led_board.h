// The numeric LED display.
#pragma once

void led_open();   // start-up, behind the I/O board's search
void led_close();  // shutdown
