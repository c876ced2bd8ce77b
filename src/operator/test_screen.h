// Full screens of operator mode, in place of the menus: hardware tests and the two volume screens.
#pragma once

#include <cstdint>

#include "platform/shared.h"  // Shared

struct MenuRow;

// The screen that runs, 0 if none does. Screens are numbered from 1 in the order of their rows, the
// diagnostics menu's before the main menu's. Written by the game thread.
extern Shared<std::int32_t> test_screen;

// Hides the pane, closes the menu and puts this row's screen in its place. Game thread.
void test_screen_start(const MenuRow& row);
// Puts the menu that the screen came from back, and the pane. Game thread.
void test_screen_end();

void test_screen_input();  // game thread, each tick of operator mode without an open menu
void test_screen_draw();   // main thread
