#include "operator/test_screen.h"

// There is no test screen yet, so the screen behind the menu stays dark.
void test_screen_input() {}
void test_screen_draw() {}
