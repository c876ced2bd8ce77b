#include "tools/books/moment.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace {

std::string formatted(const char* format, std::time_t seconds, bool utc) {
  std::tm parts{};
  if (utc) {
    gmtime_r(&seconds, &parts);
  } else {
    localtime_r(&seconds, &parts);
  }
  char text[64];
  return {text, std::strftime(text, sizeof text, format, &parts)};
}

}  // namespace

std::int64_t moment_now() {
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(since).count();
}

bool moment_from_journal(std::string_view text, std::int64_t& utc_ms) {
  constexpr std::string_view FORM = "dddd-dd-ddTdd:dd:dd.dddZ";
  if (text.size() != FORM.size()) return false;
  for (std::size_t i = 0; i < FORM.size(); ++i) {
    if (FORM[i] == 'd' ? text[i] < '0' || text[i] > '9' : text[i] != FORM[i]) return false;
  }
  const auto number = [&](std::size_t at, std::size_t digits) {
    int value = 0;
    for (const char digit : text.substr(at, digits)) value = value * 10 + (digit - '0');
    return value;
  };
  const std::chrono::year_month_day date{std::chrono::year(number(0, 4)),
                                         std::chrono::month(static_cast<unsigned>(number(5, 2))),
                                         std::chrono::day(static_cast<unsigned>(number(8, 2)))};
  const int hour = number(11, 2), minute = number(14, 2), second = number(17, 2);
  if (!date.ok() || hour > 23 || minute > 59 || second > 60) return false;
  const std::int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  utc_ms = (((days * 24 + hour) * 60 + minute) * 60 + second) * 1000 + number(20, 3);
  return true;
}

std::string moment_for_files(std::int64_t utc_ms) {
  char ms[8];
  std::snprintf(ms, sizeof ms, ".%03dZ", static_cast<int>(utc_ms % 1000));
  return formatted("%Y-%m-%dT%H:%M:%S", utc_ms / 1000, true) + ms;
}

bool moment_from_words(const std::string& text, std::int64_t& utc_ms) {
  if (moment_from_journal(text, utc_ms)) return true;
  for (const char* form : {"%Y-%m-%d", "%Y-%m-%d %H:%M", "%Y-%m-%d %H:%M:%S"}) {
    std::tm parts{};
    const char* const end = strptime(text.c_str(), form, &parts);
    if (end == nullptr || *end != '\0') continue;
    parts.tm_isdst = -1;
    utc_ms = static_cast<std::int64_t>(std::mktime(&parts)) * 1000;
    return true;
  }
  return false;
}

std::string moment_for_people(std::int64_t utc_ms) {
  return formatted("%Y-%m-%d %H:%M:%S", utc_ms / 1000, false);
}
