#pragma once

// Pumps the window's events and draws, at most 120 frames a second, until a quit. Main thread.
void main_loop();
