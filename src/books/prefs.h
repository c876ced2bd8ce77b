// The operator's settings, in memory as on disk.
#pragma once

#include <cstdint>

#include "books/settings.h"   // PrefIndex
#include "platform/shared.h"  // Shared

struct PrefRow {  // 128 bytes, little-endian on disk
  std::uint32_t index;
  std::uint32_t flags;  // PREF_SHOWS_...
  char name[32];        // display name, zero-terminated
  Shared<std::int32_t> int_value;
  Shared<float> float_value;
  char text_value[80];  // zero-terminated
};
static_assert(sizeof(PrefRow) == 128);

enum PrefFlags : std::uint32_t {
  PREF_SHOWS_FLOAT = 0x10,
  PREF_SHOWS_CURRENCY = 0x20,  // int_value is an index of currency_codes
  PREF_SHOWS_TEXT = 0x40,
};

enum CurrencyUnit {
  CURRENCY_COINS = 0,
  CURRENCY_DOLLARS = 1,
  CURRENCY_EURO = 2,
  CURRENCY_SWIPES = 3
};

using Prefs = PrefRow[PREF_COUNT];

extern Prefs prefs;           // one writer: first start-up, then the game thread
extern Prefs prefs_defaults;  // the built-in rows, valid after prefs_load
extern const char currency_codes[17][8];

// Loads the table from "d:\prefs", or else from "d:\prefbak"; without both, keeps the built-in
// rows. Stores both files. Start-up, before anything reads a setting.
void prefs_load();

// Notes changed settings in the journal, and stores the table in "d:\prefs", then "d:\prefbak".
// Skips a file that can't be written.
void prefs_save();

// Restores the built-in rows in memory, without storing.
void prefs_reset();

inline std::int32_t pref_int(PrefIndex row) {
  return prefs[row].int_value;
}
inline float pref_float(PrefIndex row) {
  return prefs[row].float_value;
}
inline bool pref_on(PrefIndex row) {
  return prefs[row].int_value != 0;
}
