#include "cabinet/books_file.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "books/settings.h"  // SETTINGS
#include "cabinet/board.h"   // LEFT

namespace {

struct Format {
  const char* magic;
  std::size_t rows, row_bytes;
};
constexpr Format AUDIT_FILE = {"810A", AUDIT_COUNT, 56};
constexpr Format PREF_FILE = {"030P", PREF_COUNT, 128};

// Positions in a row.
constexpr std::size_t FLAGS_AT = 4, NAME_AT = 8, NAME_BYTES = 32, INT_AT = 40, FLOAT_AT = 44;
constexpr std::size_t AUDIT_TIME_AT = 48, PREF_TEXT_AT = 48, PREF_TEXT_BYTES = 80;
constexpr std::uint32_t IS_FLOAT = 0x10, IS_TIME = 0x20, IS_TEXT = 0x40;

// Numbers in the files are little-endian.
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

// A float as the decimal number that was meant: 0.4, not 0.4000000059.
double get_float(const std::string& bytes, std::size_t at) {
  const auto bits = static_cast<std::uint32_t>(get(bytes, at, 4));
  float value;
  std::memcpy(&value, &bits, sizeof value);
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", static_cast<double>(value));
  return std::strtod(text, nullptr);
}

// The whole file. Empty on an error, with the reason in `why`.
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

// The offset of the row with this name, 0 if there is none.
std::size_t find_row(const std::string& bytes, const Format& format, const std::string& name) {
  for (std::size_t i = 0; i < format.rows; ++i) {
    const std::size_t at = 4 + i * format.row_bytes;
    const char* text = bytes.data() + at + NAME_AT;
    if (std::string(text, strnlen(text, NAME_BYTES)) == name) return at;
  }
  return 0;
}

std::string new_prefs() {
  std::string bytes(4 + PREF_FILE.rows * PREF_FILE.row_bytes, '\0');
  bytes.replace(0, 4, PREF_FILE.magic);
  std::size_t at = 4;
  std::uint32_t index = 0;
  for (const Setting& setting : SETTINGS) {
    put(bytes, at, index++);
    bytes.replace(at + NAME_AT, std::strlen(setting.name), setting.name);
    if (setting_is_real(setting)) {
      put(bytes, at + FLAGS_AT, IS_FLOAT);
      put_float(bytes, at + FLOAT_AT, static_cast<float>(setting.built_in));
    } else {
      put(bytes, at + FLAGS_AT, setting.view == VIEW_TEXT ? IS_TEXT : 0);
      put(bytes, at + INT_AT,
          static_cast<std::uint32_t>(static_cast<std::int32_t>(setting.built_in)));
    }
    at += PREF_FILE.row_bytes;
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
  if ((flags & IS_TEXT) != 0) {
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
  BooksValue result = look_up(drive + "/audits", AUDIT_FILE, name, bytes, at);
  if (!result.found) return result;
  const auto flags = static_cast<std::uint32_t>(get(bytes, at + FLAGS_AT, 4));
  if ((flags & IS_TIME) != 0) {
    result.value =
        static_cast<double>(static_cast<std::int64_t>(get(bytes, at + AUDIT_TIME_AT, 8)));
  } else if ((flags & IS_FLOAT) != 0) {
    result.value = get_float(bytes, at + FLOAT_AT);
  } else {
    result.value = static_cast<std::int32_t>(get(bytes, at + INT_AT, 4));
  }
  return result;
}

BooksValue books_audit(const std::string& drive, AuditIndex row, int side) {
  return books_audit(drive, std::string(audit_name(row)) + (side == LEFT ? " Left" : " Right"));
}

BooksValue books_pref(const std::string& drive, const std::string& name) {
  std::string bytes;
  std::size_t at = 0;
  BooksValue result = look_up(drive + "/prefs", PREF_FILE, name, bytes, at);
  if (!result.found) return result;
  const auto flags = static_cast<std::uint32_t>(get(bytes, at + FLAGS_AT, 4));
  if ((flags & IS_TEXT) != 0) {
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
  std::string bytes = read_books(drive + "/prefs", PREF_FILE, why);
  if (bytes.empty()) bytes = read_books(drive + "/prefbak", PREF_FILE, why);
  if (bytes.empty()) bytes = new_prefs();
  const std::size_t at = find_row(bytes, PREF_FILE, name);
  if (at == 0) return "there is no setting \"" + name + "\"";
  if (!set_value(bytes, at, value)) return "\"" + value + "\" is not a value of \"" + name + "\"";
  for (const char* file : {"/prefs", "/prefbak"}) {
    std::ofstream out(drive + file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) return drive + file + " can't be written";
  }
  return {};
}
