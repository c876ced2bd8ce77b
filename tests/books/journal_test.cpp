// The journal on disk: what its lines say, what a full ring, a dead disk and a torn line do.
#include "books/journal.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "platform/files.h"
#include "platform/headless/clock_control.h"
#include "platform/headless/power_record.h"
#include "tests/open_files.h"
#include "tests/temp_folder.h"

namespace {

constexpr const char* START =
    "2001-09-09T01:46:40.000Z 17 start version=1.0.0 last=none machine=headless\n";

class JournalTest : public testing::Test {
 protected:
  JournalTest() {
    headless_clock_reset();
    files_use_roots(drive.path(), drive.path());
    prefs_reset();
    audits_reset();
  }
  ~JournalTest() override { journal_close(); }

  static void open() { journal_open("1.0.0", 17); }
  [[nodiscard]] std::string text() const { return drive.read("journal"); }
  // The lines without the start's and without their times.
  [[nodiscard]] std::string events() const {
    std::istringstream lines(text());
    std::string result;
    for (std::string line; std::getline(lines, line);) {
      if (line.find(" start ") == std::string::npos) result += line.substr(25) + "\n";
    }
    return result;
  }
  TempFolder drive;
};

TEST_F(JournalTest, LineHasTimeBootKindAndFields) {
  journal_put(JOURNAL_COIN, {SIDE_LEFT, 1, 0, 1});  // it isn't open yet
  audits_save();
  EXPECT_FALSE(drive.has("journal"));
  open();
  headless_clock_advance(1234);
  journal_put(JOURNAL_COIN, {SIDE_RIGHT, 2, 1, 3});
  journal_put(JOURNAL_LINK_LOST);
  journal_put(JOURNAL_CATCH, {SIDE_LEFT, 12, JOURNAL_BUTTERFLY, 9, 14});
  EXPECT_FALSE(drive.has("journal")) << "nothing is written by whoever notes an event";
  journal_flush();
  EXPECT_EQ(
      text(),
      START + std::string("2001-09-09T01:46:41.234Z 17 coin side=right coins=2 part=1 credits=3\n"
                          "2001-09-09T01:46:41.234Z 17 link-lost\n"
                          "2001-09-09T01:46:41.234Z 17 catch side=left game=12 catch=butterfly "
                          "worth=9 purse=14\n"));
}

TEST_F(JournalTest, ThreadWritesWithoutBeingAsked) {
  open();
  journal_start();
  for (int i = 0; i < 3000 && text() != START; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_EQ(text(), START);
}

TEST_F(JournalTest, ChangedSettingIsNotedFromAndTo) {
  prefs_load();
  open();
  prefs[PREF_COINS_TO_PLAY].int_value = 3;
  prefs[PREF_COIN_VALUE].float_value = 0.5F;
  prefs_save();
  prefs_save();
  journal_flush();
  EXPECT_EQ(events(), "17 setting setting=\"" + std::string(SETTINGS[PREF_COINS_TO_PLAY].name) +
                          "\" from=1 to=3\n17 setting setting=\"" + SETTINGS[PREF_COIN_VALUE].name +
                          "\" from=0.25 to=0.5\n");
}

TEST_F(JournalTest, SeveralThreadsLoseNothing) {
  constexpr int THREADS = 4, EACH = 300;
  open();
  std::vector<std::thread> threads;
  for (int number = 0; number < THREADS; ++number) {
    threads.emplace_back([number] {
      for (int i = 0; i < EACH; ++i) journal_put(JOURNAL_FAULT, {SIDE_LEFT, number * EACH + i});
    });
  }
  for (int i = 0; i < 100; ++i) journal_flush();
  for (auto& one : threads) one.join();
  journal_flush();
  std::istringstream lines(events());
  std::vector<int> next(THREADS, 0);
  for (std::string line; std::getline(lines, line);) {
    const int value = std::stoi(line.substr(line.find("owed=") + 5));
    EXPECT_EQ(value % EACH, next[static_cast<std::size_t>(value / EACH)]++)
        << "in each one's order";
  }
  EXPECT_EQ(next, std::vector<int>(THREADS, EACH));
}

TEST_F(JournalTest, TurnsOverBehindTheLastByteOfHalfItsSize) {
  const auto start_behind = [this](std::size_t size) {
    drive.write("journal", std::string(size - 1, 'x') + "\n");
    open();
    journal_flush();
    return text().size() - size;
  };
  const std::size_t start = start_behind(100);
  journal_close();
  drive.write("journal.old", "older\n");
  start_behind(JOURNAL_BYTES_MOST / 2 - start);
  const std::string full = text();
  EXPECT_EQ(full.size(), JOURNAL_BYTES_MOST / 2);
  EXPECT_EQ(drive.read("journal.old"), "older\n");
  journal_put(JOURNAL_LINK_LOST);
  journal_flush();
  EXPECT_TRUE(drive.read("journal.old") == full);
  EXPECT_EQ(events(), "17 link-lost\n");
}

TEST_F(JournalTest, LeavesNoFileOpen) {
  const auto before = open_files();
  for (int run = 0; run < 2; ++run) {  // the second one reads how the first ended
    open();
    journal_flush();
    EXPECT_EQ(open_files(), before + 1);
    journal_close();
    EXPECT_EQ(open_files(), before);
  }
  std::filesystem::remove(drive.file("journal"));
  mkfifo(drive.file("journal").c_str(), 0600);
  open();
  journal_flush();
  EXPECT_EQ(open_files(), before) << "it can't grow";
}

TEST_F(JournalTest, DeadDiskCostsNothingButEventsThatAreCounted) {
  std::filesystem::create_directory(drive.file("journal"));  // so it can't be opened
  open();
  journal_put(JOURNAL_COIN, {SIDE_LEFT, 1, 0, 1});
  audits_save();
  EXPECT_TRUE(drive.has("audits"));
  for (int i = 0; i < 10000; ++i) {
    journal_put(JOURNAL_LINK_LOST);
    if (i % 100 == 0) journal_flush();
  }
  std::filesystem::remove(drive.file("journal"));
  journal_flush();
  const std::string all = events();
  const auto kept = std::ranges::count(all, '\n') - 1;
  EXPECT_TRUE(all.starts_with("17 coin side=left coins=1 part=0 credits=1\n17 link-lost\n"));
  EXPECT_TRUE(all.ends_with("17 lost events=" + std::to_string(10001 - kept) + "\n")) << kept;
  EXPECT_GE(kept, 2000);
  journal_put(JOURNAL_LINK_BACK);
  journal_flush();
  EXPECT_EQ(events(), all + "17 link-back\n");
}

TEST_F(JournalTest, FullDiskGetsItsLinesOnceThereIsRoom) {
  open();
  journal_flush();
  journal_put(JOURNAL_LINK_LOST);
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit room{};
  getrlimit(RLIMIT_FSIZE, &room);
  rlimit full = room;
  full.rlim_cur = text().size() + 10;
  setrlimit(RLIMIT_FSIZE, &full);
  journal_flush();
  EXPECT_EQ(text(), START) << "no half of a line";
  setrlimit(RLIMIT_FSIZE, &room);
  journal_put(JOURNAL_LINK_BACK);
  journal_flush();
  EXPECT_EQ(events(), "17 link-lost\n17 link-back\n");
}

TEST_F(JournalTest, FailedStoreIsNotedOnceAndItsEndToo) {
  open();
  std::filesystem::create_directories(drive.file("audbak") + "/full");
  audits_save();
  audits_save();
  std::filesystem::remove_all(drive.file("audbak"));
  audits_save();
  journal_flush();
  EXPECT_EQ(events(), "17 not-stored file=audbak\n17 stored file=audbak\n");
}

TEST_F(JournalTest, StartTellsHowTheLastRunEnded) {
  // A run that ends with this event, on a machine that had its power all the time or not.
  const auto run = [this](const char* machine, JournalKind last = JOURNAL_LINK_LOST) {
    headless_boot_id = machine;
    open();
    journal_put(last);
    journal_close();
    const std::string all = text();
    const std::size_t at = all.rfind("last=") + 5;
    return all.substr(at, all.find(' ', at) - at);
  };
  EXPECT_EQ(run("one"), "none");
  EXPECT_EQ(run("one"), "killed");
  EXPECT_EQ(run("another", JOURNAL_STOP), "power");
  EXPECT_EQ(run("another", JOURNAL_GOING_DOWN), "orderly");
  EXPECT_EQ(run("another"), "reboot");
  headless_boot_id = "headless";
}

TEST_F(JournalTest, TornLastLineIsCutOffAtAnyByte) {
  open();
  journal_put(JOURNAL_COIN, {SIDE_LEFT, 1, 0, 1});
  journal_put(JOURNAL_PAPER, {SIDE_LEFT, 125, 0});
  journal_close();
  const std::string whole = text();
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    drive.write("journal", whole.substr(0, size));
    open();
    journal_close();
    const std::string lines = whole.substr(0, whole.substr(0, size).rfind('\n') + 1);
    const std::string now = text();
    ASSERT_EQ(now.substr(0, lines.size()), lines) << size;
    ASSERT_EQ(now.find(" 17 start version=", lines.size()), lines.size() + 24) << size;
    ASSERT_EQ(std::ranges::count(now, '\n'), std::ranges::count(lines, '\n') + 1) << size;
  }
}

}  // namespace
