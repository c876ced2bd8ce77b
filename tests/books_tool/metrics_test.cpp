// What a monitor is told of a cabinet.
#include "tools/books/metrics.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "books/audits.h"
#include "books/prefs.h"
#include "platform/files.h"
#include "tests/temp_folder.h"

namespace {

// The run before, with a coin and a fault; then one with paper, an open fault on the right, no
// board and a disk that fails.
constexpr const char* TWO_RUNS =
    "2026-11-24T10:00:00.000Z 3 start version=0.9.0 last=none machine=m\n"
    "2026-11-24T10:01:00.000Z 3 coin side=left coins=1 part=0 credits=1\n"
    "2026-11-24T10:02:00.000Z 3 fault side=left owed=7\n"
    "2026-11-25T10:00:00.000Z 4 start version=1.0.0 last=power machine=n\n"
    "2026-11-25T10:00:01.000Z 4 restored side=left owed=7 queued=0 told=yes\n"
    "2026-11-25T10:00:02.000Z 4 paper side=left owed=3 queued=0\n"
    "2026-11-25T10:00:03.000Z 4 tickets side=left game=5 by=catch tickets=14 paper=14 told=yes\n"
    "2026-11-25T10:00:04.000Z 4 paper side=left owed=16 queued=0\n"
    "2026-11-25T10:00:05.000Z 4 fault side=right owed=2\n"
    "2026-11-25T10:00:06.500Z 4 fault-over side=right owed=0\n"
    "2026-11-25T10:00:10.000Z 4 fault side=right owed=250\n"
    "2026-11-25T10:00:12.000Z 4 link-lost\n"
    "2026-11-25T10:00:15.000Z 4 not-stored file=audits\n"
    "2026-11-25T10:00:15.000Z 4 not-stored file=prefs\n"
    "2026-11-25T10:00:15.500Z 4 stored file=prefs\n"
    "2026-11-25T10:00:16.000Z 4 lost events=3\n";
constexpr std::int64_t START_MS = 1795600800000;  // of the second run

class Metrics : public testing::Test {
 protected:
  Metrics() {
    files_use_roots(folder.path(), folder.path());
    prefs_reset();
    audits_reset();
    audits[AUDIT_COIN_DROPS + 1].count = 41;
    audits[AUDIT_TICKETS_OWED + 1].count = 250;
    audits[AUDIT_TIME_GAME_ON].time_ms = 1500;
    prefs_save();
    audits_save();
    folder.write("journal", TWO_RUNS);
  }

  std::string text() {
    Drive drive;
    EXPECT_EQ(drive_read(folder.path(), drive, LAST_RUN), "");
    return metrics_text(drive, pay, START_MS + 20000);
  }
  void expect(const std::string& line) {
    EXPECT_NE(text().find("\nlilyhop_" + line + '\n'), std::string::npos) << line;
  }

  TempFolder folder;
  PayResult pay;
};

TEST_F(Metrics, TellBooksAndEventsSinceTheLastStart) {
  for (const char* line : {
           "coins_total{side=\"right\"} 41",
           "on_seconds_total 1.5",
           "setting{setting=\"Ticket Value\"} 0.01",
           "award_tickets_total{side=\"left\",award=\"jackpot\"} 0",
           "damaged_files 0",
           "info{version=\"1.0.0\"} 1",
           "start_time_seconds 1795600800",
           "last_coin_timestamp_seconds 1795514460",  // of the run before
           "paper_tickets_total{side=\"left\"} 5",
           "owed_tickets{side=\"left\"} 16",
           "owed_tickets{side=\"right\"} 250",
           "dispenser_fault{side=\"left\"} 0",
           "dispenser_faults_total{side=\"left\"} 0",
           "dispenser_fault{side=\"right\"} 1",  // trouble that is there counts up to now
           "dispenser_faults_total{side=\"right\"} 2",
           "dispenser_fault_seconds_total{side=\"right\"} 11.5",
           "link_up 0",
           "link_down_seconds_total 8",
           "books_not_stored 1",
           "lost_events_total 3",
       }) {
    expect(line);
  }
}

TEST_F(Metrics, StartInTheOlderFileIsFound) {
  folder.write("journal.old", TWO_RUNS);
  folder.write("journal", "2026-11-25T10:00:18.000Z 4 fault-over side=right owed=250\n");
  expect("start_time_seconds 1795600800");
  expect("dispenser_fault_seconds_total{side=\"right\"} 9.5");
}

TEST_F(Metrics, DamagedBooksAreCountedAndTheRestIsTold) {
  folder.write("audits", "x");
  folder.write("audbak", "x");
  expect("damaged_files 1");
  EXPECT_EQ(text().find("lilyhop_coins_total"), std::string::npos);
  expect("link_up 0");
}

TEST_F(Metrics, PayCheckIsToldIfThereWasOne) {
  EXPECT_EQ(text().find("lilyhop_pay_check"), std::string::npos);
  pay = {PAYS_BELOW, 0.001, 812, START_MS};
  expect("pay_check{verdict=\"below\"} 1");
  expect("pay_check{verdict=\"inside\"} 0");
  expect("pay_check_frogs 812");
}

TEST_F(Metrics, FileIsReplacedOrLeftAlone) {
  const std::string path = folder.file("lilyhop.prom");
  EXPECT_EQ(file_replace(path, "old\n"), "");
  EXPECT_EQ(file_replace(path, "new\n"), "");
  EXPECT_EQ(folder.read("lilyhop.prom"), "new\n");
  EXPECT_FALSE(folder.has("lilyhop.prom.new"));
  EXPECT_NE(file_replace(folder.file("none/lilyhop.prom"), "x"), "");
}

TEST_F(Metrics, PrometheusFindsNothingToSay) {
  if (std::system("command -v promtool >/dev/null") != 0)
    GTEST_SKIP() << "promtool isn't installed";
  folder.write("metrics", text());
  const std::string check =
      "promtool check metrics <" + folder.file("metrics") + " >" + folder.file("said") + " 2>&1";
  EXPECT_EQ(std::system(check.c_str()), 0);
  EXPECT_EQ(folder.read("said"), "");
}

}  // namespace
