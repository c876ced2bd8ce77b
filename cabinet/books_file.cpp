#include "cabinet/books_file.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

namespace {

struct Format {
  const char* magic;
  std::size_t rows, row_bytes;
};
constexpr Format AUDITS = {"810A", 58, 56};
constexpr Format PREFS = {"030P", 25, 128};

// Places within a row.
constexpr std::size_t FLAGS_AT = 4, NAME_AT = 8, NAME_BYTES = 32, INT_AT = 40, FLOAT_AT = 44;
constexpr std::size_t AUDIT_TIME_AT = 48, PREF_TEXT_AT = 48, PREF_TEXT_BYTES = 80;
constexpr std::uint32_t IS_FLOAT = 0x10, AUDIT_IS_TIME = 0x20, PREF_IS_TEXT = 0x40;

struct NewPref {
  const char* name;
  std::uint32_t flags;
  std::int32_t whole;
  float real;
};

constexpr NewPref NEW_PREFS[25] = {
    {"Freeplay", 0, 0, 0},
    {"Coins To Play", 0, 1, 0},
    {"Frogs Per Game", 0, 1, 0},
    {"Coin Value", IS_FLOAT, 0, 0.25F},
    {"Ticket Value", IS_FLOAT, 0, 0.01F},
    {"Coins Per Swipe", 0, 2, 0},
    {"Coins Per Swipe Pulse", 0, 1, 0},
    {"Currency Unit", 0, 0, 0},
    {"Timeout (Seconds)", 0, -1, 0},
    {"Fixed Ticket", 0, 0, 0},
    {"Fixed Tickets Per Game", 0, 10, 0},
    {"Ticket Use", 0, 1, 0},
    {"Minimum Tickets", 0, 1, 0},
    {"Maximum Tickets", 0, 2500, 0},
    {"Payout Percent", IS_FLOAT, 0, 0.4F},
    {"Bonus Value", 0, 250, 0},
    {"Boost Bonus", 0, 0, 0},
    {"Two Point Tickets", 0, 0, 0},
    {"Lockout Coils", 0, 0, 0},
    {"Tickets Per Game", IS_FLOAT, 0, 40.0F},
    {"Volume", 0, 16, 0},
    {"Attract Volume", 0, 8, 0},
    {"Build Date", PREF_IS_TEXT, 0, 0},
    {"Build Time", PREF_IS_TEXT, 0, 0},
    {"Check CRC", 0, 1, 0},
};

// Numbers stand little-endian in the files.
std::uint64_t get(const std::string& bytes, std::size_t at, std::size_t size) {
  std::uint64_t value = 0;
  for (std::size_t i = size; i-- > 0;) {
    value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
  }
  return value;
}

void put(std::string& bytes, std::size_t at, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(value >> 8 * i);
}

void put_float(std::string& bytes, std::size_t at, float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  put(bytes, at, bits);
}

// A float as the decimal number that was meant, so that 0.4 is 0.4.
double get_float(const std::string& bytes, std::size_t at) {
  const auto bits = static_cast<std::uint32_t>(get(bytes, at, 4));
  float value;
  std::memcpy(&value, &bits, sizeof value);
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", static_cast<double>(value));
  return std::strtod(text, nullptr);
}

// The whole file, or nothing with the reason in `why`.
std::string read_books(const std::string& path, const Format& format, std::string& why) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    why = "there is no " + path;
    return {};
  }
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (bytes.size() != 4 + format.rows * format.row_bytes ||
      bytes.compare(0, 4, format.magic) != 0) {
    why = path + " isn't whole";
    return {};
  }
  return bytes;
}

// Where the row with this name begins, 0 if there is none.
std::size_t find_row(const std::string& bytes, const Format& format, const std::string& name) {
  for (std::size_t i = 0; i < format.rows; ++i) {
    const std::size_t at = 4 + i * format.row_bytes;
    const char* text = bytes.data() + at + NAME_AT;
    if (std::string(text, strnlen(text, NAME_BYTES)) == name) return at;
  }
  return 0;
}

std::string new_prefs() {
  std::string bytes(4 + PREFS.rows * PREFS.row_bytes, '\0');
  bytes.replace(0, 4, PREFS.magic);
  std::size_t at = 4;
  std::uint32_t index = 0;
  for (const NewPref& row : NEW_PREFS) {
    put(bytes, at, index++);
    put(bytes, at + FLAGS_AT, row.flags);
    bytes.replace(at + NAME_AT, std::strlen(row.name), row.name);
    put(bytes, at + INT_AT, static_cast<std::uint32_t>(row.whole));
    put_float(bytes, at + FLOAT_AT, row.real);
    at += PREFS.row_bytes;
  }
  return bytes;
}

BooksValue look_up(const std::string& path, const Format& format, const std::string& name,
                   std::string& bytes, std::size_t& at) {
  BooksValue result;
  bytes = read_books(path, format, result.why);
  if (bytes.empty()) return result;
  at = find_row(bytes, format, name);
  result.found = at != 0;
  if (!result.found) result.why = "no row \"" + name + "\" in " + path;
  return result;
}

bool set_value(std::string& bytes, std::size_t at, const std::string& value) {
  const auto flags = static_cast<std::uint32_t>(get(bytes, at + FLAGS_AT, 4));
  if ((flags & PREF_IS_TEXT) != 0) {
    if (value.size() >= PREF_TEXT_BYTES) return false;
    bytes.replace(at + PREF_TEXT_AT, PREF_TEXT_BYTES,
                  value + std::string(PREF_TEXT_BYTES - value.size(), '\0'));
    return true;
  }
  char* end = nullptr;
  if ((flags & IS_FLOAT) != 0) {
    const float real = std::strtof(value.c_str(), &end);
    put_float(bytes, at + FLOAT_AT, real);
  } else {
    const long whole = std::strtol(value.c_str(), &end, 0);
    put(bytes, at + INT_AT, static_cast<std::uint32_t>(whole));
  }
  return !value.empty() && *end == '\0';
}

}  // namespace

BooksValue books_audit(const std::string& drive, const std::string& name) {
  std::string bytes;
  std::size_t at = 0;
  BooksValue result = look_up(drive + "/audits", AUDITS, name, bytes, at);
  if (!result.found) return result;
  const auto flags = static_cast<std::uint32_t>(get(bytes, at + FLAGS_AT, 4));
  if ((flags & AUDIT_IS_TIME) != 0) {
    result.value =
        static_cast<double>(static_cast<std::int64_t>(get(bytes, at + AUDIT_TIME_AT, 8)));
  } else if ((flags & IS_FLOAT) != 0) {
    result.value = get_float(bytes, at + FLOAT_AT);
  } else {
    result.value = static_cast<std::int32_t>(get(bytes, at + INT_AT, 4));
  }
  return result;
}

BooksValue books_pref(const std::string& drive, const std::string& name) {
  std::string bytes;
  std::size_t at = 0;
  BooksValue result = look_up(drive + "/prefs", PREFS, name, bytes, at);
  if (!result.found) return result;
  const auto flags = static_cast<std::uint32_t>(get(bytes, at + FLAGS_AT, 4));
  if ((flags & PREF_IS_TEXT) != 0) {
    result.found = false;
    result.why = "\"" + name + "\" is a text";
  } else if ((flags & IS_FLOAT) != 0) {
    result.value = get_float(bytes, at + FLOAT_AT);
  } else {
    result.value = static_cast<std::int32_t>(get(bytes, at + INT_AT, 4));
  }
  return result;
}

std::string books_set_pref(const std::string& drive, const std::string& name,
                           const std::string& value) {
  std::string why;
  std::string bytes = read_books(drive + "/prefs", PREFS, why);
  if (bytes.empty()) bytes = read_books(drive + "/prefbak", PREFS, why);
  if (bytes.empty()) bytes = new_prefs();
  const std::size_t at = find_row(bytes, PREFS, name);
  if (at == 0) return "there is no setting \"" + name + "\"";
  if (!set_value(bytes, at, value)) return "\"" + value + "\" is no value of \"" + name + "\"";
  for (const char* file : {"/prefs", "/prefbak"}) {
    std::ofstream out(drive + file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) return drive + file + " can't be written";
  }
  return {};
}
