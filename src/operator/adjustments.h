// The operator's settings: two menus of them, and a list of values for each setting. Nothing is
// typed: the operator can only set values from the lists.
#pragma once

// Update the rows of a menu from the settings: the texts, and which rows can be selected. Game
// thread and start-up.
void adjust_refresh_coin_rows();
void adjust_refresh_payout_rows();

// Write the help pages, with the figures that follow from the settings. Game thread.
void pane_page_coin_game();
void pane_page_payout();
