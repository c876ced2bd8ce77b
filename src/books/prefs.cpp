#include "books/prefs.h"

#include <cstring>

#include "books/book_file.h"  // book_read, book_store

namespace {

constexpr char MAGIC[] = "030P";
constexpr const char* MAIN_FILE = R"(d:\prefs)";
constexpr const char* BACKUP_FILE = R"(d:\prefbak)";

constexpr PrefRow row(std::uint32_t index, std::uint32_t flags, const char* name,
                      std::int32_t int_value, float float_value) {
  PrefRow made{index, flags, {}, int_value, float_value, {}};
  for (int i = 0; name[i] != 0; ++i) made.name[i] = name[i];
  return made;
}
constexpr PrefRow whole(std::uint32_t index, const char* name, std::int32_t value) {
  return row(index, 0, name, value, 0.0F);
}
constexpr PrefRow real(std::uint32_t index, const char* name, float value) {
  return row(index, PREF_SHOWS_FLOAT, name, 0, value);
}
constexpr PrefRow text(std::uint32_t index, const char* name) {
  return row(index, PREF_SHOWS_TEXT, name, 0, 0.0F);
}

constexpr Prefs BUILT_IN = {
    whole(0, "Freeplay", 0),
    whole(1, "Coins To Play", 1),
    whole(2, "Frogs Per Game", 1),
    real(3, "Coin Value", 0.25F),
    real(4, "Ticket Value", 0.01F),
    whole(5, "Coins Per Swipe", 2),
    whole(6, "Coins Per Swipe Pulse", 1),
    whole(7, "Currency Unit", 0),
    whole(8, "Timeout (Seconds)", -1),
    whole(9, "Fixed Ticket", 0),
    whole(10, "Fixed Tickets Per Game", 10),
    whole(11, "Ticket Use", 1),
    whole(12, "Minimum Tickets", 1),
    whole(13, "Maximum Tickets", 2500),
    real(14, "Payout Percent", 0.4F),
    whole(15, "Bonus Value", 250),
    whole(16, "Boost Bonus", 0),
    whole(17, "Two Point Tickets", 0),
    whole(18, "Lockout Coils", 0),
    real(19, "Tickets Per Game", 40.0F),
    whole(20, "Volume", 16),
    whole(21, "Attract Volume", 8),
    text(22, "Build Date"),
    text(23, "Build Time"),
    whole(24, "Check CRC", 1),
};

constexpr bool rows_in_order() {
  for (std::uint32_t i = 0; i < PREF_COUNT; ++i) {
    if (BUILT_IN[i].index != i) return false;
  }
  return true;
}
static_assert(rows_in_order());

// Word by word where others may be reading.
void put_built_in(Prefs& table) {
  for (const PrefRow& from : BUILT_IN) {
    PrefRow& to = table[from.index];
    to.index = from.index;
    to.flags = from.flags;
    std::memcpy(to.name, from.name, sizeof to.name);
    to.int_value = from.int_value.word;
    to.float_value = from.float_value.word;
    std::memcpy(to.text_value, from.text_value, sizeof to.text_value);
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
  if (!book_read(MAIN_FILE, MAGIC, prefs, sizeof prefs)) {
    book_read(BACKUP_FILE, MAGIC, prefs, sizeof prefs);
  }
  prefs_save();
}

void prefs_save() {
  book_store(MAIN_FILE, MAGIC, prefs, sizeof prefs);
  book_store(BACKUP_FILE, MAGIC, prefs, sizeof prefs);
}
