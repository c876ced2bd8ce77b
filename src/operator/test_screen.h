// Full screens of operator mode, in place of the menus: hardware tests and the two volume screens.
#pragma once

#include <cstdint>

#include "platform/shared.h"  // Shared

struct MenuRow;

// The number of the screen that runs, or 0. Screens are numbered from 1 in the order of their rows,
// first the diagnostics menu's, then the main menu's. Written by the game thread.
extern Shared<std::int32_t> test_screen;

// Hides the pane, closes the menu and starts this row's screen. Game thread.
void test_screen_start(const MenuRow& row);
// Ends the screen and opens the menu that it was started from, with the pane. Game thread.
void test_screen_end();

void test_screen_input();  // game thread, each tick of operator mode without an open menu
void test_screen_draw();   // main thread
