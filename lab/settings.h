// The operator's settings of a run, put into the game's own table.
#pragma once

#include <string>

#include "books/prefs.h"

// Built-in values, as a cabinet has them out of the box.
void settings_reset();

// Reads a file of settings, or `prefs`, else `prefbak`, of a folder that is a cabinet's drive d:.
// Nothing is written there. Empty, or a line that says what is wrong.
std::string settings_load(const std::string& path);

// "Name=value" with the name that the table or the menus give a setting, in any case. On, Off and
// percentages are understood. A new price, value or percentage brings the jackpot of its row along,
// as in the menus, unless "Bonus Value" is set after it. Empty, or a line that says what is wrong.
std::string settings_set(const std::string& assignment);

// Sets the percentage so that the money settings ask for just this row of the paytable, 0 to 44,
// and the row's jackpot. Empty, or a line that says what is wrong.
std::string settings_use_row(int row);

// Whether a game can be bought and paid under the settings. Empty, or a line that says why not.
std::string settings_complaint();

// A setting's value as text.
std::string settings_text(PrefIndex row);
