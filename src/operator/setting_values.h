// The values of a setting as the operator's menus show and offer them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "books/settings.h"

struct SettingOption {
  std::string text;    // as rows hold it: "%%" shows as "%"
  std::int32_t whole;  // for settings that are whole numbers
  float real;          // for those that aren't
};

// The rows of its list.
std::vector<SettingOption> setting_options(const Setting& setting);

// The row's text as the menu holds it.
std::string setting_text(const Setting& setting);
// Its value now as text. One that no list offers is shown all the same.
std::string setting_value_text(const Setting& setting);

// Index of the option that the setting has now, or of the fallback.
std::uint32_t setting_selected(const Setting& setting, const std::vector<SettingOption>& options);

// Writes the option's value into the settings, without storing them.
void setting_choose(const Setting& setting, const SettingOption& option);
