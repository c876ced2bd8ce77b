#include "books/store_report.h"

#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/clock.h"  // clock_ms
#include "platform/files.h"  // files_path

namespace {

constexpr std::int64_t HOUR_MS = 3600000;

struct StoreReport {
  std::map<std::string, std::string, std::less<>> failing;  // file, and why
  std::int64_t since_ms = 0, next_line_ms = 0;
};

StoreReport& report() {
  static StoreReport instance;
  return instance;
}

void print_trouble(std::string_view name) {
  const auto& [file, why] = *report().failing.find(name);
  std::fprintf(stderr,
               "The books can't be stored: %s: %s. Make room or replace the disk; what is counted "
               "until then is lost when the machine is switched off.\n",
               files_path(file.c_str()).c_str(), why.c_str());
}

bool note_failure(const char* name, int error) {
  StoreReport& all = report();
  const std::int64_t now = clock_ms();
  const bool first = all.failing.empty();
  const bool changed =
      all.failing.insert_or_assign(name, std::generic_category().message(error)).second;
  if (first) all.since_ms = now;
  if (first || now >= all.next_line_ms) {
    print_trouble(name);
    all.next_line_ms = now + HOUR_MS;
  }
  return changed;
}

bool note_success(const char* name) {
  StoreReport& all = report();
  const auto found = all.failing.find(std::string_view(name));
  if (found == all.failing.end()) return false;
  all.failing.erase(found);
  if (!all.failing.empty()) return true;
  const auto minutes = static_cast<long long>((clock_ms() - all.since_ms) / 60000);
  std::fprintf(stderr, "The books are stored again, after %lld minutes.\n", minutes);
  return true;
}

}  // namespace

bool store_report(const char* name, int error) {
  return error != 0 ? note_failure(name, error) : note_success(name);
}

const char* store_trouble() {
  const auto& failing = report().failing;
  return failing.empty() ? "" : failing.begin()->second.c_str();
}

void store_report_reset() {
  report() = {};
}
