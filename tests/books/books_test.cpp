// The books on disk: which file is read, what a damaged one does, and what is stored when.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <utility>

#include "books/audit_time.h"
#include "books/audits.h"
#include "books/prefs.h"
#include "books/store_report.h"
#include "platform/files.h"
#include "platform/headless/clock_control.h"
#include "tests/open_files.h"
#include "tests/temp_folder.h"

using namespace std::string_literals;

namespace {

constexpr std::size_t PREFS_SIZE = 4 + 128 * PREF_COUNT, AUDITS_SIZE = 4 + 56 * AUDIT_COUNT,
                      HISTO_SIZE = 11204;

class Books : public testing::Test {
 protected:
  Books() {
    files_use_roots(drive.path(), drive.path());
    prefs_reset();
    audits_reset();
    audits_tick_reset();
  }
  ~Books() override { EXPECT_EQ(open_files(), open_at_first) << "a file was left open"; }

  TempFolder drive;
  std::ptrdiff_t open_at_first = open_files();
};

// A row of a file: its number, kind and name, then its values; zeros fill it.
std::string row_bytes(char number, char kind, std::string name, const std::string& values,
                      std::size_t size) {
  std::string row{number, 0, 0, 0, kind, 0, 0, 0};
  name.resize(32);
  row += name + values;
  row.resize(size);
  return row;
}

TEST_F(Books, FileFormatIsFixed) {
  prefs_load();
  audits_load();
  const std::string p = drive.read("prefs"), a = drive.read("audits"), h = drive.read("histo");
  ASSERT_EQ(p.size(), PREFS_SIZE);
  EXPECT_EQ(p.substr(0, 4), "030P");
  EXPECT_EQ(p.substr(4 + 8 * 128, 128),
            row_bytes(8, 0, "Timeout (Seconds)", "\xff\xff\xff\xff", 128));
  EXPECT_EQ(p.substr(4 + 19 * 128, 128),
            row_bytes(19, 0x10, "Tickets Per Game", "\0\0\0\0\0\0\x20\x42"s, 128));
  ASSERT_EQ(a.size(), AUDITS_SIZE);
  EXPECT_EQ(a.substr(0, 4), "810A");
  EXPECT_EQ(a.substr(4, 56), row_bytes(0, 0x20, "Time Game On", "", 56));
  EXPECT_EQ(a.substr(4 + 14 * 56, 56), row_bytes(14, 0, "Boot Count", "\1", 56));
  EXPECT_EQ(a.substr(4 + 57 * 56), row_bytes(57, 0, "Capped Tickets Right", "", 56));
  EXPECT_EQ(h.size(), HISTO_SIZE);
  EXPECT_EQ(h.substr(0, 4), "500H");
}

enum FileState { GOOD, MISSING, WRONG_MAGIC, SHORT, LONGER };

// A short file ends in the middle of row 10.
std::string in_state(const std::string& good, FileState state, std::size_t row_size) {
  if (state == WRONG_MAGIC) return "XXXX" + good.substr(4);
  if (state == SHORT) return good.substr(0, 4 + 10 * row_size + row_size / 2);
  return state == LONGER ? good + std::string(100, 'z') : good;
}

// What is loaded, if the row lies behind the cut of a short file.
int loaded(FileState main, int in_main, FileState backup, int in_backup, int built_in) {
  if (main != MISSING && main != WRONG_MAGIC) return main == SHORT ? built_in : in_main;
  if (backup != MISSING && backup != WRONG_MAGIC) return backup == SHORT ? built_in : in_backup;
  return built_in;
}

// Every state of the main file with every state of the backup. A good magic decides; rows that a
// short file lacks are built in; afterwards both files are whole and alike.
TEST_F(Books, LoadFromMainThenBackup) {
  const struct {
    const char *main, *backup;
    std::size_t row_size, size;
    void (*store)(int value);
    void (*load)();
    int (*value)();
    int built_in;
  } books[] = {{"prefs", "prefbak", 128, PREFS_SIZE,
                [](int volume) {
                  prefs[PREF_VOLUME].int_value = volume;
                  prefs_save();
                },
                prefs_load, [] { return pref_int(PREF_VOLUME); }, 16},
               {"audits", "audbak", 56, AUDITS_SIZE,
                [](int bugs) {
                  audits[AUDIT_BUGS].count = bugs;
                  audits_save();
                },
                audits_load, [] { return audit_count(AUDIT_BUGS); }, 0}};
  constexpr FileState STATES[] = {GOOD, MISSING, WRONG_MAGIC, SHORT, LONGER};
  for (const auto& book : books) {
    book.store(3);
    const std::string in_main = drive.read(book.main);
    book.store(5);
    const std::string in_backup = drive.read(book.main);
    const auto put = [&](const char* name, const std::string& good, FileState state) {
      std::filesystem::remove(drive.file(name));
      if (state != MISSING) drive.write(name, in_state(good, state, book.row_size));
    };
    for (const FileState main : STATES) {
      for (const FileState backup : STATES) {
        SCOPED_TRACE(testing::Message() << book.main << " " << main << ", backup " << backup);
        put(book.main, in_main, main);
        put(book.backup, in_backup, backup);
        book.load();
        EXPECT_EQ(book.value(), loaded(main, 3, backup, 5, book.built_in));
        EXPECT_EQ(drive.read(book.main).size(), book.size);
        EXPECT_EQ(drive.read(book.main), drive.read(book.backup));
      }
    }
  }
}

TEST_F(Books, HistogramHasNoBackup) {
  histogram_count(SIDE_LEFT, 0);
  histogram_count(SIDE_RIGHT, 1399);
  histogram_count(SIDE_RIGHT, 1400);
  histogram_count(SIDE_LEFT, -1);
  audits_save();
  const std::string good = drive.read("histo");
  for (const auto& [file, left, right] : {std::tuple{good, 1U, 1U},
                                          {"500X" + good.substr(4), 0U, 0U},
                                          {good.substr(0, 5608), 1U, 0U}}) {
    drive.write("histo", file);
    audits_load();
    EXPECT_EQ(histogram[SIDE_LEFT][0], left);
    EXPECT_EQ(histogram[SIDE_RIGHT][1399], right);
    EXPECT_EQ(drive.read("histo").size(), HISTO_SIZE);
  }
}

TEST_F(Books, StoredNamesAreKeptUntilReset) {
  prefs_save();
  std::string file = drive.read("prefs");
  std::memcpy(file.data() + 4 + 8, "Gratis\0\0\0", 9);
  drive.write("prefs", file);
  prefs_load();
  EXPECT_STREQ(prefs[PREF_FREEPLAY].name, "Gratis");
  EXPECT_STREQ(prefs_defaults[PREF_FREEPLAY].name, "Freeplay");
  prefs_reset();
  EXPECT_STREQ(prefs[PREF_FREEPLAY].name, "Freeplay");
}

TEST_F(Books, BootClearsOnlyCountsSinceBoot) {
  for (auto& row : audits) {
    row.count = 7;
    row.time_ms = 7000;
  }
  audits_save();
  audits_load();
  EXPECT_EQ(audit_count(AUDIT_BOOT_COUNT), 8);
  for (int i = 0; i < AUDIT_COUNT; ++i) {
    const bool since_boot = i == 1 || (i >= 6 && i <= 9);
    const bool time = i == 1 || i == 8 || i == 9;
    if (i == AUDIT_BOOT_COUNT) continue;
    EXPECT_EQ(audits[i].count, since_boot && !time ? 0 : 7) << i;
    EXPECT_EQ(audits[i].time_ms, time ? 0 : 7000) << i;
  }
}

TEST_F(Books, CountersSaturate) {
  constexpr std::int32_t MOST = std::numeric_limits<std::int32_t>::max();
  constexpr std::int64_t LONGEST = std::numeric_limits<std::int64_t>::max();
  audits[AUDIT_BOOT_COUNT].count = MOST;
  audits[AUDIT_BUGS].count = std::numeric_limits<std::int32_t>::min();
  audits[AUDIT_TIME_GAME_ON].time_ms = LONGEST;
  histogram[SIDE_LEFT][7] = std::numeric_limits<std::uint32_t>::max();
  audits_save();
  audits_load();
  audit_add(AUDIT_BUGS, -1);
  audits_tick({17, {true, true}, {0, 0}, 0});
  histogram_count(SIDE_LEFT, 7);
  EXPECT_EQ(audit_count(AUDIT_BOOT_COUNT), MOST);
  EXPECT_EQ(audit_count(AUDIT_BUGS), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(audits[AUDIT_TIME_GAME_ON].time_ms, LONGEST);
  EXPECT_EQ(histogram[SIDE_LEFT][7], std::numeric_limits<std::uint32_t>::max());
}

// As a service may be started. The file of a store is the first one then.
TEST_F(Books, AreStoredWithStandardInputClosed) {
  const int input = dup(STDIN_FILENO);
  ASSERT_GE(input, 0);
  close(STDIN_FILENO);
  audits_save();
  dup2(input, STDIN_FILENO);
  close(input);
  EXPECT_TRUE(drive.has("audits"));
}

// The other files are stored. One line when it begins, one an hour while it lasts, one when it is
// over.
TEST_F(Books, FailingStoreIsReportedOnceAnHourUntilItWorks) {
  store_report_reset();
  headless_clock_reset();
  const auto said = [](void (*store)()) {
    testing::internal::CaptureStderr();
    store();
    return testing::internal::GetCapturedStderr();
  };
  for (const char* name : {"audits/full", "histo/full"}) {
    std::filesystem::create_directories(drive.file(name));
  }
  EXPECT_EQ(said(prefs_save), "");
  EXPECT_STREQ(store_trouble(), "");
  const std::string first = said(audits_save);
  EXPECT_EQ(std::ranges::count(first, '\n'), 1) << first << "two files fail, one line";
  EXPECT_NE(first.find(drive.file("audits") + ": Is a directory"), std::string::npos) << first;
  EXPECT_STREQ(store_trouble(), "Is a directory");
  EXPECT_TRUE(drive.has("audits/full"));
  EXPECT_FALSE(drive.has("audits.new"));
  EXPECT_EQ(drive.read("audbak").size(), AUDITS_SIZE);
  headless_clock_advance(3599999);
  EXPECT_EQ(said(audits_save), "");
  EXPECT_EQ(said(prefs_save), "") << "these can be stored, but that is no recovery";
  headless_clock_advance(1);
  EXPECT_EQ(std::ranges::count(said(audits_save), '\n'), 1);
  EXPECT_EQ(said(audits_save), "");
  std::filesystem::remove_all(drive.file("audits"));
  EXPECT_EQ(said(audits_save), "") << "the histogram still fails";
  std::filesystem::remove_all(drive.file("histo"));
  EXPECT_EQ(said(audits_save), "The books are stored again, after 60 minutes.\n");
  EXPECT_STREQ(store_trouble(), "");
  files_use_roots("", "");
  EXPECT_EQ(said(audits_save), "") << "without a drive there are no books to store";
}

TEST_F(Books, OccupiedTemporaryNameIsReplacedOrAvoided) {
  std::filesystem::create_directory(drive.file("prefs.new"));
  std::filesystem::create_directories(drive.file("audits.new/somebody's"));
  drive.write("audbak.new", std::string(9999, 'x'));
  drive.write("elsewhere", "not a book");
  std::filesystem::create_symlink(drive.file("elsewhere"), drive.file("prefbak.new"));
  prefs_load();
  audits_load();
  for (const char* name : {"prefs", "prefbak"}) EXPECT_EQ(drive.read(name).size(), PREFS_SIZE);
  for (const char* name : {"audits", "audbak"}) EXPECT_EQ(drive.read(name).size(), AUDITS_SIZE);
  EXPECT_EQ(drive.read("elsewhere"), "not a book");
  for (const char* name : {"prefs.new", "prefbak.new", "audits.new2", "audbak.new"}) {
    EXPECT_FALSE(drive.has(name)) << name;
  }
  EXPECT_TRUE(drive.has("audits.new/somebody's"));
}

TEST_F(Books, PathsStayBelowTheirRoot) {
  EXPECT_EQ(files_path(R"(d:\audits)"), drive.file("audits"));
  EXPECT_EQ(files_path(R"(images\fonts\x.tga)"), drive.file("images/fonts/x.tga"));
  EXPECT_EQ(files_path(R"(d:\..\audits)"), "");
  EXPECT_EQ(files_path(R"(images\..\..\x)"), "");
  EXPECT_EQ(files_path("/etc/passwd"), drive.file("etc/passwd"));
  EXPECT_EQ(store_open(R"(d:\..\x)"), nullptr);
}

// Ticks at random: each row of time, and the failures, beside their sums.
TEST_F(Books, TickAddsTimesExceptStalls) {
  std::mt19937 dice(1);
  const auto die = [&dice](unsigned sides) { return static_cast<int>(dice() % sides); };
  std::int64_t times[AUDIT_COUNT] = {}, now = 0;
  std::uint32_t failures = 0;
  for (int i = 0; i < 2000; ++i) {
    const int ms = die(20) == 0 ? 998 + die(4) : die(40);
    const AuditsTick tick{
        now += ms, {die(2) == 0, die(2) == 0}, {die(5), die(5)}, failures += die(10) / 9u};
    audits_tick(tick);
    if (ms < 1000) {
      times[0] += ms;  // "Time Game On", and since boot
      times[1] += ms;
      for (int side = 0; side < SIDE_COUNT; ++side) {
        times[4 + side] +=
            tick.idle[side] ? 0 : ms;  // played; the same since boot; then for each frog
        times[8 + side] += tick.idle[side] ? 0 : ms;
        times[10 + side] += static_cast<std::int64_t>(ms) * tick.live_frogs[side];
      }
    }
    for (int row = 0; row < AUDIT_COUNT; ++row) {
      ASSERT_EQ(audits[row].time_ms, times[row]) << row;
      ASSERT_EQ(audits[row].count, row == 18 ? static_cast<int>(failures) : 0) << row;
    }
  }
}

// The built-in rows are on the screens of operator mode: tests/operator/screens.txt.
TEST(Currency, HasItsCodesInTheOrderOfTheFiles) {
  std::string codes;
  for (const char* code : currency_codes) codes += code + std::string(" ");
  EXPECT_EQ(codes, "USD AUD CAD EUR GBP DEM FRF JPY NLG ITL CHF BRL DKK MXN RUR KRW CNY ");
}

TEST(AuditTime, HasHoursFromTheFirstOneOn) {
  const std::pair<std::int64_t, const char*> rows[] = {
      {0, "0:00.00"},         {61500, "1:01.50"},      {3599000, "59:59.00"},
      {3600000, "1:00:0.00"}, {7199250, "1:59:59.25"}, {360000000, "100:00:0.00"}};
  for (const auto& [ms, text] : rows) {
    char buffer[AUDIT_TIME_SIZE];
    audit_format_time(ms, buffer);
    EXPECT_STREQ(buffer, text);
  }
}

// While a frog is in flight it is put off a minute at a time.
TEST_F(Books, PeriodicStoreWaitsForIdle) {
  const auto tick = [&](std::int64_t at, bool idle) {
    std::filesystem::remove(drive.file("audits"));
    audits_tick({at, {true, idle}, {0, 0}, 0});
    return drive.has("audits");
  };
  EXPECT_FALSE(tick(599999, true));
  EXPECT_FALSE(tick(600000, false));
  EXPECT_FALSE(tick(659999, true));
  EXPECT_TRUE(tick(660000, true));
  EXPECT_FALSE(tick(660017, true));
  EXPECT_TRUE(tick(1260000, true));
}

}  // namespace
