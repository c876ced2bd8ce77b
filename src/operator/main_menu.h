// The operator's menus as a whole: their building, and the way in.
#pragma once

// Builds the pane and all menus, with the settings as they are. Start-up, after prefs_load.
void menus_build();
void menus_free();

// Opens the main menu while the test switch is still held from the way in. Game thread.
void menu_enter();
