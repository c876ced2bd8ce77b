// The books on disk: which file is read, what a damaged one does, and what is stored when.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <iterator>
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

  // The bytes of a settings file with this volume.
  std::string prefs_file(int volume) {
    prefs_reset();
    prefs[PREF_VOLUME].int_value = volume;
    prefs_save();
    std::string bytes = drive.read("prefs");
    clear();
    return bytes;
  }
  std::string audits_file(int bugs) {
    audits_reset();
    audits[AUDIT_BUGS].count = bugs;
    audits_save();
    std::string bytes = drive.read("audits");
    clear();
    return bytes;
  }
  void clear() {
    for (const char* name : {"prefs", "prefbak", "audits", "audbak", "histo"}) {
      std::filesystem::remove(drive.file(name));
    }
    prefs_reset();
    audits_reset();
  }

  TempFolder drive;
  std::ptrdiff_t open_at_first = open_files();
};

enum FileState { GOOD, MISSING, WRONG_MAGIC, SHORT, LONGER };

// A short file ends in the middle of row 10.
std::string in_state(const std::string& good, FileState state, std::size_t row_size) {
  switch (state) {
    case WRONG_MAGIC:
      return "XXXX" + good.substr(4);
    case SHORT:
      return good.substr(0, 4 + 10 * row_size + row_size / 2);
    case LONGER:
      return good + std::string(100, 'z');
    default:
      return good;
  }
}

TEST_F(Books, FileFormatIsFixed) {
  prefs_load();
  audits_load();
  const std::string p = drive.read("prefs");
  ASSERT_EQ(p.size(), PREFS_SIZE);
  EXPECT_EQ(p.substr(0, 4), "030P");
  const char* timeout = p.data() + 4 + 8 * 128;
  EXPECT_EQ(std::memcmp(timeout, "\x08\0\0\0\0\0\0\0Timeout (Seconds)\0", 26), 0);
  EXPECT_EQ(std::memcmp(timeout + 40, "\xff\xff\xff\xff", 4), 0);
  const char* payout = p.data() + 4 + 14 * 128;
  float value = 0;
  std::memcpy(&value, payout + 44, 4);
  EXPECT_EQ(payout[4], 0x10);
  EXPECT_EQ(value, 0.4F);
  EXPECT_EQ(drive.read("prefbak"), p);

  const std::string a = drive.read("audits");
  ASSERT_EQ(a.size(), AUDITS_SIZE);
  EXPECT_EQ(a.substr(0, 4), "810A");
  EXPECT_EQ(a[4 + 4], 0x20) << "Time Game On is a time";
  const char* boots = a.data() + 4 + 14 * 56;
  EXPECT_STREQ(boots + 8, "Boot Count");
  EXPECT_EQ(boots[40], 1);
  EXPECT_STREQ(a.data() + 4 + 57 * 56 + 8, "Capped Tickets Right");
  EXPECT_EQ(drive.read("audbak"), a);

  const std::string h = drive.read("histo");
  EXPECT_EQ(h.size(), HISTO_SIZE);
  EXPECT_EQ(h.substr(0, 4), "500H");
}

// Every state of the main file with every state of the backup. A good magic decides; rows that a
// short file lacks are built in; afterwards both files are whole and alike.
template <typename Check>
void for_each_pair(Check check) {
  for (const FileState main : {GOOD, MISSING, WRONG_MAGIC, SHORT, LONGER}) {
    for (const FileState backup : {GOOD, MISSING, WRONG_MAGIC, SHORT, LONGER}) {
      SCOPED_TRACE(testing::Message() << "main " << main << ", backup " << backup);
      check(main, backup);
    }
  }
}

// What is loaded, if the row lies behind the cut of a short file.
int loaded(FileState main, int in_main, FileState backup, int in_backup, int built_in) {
  if (main != MISSING && main != WRONG_MAGIC) return main == SHORT ? built_in : in_main;
  if (backup != MISSING && backup != WRONG_MAGIC) return backup == SHORT ? built_in : in_backup;
  return built_in;
}

TEST_F(Books, LoadsPrefsFromMainThenBackup) {
  const std::string in_main = prefs_file(3), in_backup = prefs_file(5);
  for_each_pair([&](FileState main, FileState backup) {
    clear();
    if (main != MISSING) drive.write("prefs", in_state(in_main, main, 128));
    if (backup != MISSING) drive.write("prefbak", in_state(in_backup, backup, 128));
    prefs_load();
    EXPECT_EQ(pref_int(PREF_VOLUME), loaded(main, 3, backup, 5, 16));
    EXPECT_EQ(drive.read("prefs").size(), PREFS_SIZE);
    EXPECT_EQ(drive.read("prefs"), drive.read("prefbak"));
  });
}

TEST_F(Books, LoadsAuditsFromMainThenBackup) {
  const std::string in_main = audits_file(30), in_backup = audits_file(50);
  for_each_pair([&](FileState main, FileState backup) {
    clear();
    if (main != MISSING) drive.write("audits", in_state(in_main, main, 56));
    if (backup != MISSING) drive.write("audbak", in_state(in_backup, backup, 56));
    audits_load();
    EXPECT_EQ(audit_count(AUDIT_BUGS), loaded(main, 30, backup, 50, 0));
    EXPECT_EQ(audit_count(AUDIT_BOOT_COUNT), 1);
    EXPECT_EQ(drive.read("audits").size(), AUDITS_SIZE);
    EXPECT_EQ(drive.read("audits"), drive.read("audbak"));
  });
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
  std::string file = prefs_file(16);
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

TEST_F(Books, UnwritableFileIsSkipped) {
  std::filesystem::create_directories(drive.file("audits/full"));
  std::filesystem::create_directories(drive.file("prefs/full"));
  audits[AUDIT_BUGS].count = 9;
  audits_save();
  prefs_save();
  EXPECT_TRUE(drive.has("audits/full"));
  EXPECT_TRUE(drive.has("prefs/full"));
  EXPECT_FALSE(drive.has("audits.new"));
  EXPECT_EQ(drive.read("audbak").size(), AUDITS_SIZE);
  EXPECT_EQ(drive.read("prefbak").size(), PREFS_SIZE);
  EXPECT_EQ(drive.read("histo").size(), HISTO_SIZE);
}

// One line when it begins, one an hour while it lasts, one when it is over.
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

TEST_F(Books, FailingStoreIsReportedOnceAnHourUntilItWorks) {
  store_report_reset();
  headless_clock_reset();
  const auto said = [](void (*store)()) {
    testing::internal::CaptureStderr();
    store();
    return testing::internal::GetCapturedStderr();
  };
  EXPECT_EQ(said(audits_save), "");
  EXPECT_STREQ(store_trouble(), "");
  for (const char* name : {"audits/full", "histo/full"}) {
    std::filesystem::remove(drive.file(name).substr(0, drive.file(name).size() - 5));
    std::filesystem::create_directories(drive.file(name));
  }
  const std::string first = said(audits_save);
  EXPECT_EQ(std::ranges::count(first, '\n'), 1) << first << "two files fail, one line";
  EXPECT_NE(first.find(drive.file("audits") + ": Is a directory"), std::string::npos) << first;
  EXPECT_STREQ(store_trouble(), "Is a directory");
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

TEST_F(Books, BuiltInCountersAreThoseOfTheSecondCopy) {
  struct Row {
    const char* name;
    bool pair, time;
  };
  const Row rows[] = {{"Time Game On", false, true},
                      {"Time Since Boot", false, true},
                      {"Games Played", true, false},
                      {"Time Played", true, true},
                      {"Games Since Boot", true, false},
                      {"Time Since Boot", true, true},
                      {"Time Total Played", true, true},
                      {"Repeat Plays", true, false},
                      {"Boot Count", false, false},
                      {"Test Entry Count", false, false},
                      {"Watchdog Count", false, false},
                      {"Periodic Reboot Count", false, false},
                      {"I/O Checksum Failures", false, false},
                      {"Coin Drops", true, false},
                      {"Service Credits", false, false},
                      {"Tickets", true, false},
                      {"Tickets Owed", true, false},
                      {"Current Credits", true, false},
                      {"Current Coins", true, false},
                      {"Bugs", true, false},
                      {"Butterflies", true, false},
                      {"Bonuses", true, false},
                      {"Double Bonuses", true, false},
                      {"Jackpots", true, false},
                      {"Frees", true, false},
                      {"Bug Tickets", true, false},
                      {"Butterfly Tickets", true, false},
                      {"Bonus Tickets", true, false},
                      {"Double Bonus Tickets", true, false},
                      {"Jackpot Tickets", true, false},
                      {"Free Tickets", true, false},
                      {"Fixed Tickets", true, false},
                      {"Capped Tickets", true, false}};
  std::uint32_t number = 0;
  for (const Row& row : rows) {
    for (const char* side : {" Left", " Right"}) {
      if (!row.pair && side[1] == 'R') continue;
      const AuditRow& built = audits[number];
      EXPECT_EQ(built.index, number++);
      EXPECT_STREQ(built.name, (row.name + std::string(row.pair ? side : "")).c_str());
      EXPECT_EQ(built.flags, row.time ? 0x20u : 0u) << row.name;
    }
  }
  EXPECT_EQ(number, 58u);
  EXPECT_EQ(AUDIT_COUNT, 58);
}

TEST_F(Books, BuiltInSettingsAreThoseOfTheSecondCopy) {
  struct Row {
    const char* name;
    int whole;
    float real;
    std::uint32_t flags;
  };
  const Row rows[] = {{"Freeplay", 0, 0, 0},
                      {"Coins To Play", 1, 0, 0},
                      {"Frogs Per Game", 1, 0, 0},
                      {"Coin Value", 0, 0.25F, 0x10},
                      {"Ticket Value", 0, 0.01F, 0x10},
                      {"Coins Per Swipe", 2, 0, 0},
                      {"Coins Per Swipe Pulse", 1, 0, 0},
                      {"Currency Unit", 0, 0, 0},
                      {"Timeout (Seconds)", -1, 0, 0},
                      {"Fixed Ticket", 0, 0, 0},
                      {"Fixed Tickets Per Game", 10, 0, 0},
                      {"Ticket Use", 1, 0, 0},
                      {"Minimum Tickets", 1, 0, 0},
                      {"Maximum Tickets", 2500, 0, 0},
                      {"Payout Percent", 0, 0.4F, 0x10},
                      {"Bonus Value", 250, 0, 0},
                      {"Boost Bonus", 0, 0, 0},
                      {"Two Point Tickets", 0, 0, 0},
                      {"Lockout Coils", 0, 0, 0},
                      {"Tickets Per Game", 0, 40.0F, 0x10},
                      {"Volume", 16, 0, 0},
                      {"Attract Volume", 8, 0, 0},
                      {"Build Date", 0, 0, 0x40},
                      {"Build Time", 0, 0, 0x40},
                      {"Check CRC", 1, 0, 0}};
  ASSERT_EQ(PREF_COUNT, std::size(rows));
  for (const Row& row : rows) {
    const PrefRow& built = prefs[&row - rows];
    EXPECT_EQ(built.index, &row - rows);
    EXPECT_STREQ(built.name, row.name);
    EXPECT_EQ(built.flags, row.flags) << row.name;
    EXPECT_EQ(built.int_value, row.whole) << row.name;
    EXPECT_EQ(built.float_value, row.real) << row.name;
    EXPECT_STREQ(built.text_value, "") << row.name;
  }
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
