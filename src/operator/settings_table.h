// The table behind the adjustment menus: a row of it says how a setting is shown, which values may
// be chosen, and what a choice sets in motion.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "books/prefs.h"

enum SettingView {
  VIEW_ON_OFF,
  VIEW_CURRENCY,
  VIEW_WHOLE,
  VIEW_TIMEOUT,       // -1 is "Off"
  VIEW_MONEY,         // three decimals
  VIEW_PERCENT,       // a part of 1 as a percentage
  VIEW_TICKET_VALUE,  // five decimals
};

// What follows a choice, done in the order of these bits.
enum SettingEffect : std::uint32_t {
  EFFECT_PAYTABLE = 1,       // another row of the paytable, and its own bonus
  EFFECT_FIELD = 2,          // the paytable steps, the bonus stays; the LED board is told
  EFFECT_CLEAR_CREDITS = 4,  // paid at the old price
};

struct SettingOption {
  std::string text;    // as rows hold it: "%%" shows as "%"
  std::int32_t whole;  // for settings that are whole numbers
  float real;          // for those that aren't
};

struct Setting {
  std::uintptr_t action;  // of its row
  PrefIndex pref;
  const char* label;
  SettingView view;
  const char* question;  // title of its list
  std::vector<SettingOption> (*options)();
  const char* fallback;  // option that is selected when the value isn't in the list
  std::uint32_t effects;
};

std::span<const Setting> coin_game_settings();
std::span<const Setting> payout_settings();

// The row's text as the menu holds it.
std::string setting_text(const Setting& setting);

// Index of the option that the setting has now, or of the fallback.
std::uint32_t setting_selected(const Setting& setting, const std::vector<SettingOption>& options);

// Writes the option's value into the settings, without storing them.
void setting_choose(const Setting& setting, const SettingOption& option);
