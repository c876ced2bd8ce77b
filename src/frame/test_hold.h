// The way into operator mode: Test held for two seconds. Game thread.
#pragma once

// One tick in play with no menu open; `test_level` is 1 while the button is held.
void test_hold_step(int test_level);
