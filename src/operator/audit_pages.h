// The books, page by page.
#pragma once

struct Menu;

// Start-up.
Menu* audits_menu_build(Menu* parent);

// A page shows the figures of the moment it is written. Game thread.
void pane_page_system_audits();
void pane_page_coin_audits();
void pane_page_payout_audits();
void pane_page_game_audits();
