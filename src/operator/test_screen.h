// Hardware test screens: operator mode with no menu open.
#pragma once

void test_screen_input();  // game thread
void test_screen_draw();   // main thread
