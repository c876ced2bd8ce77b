// The operator's settings: two menus of them, and a list of values for each. Only listed values can
// be set.
#pragma once

// Rewrites the row texts from the settings; of the second menu also which rows are out of reach.
// Game thread and start-up.
void adjust_refresh_coin_rows();
void adjust_refresh_payout_rows();

// The help pages, with the figures that follow from the settings. Game thread.
void pane_page_coin_game();
void pane_page_payout();
