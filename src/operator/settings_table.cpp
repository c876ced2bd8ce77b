#include "operator/settings_table.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

using Options = std::vector<SettingOption>;

constexpr const char* CURRENCIES[] = {"Coins", "Dollars", "Euro", "Swipes"};

std::string formatted(const char* format, auto... values) {
  char text[48];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

Options on_off() {
  return {{"On", 1, 0.0F}, {"Off", 0, 0.0F}};
}

template <int first, int last, int step>
Options whole_numbers() {
  Options options;
  for (int value = first; value <= last; value += step) {
    options.push_back({std::to_string(value), value, 0.0F});
  }
  return options;
}

// Each value is what its text says, as a float: a stored one compares equal to it.
Options real_numbers(std::initializer_list<const char*> texts) {
  Options options;
  for (const char* text : texts) options.push_back({text, 0, std::strtof(text, nullptr)});
  return options;
}

Options currencies() {
  Options options;
  for (const char* name : CURRENCIES) {
    options.push_back({name, static_cast<std::int32_t>(options.size()), 0.0F});
  }
  return options;
}

Options coin_values() {
  return real_numbers({"0.050", "0.100", "0.125", "0.200", "0.250", "0.300", "0.350",
                       "0.375", "0.400", "0.450", "0.500", "0.600", "0.700", "0.800",
                       "0.900", "1.000", "1.100", "1.200", "1.300", "1.400", "1.500",
                       "1.600", "1.700", "1.800", "1.900", "2.000"});
}

Options ticket_values() {
  return real_numbers({"0.00250", "0.00375", "0.00500", "0.00625", "0.00750", "0.01000", "0.01500",
                       "0.02000", "0.02500", "0.05000", "0.10000"});
}

Options timeouts() {
  Options options = {{"Off", -1, 0.0F}, {"0", 0, 0.0F}};
  for (const SettingOption& option : whole_numbers<15, 120, 15>()) options.push_back(option);
  return options;
}

Options percents() {
  Options options;
  for (int percent = 5; percent <= 95; percent += 5) {
    options.push_back({formatted("%2d%%%%", percent), 0,
                       static_cast<float>(static_cast<double>(percent) / 100.0)});
  }
  return options;
}

Options most_tickets() {
  Options options;
  for (const int value : {10, 20, 50, 100, 250, 500, 1000, 2500}) {
    options.push_back({std::to_string(value), value, 0.0F});
  }
  return options;
}

constexpr auto one_to_ten = whole_numbers<1, 10, 1>;

constexpr Setting COIN_GAME[] = {
    {0, PREF_FREEPLAY, "Freeplay", VIEW_ON_OFF, "Freeplay?", on_off, "Off", 0},
    {1, PREF_LOCKOUT_COILS, "Coin Lockout", VIEW_ON_OFF, "Coin Lockout?", on_off, "Off", 0},
    {2, PREF_CURRENCY_UNIT, "Currency Type", VIEW_CURRENCY, "Currency Type?", currencies, "Coins",
     0},
    {3, PREF_COIN_VALUE, "Coin Value", VIEW_MONEY, "Coin Value?", coin_values, "0.250",
     EFFECT_PAYTABLE},
    {4, PREF_COINS_TO_PLAY, "Coins To Play", VIEW_WHOLE, "Coins To Play?", one_to_ten, "1",
     EFFECT_PAYTABLE | EFFECT_CLEAR_CREDITS},
    {5, PREF_FROGS_PER_GAME, "Frogs Per Game", VIEW_WHOLE, "Frogs Per Game?", one_to_ten, "1",
     EFFECT_PAYTABLE},
    {6, PREF_COINS_PER_SWIPE, "Coins Per Swipe", VIEW_WHOLE, "Coins Per Swipe?", one_to_ten, "1",
     0},
    {8, PREF_TIMEOUT_SECONDS, "Timeout (Seconds)", VIEW_TIMEOUT, "Timeout Time (Seconds)?",
     timeouts, "Off", 0},
};

constexpr auto one_to_25 = whole_numbers<1, 25, 1>;
constexpr auto bonuses = whole_numbers<50, 600, 25>;

constexpr Setting PAYOUT[] = {
    {0, PREF_TICKET_USE, "Ticket Use", VIEW_ON_OFF, "Ticket Use?", on_off, "Off", 0},
    {1, PREF_FIXED_TICKET, "Fixed Ticket", VIEW_ON_OFF, "Fixed Ticket?", on_off, "Off", 0},
    {2, PREF_FIXED_TICKETS_PER_GAME, "Fixed Tickets Per Frog", VIEW_WHOLE,
     "Fixed Tickets Per Frog?", one_to_25, "10", 0},
    {3, PREF_PAYOUT_PERCENT, "Payout Percent", VIEW_PERCENT, "Payout Percent?", percents, "40%%",
     EFFECT_PAYTABLE},
    {4, PREF_TICKET_VALUE, "Ticket Value", VIEW_TICKET_VALUE, "Ticket Value?", ticket_values,
     "0.01000", EFFECT_PAYTABLE},
    {5, PREF_MINIMUM_TICKETS, "Minimum Tickets", VIEW_WHOLE, "Minimum Tickets?", one_to_ten, "1",
     0},
    {6, PREF_MAXIMUM_TICKETS, "Maximum Tickets", VIEW_WHOLE, "Maximum Tickets?", most_tickets,
     "2500", 0},
    {7, PREF_BONUS_VALUE, "Bonus Value", VIEW_WHOLE, "Bonus Value?", bonuses, "250", 0},
    {8, PREF_BOOST_BONUS, "Boost Bonus", VIEW_ON_OFF, "Boost Bonus?", on_off, "Off", EFFECT_FIELD},
    {9, PREF_TWO_POINT_TICKETS, "Two Point Tickets", VIEW_ON_OFF, "Two Point Tickets?", on_off,
     "Off", EFFECT_FIELD},
};

bool is_real(const Setting& setting) {
  return setting.view == VIEW_MONEY || setting.view == VIEW_PERCENT ||
         setting.view == VIEW_TICKET_VALUE;
}

// A value that no list offers is shown all the same.
std::string value_text(const Setting& setting) {
  const std::int32_t whole = pref_int(setting.pref);
  const auto real = static_cast<double>(pref_float(setting.pref));
  switch (setting.view) {
    case VIEW_ON_OFF:
      return whole != 0 ? "On" : "Off";
    case VIEW_CURRENCY:
      return whole >= 0 && whole < 4 ? CURRENCIES[whole] : std::to_string(whole);
    case VIEW_WHOLE:
      return std::to_string(whole);
    case VIEW_TIMEOUT:
      return whole == -1 ? "Off" : std::to_string(whole);
    case VIEW_MONEY:
      return formatted("%0.3f", real);
    case VIEW_PERCENT:
      return formatted("%.1f%%%%", static_cast<double>(pref_float(setting.pref) * 100.0F));
    case VIEW_TICKET_VALUE:
      return formatted("%0.5f", real);
  }
  return {};
}

}  // namespace

std::span<const Setting> coin_game_settings() {
  return COIN_GAME;
}
std::span<const Setting> payout_settings() {
  return PAYOUT;
}

std::string setting_text(const Setting& setting) {
  return formatted("%-24s %s", setting.label, value_text(setting).c_str());
}

std::uint32_t setting_selected(const Setting& setting, const Options& options) {
  const auto is_now = [&](const SettingOption& option) {
    return is_real(setting) ? option.real == pref_float(setting.pref)
                            : option.whole == pref_int(setting.pref);
  };
  auto found = std::ranges::find_if(options, is_now);
  if (found == options.end()) {
    found = std::ranges::find(options, std::string(setting.fallback), &SettingOption::text);
  }
  return static_cast<std::uint32_t>(found - options.begin());
}

void setting_choose(const Setting& setting, const SettingOption& option) {
  if (is_real(setting)) {
    prefs[setting.pref].float_value = option.real;
  } else {
    prefs[setting.pref].int_value = option.whole;
  }
}
