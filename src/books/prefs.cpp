#include "books/prefs.h"

#include <bit>
#include <cstdint>
#include <cstring>

#include "books/book_list.h"
#include "books/journal.h"

namespace {

constexpr PrefRow row_of(const Setting& setting) {
  const bool real = setting_is_real(setting);
  PrefRow row{static_cast<std::uint32_t>(setting.pref),
              real                        ? PREF_SHOWS_FLOAT
              : setting.view == VIEW_TEXT ? PREF_SHOWS_TEXT
                                          : 0U,
              {},
              real ? 0 : static_cast<std::int32_t>(setting.built_in),
              real ? static_cast<float>(setting.built_in) : 0.0F,
              {}};
  for (int i = 0; setting.name[i] != 0; ++i) row.name[i] = setting.name[i];
  return row;
}

// Word by word, because other threads may be reading.
void put_built_in(Prefs& table) {
  for (const Setting& setting : SETTINGS) {
    const PrefRow from = row_of(setting);
    PrefRow& to = table[from.index];
    to.index = from.index;
    to.flags = from.flags;
    std::memcpy(to.name, from.name, sizeof to.name);
    to.int_value = from.int_value.word;
    to.float_value = from.float_value.word;
    std::memcpy(to.text_value, from.text_value, sizeof to.text_value);
  }
}

constinit std::int32_t noted[PREF_COUNT]{};  // the values as the journal knows them

// A real value as the bits of its float.
std::int32_t value_of(const Setting& setting) {
  return setting_is_real(setting) ? std::bit_cast<std::int32_t>(pref_float(setting.pref))
                                  : pref_int(setting.pref);
}

void note_changes() {
  for (const Setting& setting : SETTINGS) {
    if (setting.view == VIEW_TEXT) continue;
    std::int32_t& before = noted[setting.pref];
    const std::int32_t now = value_of(setting);
    if (now != before)
      journal_put(JOURNAL_SETTING, {static_cast<std::int32_t>(setting.pref), before, now});
    before = now;
  }
}

}  // namespace

Prefs prefs;
Prefs prefs_defaults;

const char currency_codes[17][8] = {"USD", "AUD", "CAD", "EUR", "GBP", "DEM", "FRF", "JPY", "NLG",
                                    "ITL", "CHF", "BRL", "DKK", "MXN", "RUR", "KRW", "CNY"};

void prefs_reset() {
  put_built_in(prefs);
}

void prefs_load() {
  put_built_in(prefs_defaults);
  prefs_reset();
  if (!book_load(BOOK_PREFS, prefs, sizeof prefs)) {
    book_load(BOOK_PREFS_BACKUP, prefs, sizeof prefs);
  }
  prefs_save();
}

void prefs_save() {
  note_changes();
  book_keep(BOOK_PREFS, prefs, sizeof prefs);
  book_keep(BOOK_PREFS_BACKUP, prefs, sizeof prefs);
}
