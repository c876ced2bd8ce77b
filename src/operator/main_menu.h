// The operator's menus as a whole: building them, and entering operator mode.
#pragma once

// Builds the pane and all menus, with the settings as they are. Start-up, after prefs_load.
void menus_build();
void menus_free();

// Opens the main menu. The Test switch that brought the operator here is still held. Game thread.
void menu_enter();
