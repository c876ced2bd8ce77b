// The values of a setting, as the operator's menus show and offer them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "books/settings.h"

struct SettingOption {
  std::string text;    // as in a row: "%%" shows as "%"
  std::int32_t whole;  // for settings that are whole numbers
  float real;          // for those that aren't
};

// The options in the setting's list.
std::vector<SettingOption> setting_options(const Setting& setting);

// The text of the setting's row.
std::string setting_text(const Setting& setting);
// The current value as text, also if the list doesn't offer it.
std::string setting_value_text(const Setting& setting);

// The index of the current value's option, or of the fallback.
std::uint32_t setting_selected(const Setting& setting, const std::vector<SettingOption>& options);

// Sets the option's value, without storing the settings.
void setting_choose(const Setting& setting, const SettingOption& option);
