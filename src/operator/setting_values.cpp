#include "operator/setting_values.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "books/prefs.h"

namespace {

using Options = std::vector<SettingOption>;

std::string formatted(const char* format, auto... values) {
  char text[48];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

// The texts that a list offers, with its ranges written out.
std::vector<std::string> offered_words(const char* offers) {
  std::vector<std::string> words;
  std::istringstream text(offers);
  for (std::string word; text >> word;) {
    int first = 0, last = 0, step = 1;
    if (std::sscanf(word.c_str(), "%d..%d/%d", &first, &last, &step) < 2) {  // NOLINT(cert-err34-c)
      words.push_back(word);
      continue;
    }
    for (int value = first; value <= last; value += step) words.push_back(std::to_string(value));
  }
  return words;
}

// `place` is the row's index in the list.
SettingOption option_of(const Setting& setting, const std::string& word, std::int32_t place) {
  const auto number = static_cast<std::int32_t>(std::strtol(word.c_str(), nullptr, 10));
  switch (setting.view) {
    case VIEW_ON_OFF:
      return {word, word == "On" ? 1 : 0, 0.0F};
    case VIEW_CURRENCY:
      return {word, place, 0.0F};
    case VIEW_TIMEOUT:
      return {word, word == "Off" ? -1 : number, 0.0F};
    case VIEW_PERCENT:
      return {formatted("%2d%%%%", number), 0, static_cast<float>(number / 100.0)};
    case VIEW_REAL:
    case VIEW_MONEY:
    case VIEW_TICKET_VALUE:  // the text as a float, so that a stored value compares equal
      return {word, 0, std::strtof(word.c_str(), nullptr)};
    case VIEW_WHOLE:
    case VIEW_TEXT:
      break;
  }
  return {word, number, 0.0F};
}

std::string currency_text(const Setting& setting, std::int32_t unit) {
  const auto names = offered_words(setting.offers);
  const auto known = unit >= 0 && static_cast<std::size_t>(unit) < names.size();
  return known ? names[static_cast<std::size_t>(unit)] : std::to_string(unit);
}

}  // namespace

Options setting_options(const Setting& setting) {
  Options options;
  for (const std::string& word : offered_words(setting.offers)) {
    options.push_back(option_of(setting, word, static_cast<std::int32_t>(options.size())));
  }
  return options;
}

std::string setting_value_text(const Setting& setting) {
  const std::int32_t whole = pref_int(setting.pref);
  const auto real = static_cast<double>(pref_float(setting.pref));
  switch (setting.view) {
    case VIEW_ON_OFF:
      return whole != 0 ? "On" : "Off";
    case VIEW_CURRENCY:
      return currency_text(setting, whole);
    case VIEW_TIMEOUT:
      return whole == -1 ? "Off" : std::to_string(whole);
    case VIEW_REAL:
    case VIEW_MONEY:
      return formatted("%0.3f", real);
    case VIEW_PERCENT:
      return formatted("%.1f%%%%", static_cast<double>(pref_float(setting.pref) * 100.0F));
    case VIEW_TICKET_VALUE:
      return formatted("%0.5f", real);
    case VIEW_TEXT:
      return prefs[setting.pref].text_value;
    case VIEW_WHOLE:
      break;
  }
  return std::to_string(whole);
}

std::string setting_text(const Setting& setting) {
  return formatted("%-24s %s", setting_label(setting), setting_value_text(setting).c_str());
}

std::uint32_t setting_selected(const Setting& setting, const Options& options) {
  const auto is_now = [&](const SettingOption& option) {
    return setting_is_real(setting) ? option.real == pref_float(setting.pref)
                                    : option.whole == pref_int(setting.pref);
  };
  auto found = std::ranges::find_if(options, is_now);
  if (found == options.end()) {
    found = std::ranges::find(options, std::string(setting.fallback), &SettingOption::text);
  }
  return static_cast<std::uint32_t>(found - options.begin());
}

void setting_choose(const Setting& setting, const SettingOption& option) {
  if (setting_is_real(setting)) {
    prefs[setting.pref].float_value = option.real;
  } else {
    prefs[setting.pref].int_value = option.whole;
  }
}
