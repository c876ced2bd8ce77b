// Pictures that show whether a monitor is in order: colours, purity, convergence.
#pragma once

#include "operator/test_screen.h"  // TestScreen

void monitor_test_input();                   // game thread: on to the next picture
void monitor_test_draw(TestScreen picture);  // main thread
