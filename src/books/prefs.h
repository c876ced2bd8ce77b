// The operator's settings: 25 rows, in memory as on disk.
#pragma once

#include <cstdint>

#include "platform/shared.h"  // Shared

struct PrefRow {  // 128 bytes, little-endian on disk
  std::uint32_t index;
  std::uint32_t flags;  // PREF_SHOWS_...
  char name[32];        // display name, zero-ended
  Shared<std::int32_t> int_value;
  Shared<float> float_value;
  char text_value[80];  // zero-ended
};
static_assert(sizeof(PrefRow) == 128);

enum PrefFlags : std::uint32_t {
  PREF_SHOWS_FLOAT = 0x10,
  PREF_SHOWS_CURRENCY = 0x20,  // int_value is an index of currency_codes
  PREF_SHOWS_TEXT = 0x40,
};

enum PrefIndex {
  PREF_FREEPLAY = 0,
  PREF_COINS_TO_PLAY = 1,
  PREF_FROGS_PER_GAME = 2,
  PREF_COIN_VALUE = 3,
  PREF_TICKET_VALUE = 4,
  PREF_COINS_PER_SWIPE = 5,
  PREF_COINS_PER_SWIPE_PULSE = 6,
  PREF_CURRENCY_UNIT = 7,
  PREF_TIMEOUT_SECONDS = 8,
  PREF_FIXED_TICKET = 9,
  PREF_FIXED_TICKETS_PER_GAME = 10,
  PREF_TICKET_USE = 11,
  PREF_MINIMUM_TICKETS = 12,
  PREF_MAXIMUM_TICKETS = 13,
  PREF_PAYOUT_PERCENT = 14,
  PREF_BONUS_VALUE = 15,
  PREF_BOOST_BONUS = 16,
  PREF_TWO_POINT_TICKETS = 17,
  PREF_LOCKOUT_COILS = 18,
  PREF_TICKETS_PER_GAME = 19,
  PREF_VOLUME = 20,
  PREF_ATTRACT_VOLUME = 21,
  PREF_BUILD_DATE = 22,
  PREF_BUILD_TIME = 23,
  PREF_CHECK_CRC = 24,
  PREF_COUNT = 25,
};

enum CurrencyUnit {
  CURRENCY_COINS = 0,
  CURRENCY_DOLLARS = 1,
  CURRENCY_EURO = 2,
  CURRENCY_SWIPES = 3
};

using Prefs = PrefRow[PREF_COUNT];

extern Prefs prefs;           // one writer: start-up, then the game thread
extern Prefs prefs_defaults;  // the built-in rows, from prefs_load on
extern const char currency_codes[17][8];

// Loads the table from "d:\prefs", else "d:\prefbak", else keeps the built-in rows, and stores both
// files. Start-up, before anything reads a setting.
void prefs_load();

// Stores the table in "d:\prefs", then "d:\prefbak". A file that can't be written is skipped.
void prefs_save();

// Puts the built-in rows back into memory, without storing.
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
