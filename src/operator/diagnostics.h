// The menus that prove the cabinet's hardware.
#pragma once

struct Menu;

// Start-up.
Menu* diagnostics_menu_build(Menu* parent);

// Opens the diagnostics menu again behind one of its screens. Game thread.
void diagnostics_reopen();
