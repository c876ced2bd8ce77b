#include "lab/settings.h"

#include <strings.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "books/book_file.h"
#include "books/book_list.h"
#include "operator/setting_values.h"
#include "platform/files.h"
#include "playfield/paytable.h"

namespace {

bool same(const std::string& one, const char* other) {
  return strcasecmp(one.c_str(), other) == 0;
}

bool find(const std::string& name, PrefIndex& row) {
  for (int i = 0; i < PREF_COUNT; ++i) {
    row = static_cast<PrefIndex>(i);
    if (same(name, SETTINGS[i].name) || same(name, setting_label(SETTINGS[i]))) return true;
  }
  return false;
}

bool is_real(PrefIndex row) {
  return setting_is_real(SETTINGS[row]);
}

bool is_text(PrefIndex row) {
  return SETTINGS[row].view == VIEW_TEXT;
}

bool number_of(const std::string& text, double& value) {
  if (same(text, "on")) {
    value = 1.0;
    return true;
  }
  if (same(text, "off")) {
    value = 0.0;
    return true;
  }
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  if (text.empty() || end == text.c_str() || !std::isfinite(value)) return false;
  if (*end == '%') {
    value /= 100.0;
    ++end;
  }
  return *end == '\0';
}

std::string names() {
  std::string all;
  for (int i = 0; i < PREF_COUNT; ++i) {
    if (is_text(static_cast<PrefIndex>(i))) continue;
    all += std::string(all.empty() ? "" : ", ") + prefs[i].name;
  }
  return all;
}

void warn_if_not_offered(PrefIndex row) {
  if (SETTINGS[row].menu == NO_MENU) return;
  for (const SettingOption& option : setting_options(SETTINGS[row])) {
    if (is_real(row) ? option.real == pref_float(row) : option.whole == pref_int(row)) return;
  }
  std::fprintf(stderr, "payout-lab: note: no menu offers \"%s\" %s\n", prefs[row].name,
               settings_text(row).c_str());
}

bool moves_the_bonus(PrefIndex row) {
  return (SETTINGS[row].effects & EFFECT_PAYTABLE) != 0;
}

// Values alone: names and flags stay those of the table.
bool take_file(const char* name) {
  PrefRow stored[PREF_COUNT];
  std::memcpy(static_cast<void*>(stored), static_cast<const void*>(prefs), sizeof stored);
  if (!book_read(name, BOOK_FILES[BOOK_PREFS].magic, stored, sizeof stored)) return false;
  for (int i = 0; i < PREF_COUNT; ++i) {
    prefs[i].int_value = stored[i].int_value.get();
    prefs[i].float_value = stored[i].float_value.get();
  }
  return true;
}

}  // namespace

void settings_reset() {
  prefs_reset();
}

std::string settings_load(const std::string& path) {
  std::error_code failed;
  const std::filesystem::path given = std::filesystem::absolute(path, failed);
  if (failed || !std::filesystem::exists(given, failed)) {
    return path + ": " + (failed ? failed.message() : "there is no such file or folder");
  }
  const bool folder = std::filesystem::is_directory(given, failed);
  if (euidaccess(given.c_str(), folder ? R_OK | X_OK : R_OK) != 0) {
    return path + ": " + std::strerror(errno);
  }
  const std::filesystem::path root = folder ? given : given.parent_path();
  files_use_roots(root.string(), {});
  const std::string name = R"(d:\)" + (folder ? std::string("prefs") : given.filename().string());
  const bool good = take_file(name.c_str()) || (folder && take_file(R"(d:\prefbak)"));
  files_use_roots({}, {});  // the lab has no drive: a run stores nothing
  if (good) return {};
  return path +
         (folder ? ": holds no file of settings that can be read, neither \"prefs\" nor \"prefbak\""
                 : ": isn't a file of settings, which begins with \"030P\"");
}

std::string settings_set(const std::string& assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string::npos) {
    return "\"" + assignment + "\": write \"NAME=VALUE\", as in \"Coins To Play=3\"";
  }
  const std::string name = assignment.substr(0, equals);
  const std::string text = assignment.substr(equals + 1);
  PrefIndex row{};
  if (!find(name, row) || is_text(row)) {
    return "there is no setting \"" + name + "\"; there are: " + names();
  }
  double value = 0.0;
  if (!number_of(text, value) ||
      (!is_real(row) && (value != std::floor(value) || std::fabs(value) > 1e6))) {
    return "\"" + name + "\" can't be \"" + text + "\": it takes " +
           (is_real(row) ? "a number" : "a whole number, On or Off");
  }
  if (is_real(row)) {
    prefs[row].float_value = static_cast<float>(value);
  } else {
    prefs[row].int_value = static_cast<std::int32_t>(value);
  }
  warn_if_not_offered(row);
  if (moves_the_bonus(row)) {
    paytable_row_update();
    bonus_value_reset();
  }
  return {};
}

std::string settings_use_row(int row) {
  if (row < 0 || row >= PAYTABLE_ROWS) {
    return "row " + std::to_string(row) + ": the paytable has rows 0 to " +
           std::to_string(PAYTABLE_ROWS - 1);
  }
  prefs[PREF_PAYOUT_PERCENT].float_value = 1.0F;
  const float whole = paytable_wanted();
  if (!(whole > 0.0F)) return "no percentage of nothing asks for a row: see \"Coin Value\"";
  prefs[PREF_PAYOUT_PERCENT].float_value = paytable_average(row) / whole;
  paytable_row_update();
  bonus_value_reset();
  if (paytable_row == row) return {};
  return "row " + std::to_string(row) + " can't be reached under these money settings";
}

std::string settings_complaint() {
  const auto less_than_one = [](PrefIndex row) { return pref_int(row) < 1; };
  if (!pref_on(PREF_FREEPLAY)) {
    for (const PrefIndex row : {PREF_COINS_TO_PLAY, PREF_FROGS_PER_GAME}) {
      if (less_than_one(row)) {
        return "\"" + std::string(prefs[row].name) +
               "\" must be 1 or more: nothing could be bought";
      }
    }
  }
  return {};
}

std::string settings_text(PrefIndex row) {
  char text[48];
  if (is_real(row)) {
    std::snprintf(text, sizeof text, "%g", static_cast<double>(pref_float(row)));
  } else {
    std::snprintf(text, sizeof text, "%d", pref_int(row));
  }
  return text;
}
