// The rows of the main menu and the diagnostics menu, from the top, and the functions they name.
// The virtual cabinet finds rows by these texts.
#pragma once

#include "books/settings.h"  // SETTINGS
#include "operator/menu_row.h"

Menu* lamp_menu_build(Menu* parent);
Menu* led_menu_build(Menu* parent);
Menu* sound_menu_build(Menu* parent);
Menu* ticket_menu_build(Menu* parent);
void lamps_off();
void led_off();
void sound_test_begin();

void switch_test_begin();
void switch_test_input();
void switch_test_draw();

void dip_test_input();
void dip_test_draw();

void monitor_test_next();
void monitor_test_end();
void color_bars_draw();
void white_purity_draw();
void red_purity_draw();
void green_purity_draw();
void blue_purity_draw();
void convergence_draw();

void meter_test_input();
void meter_test_draw();

void watchdog_test_begin();
void watchdog_test_input();
void watchdog_test_draw();

inline constexpr MenuRow DIAGNOSTICS_ROWS[] = {
    {.text = "Switch Test",
     .begin = switch_test_begin,
     .input = switch_test_input,
     .draw = switch_test_draw},
    {.text = "Dip Switch Test", .input = dip_test_input, .draw = dip_test_draw},
    {.text = "Monitor Test", .input = monitor_test_next, .draw = color_bars_draw},
    {.input = monitor_test_next, .draw = white_purity_draw},
    {.input = monitor_test_next, .draw = red_purity_draw},
    {.input = monitor_test_next, .draw = green_purity_draw},
    {.input = monitor_test_next, .draw = blue_purity_draw},
    {.input = monitor_test_end, .draw = convergence_draw},
    {.text = "Lamp Test", .begin = lamps_off, .list = lamp_menu_build},
    {.text = "LED Display Test", .begin = led_off, .list = led_menu_build},
    {.text = "Sound Test", .begin = sound_test_begin, .list = sound_menu_build},
    {.text = "Coin Meter Test", .input = meter_test_input, .draw = meter_test_draw},
    {.text = "Ticket Dispenser Test", .list = ticket_menu_build},
    {.text = "Watchdog Test",
     .begin = watchdog_test_begin,
     .input = watchdog_test_input,
     .draw = watchdog_test_draw},
};

Menu* diagnostics_menu_build(Menu* parent);
Menu* coin_game_menu_build(Menu* parent);
Menu* payout_menu_build(Menu* parent);
Menu* audits_menu_build(Menu* parent);
Menu* resets_menu_build(Menu* parent);
void volume_begin();
void attract_volume_begin();
void volume_input();
void volume_draw();

inline constexpr MenuRow MAIN_ROWS[] = {
    {.text = "Diagnostics", .list = diagnostics_menu_build},
    {.text = "Coin/Game Adjustments", .list = coin_game_menu_build},
    {.text = "Payout Adjustments", .list = payout_menu_build},
    {.text = "Audits", .list = audits_menu_build},
    {.text = "Resets", .list = resets_menu_build},
    {.text = ""},
    {.text = SETTINGS[PREF_VOLUME].name,
     .begin = volume_begin,
     .input = volume_input,
     .draw = volume_draw},
    {.text = SETTINGS[PREF_ATTRACT_VOLUME].name,
     .begin = attract_volume_begin,
     .input = volume_input,
     .draw = volume_draw},
};
