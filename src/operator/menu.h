// The operator's list engine.
#pragma once

// True while a menu is open; it then takes the cabinet's buttons. Any thread.
bool menu_is_open();
// Opens the main menu, the test switch still held from the way in. Game thread.
void menu_enter();
// One tick of the open menu. Game thread.
void menu_input();
// Main thread.
void menu_draw();
void pane_draw_all();
void menu_reset();
