// The top of the operator's menus: the way in, the way out, and the version page.
#pragma once

// Builds the pane and all menus, with the settings as they are. Start-up, behind prefs_load.
void menus_build();
void menus_free();

// Opens the main menu, the test switch still held from the way in. Game thread.
void menu_enter();

// Opens the main menu where it was left, behind a screen of its own. Game thread.
void main_menu_reopen();

// The page of the main menu; every sub-menu that ends puts it back. Game thread.
void pane_page_version();
