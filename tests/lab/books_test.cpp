// What the lab counts: the same to the ticket in three ways, the same each time, the same on any
// number of processes, and the same as in a cabinet that is drawn.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "frame/game_clock.h"
#include "frame/tick.h"
#include "frame/tick_steps.h"
#include "lab/audit_check.h"
#include "lab/boot.h"
#include "lab/flights.h"
#include "lab/run.h"
#include "lab/settings.h"
#include "platform/headless/power_record.h"
#include "playfield/looks.h"
#include "presentation/win_show.h"

namespace {

class LabBooks : public testing::Test {
 protected:
  LabBooks() { settings_reset(); }

  static void set(const char* assignment) { ASSERT_EQ(settings_set(assignment), ""); }

  static std::unique_ptr<Sums> play(std::int64_t frogs, const std::string& kind = "eager",
                                    int processes = 1, std::uint64_t seed = 1) {
    auto sums = std::make_unique<Sums>();
    RunPlan plan{frogs, seed, {}};
    plan.player.kind = player_find(kind);
    EXPECT_TRUE(run_play(plan, processes, *sums, {}));
    EXPECT_GE(sums_frogs(*sums), 2 * frogs);
    return sums;
  }
};

bool equal(const Sums& one, const Sums& other) {
  return std::memcmp(&one, &other, sizeof one) == 0;
}

TEST_F(LabBooks, AgreeUnderAllSettings) {
  const std::vector<const char*> cases[] = {
      {"Minimum Tickets=7"},
      {"Two Point Tickets=On", "Bonus Value=125", "Boost Bonus=On"},
      {"Maximum Tickets=10"},
      {"Fixed Ticket=On", "Fixed Tickets Per Game=4"},
      {"Ticket Use=Off"},
      {"Currency Unit=3", "Coins Per Swipe Pulse=4", "Coins To Play=3"},
      {"Freeplay=On"},
      {"Frogs Per Game=3", "Timeout (Seconds)=0"},
      {"Payout Percent=95%", "Ticket Value=0.0025"}};
  for (const auto& settings : cases) {
    SCOPED_TRACE(settings.front());
    settings_reset();
    for (const char* each : settings) set(each);
    const auto sums = play(400);
    EXPECT_EQ(audit_check(*sums), "");
    EXPECT_EQ(sums_tickets(*sums) > 0, pref_on(PREF_TICKET_USE));
  }
}

TEST_F(LabBooks, DisagreeWhenOneTicketIsMissing) {
  const auto good = play(100);
  ASSERT_EQ(audit_check(*good), "");
  Sums bad = *good;
  bad.books.count[int{AUDIT_TICKETS} + SIDE_RIGHT] += 1;
  EXPECT_NE(audit_check(bad).find("Tickets Right: "), std::string::npos) << audit_check(bad);
  bad = *good;
  bad.paper[SIDE_LEFT] -= 1;
  EXPECT_NE(audit_check(bad), "");
  bad = *good;
  std::swap(bad.books.histogram[SIDE_LEFT][3], bad.books.histogram[SIDE_LEFT][40]);
  EXPECT_NE(audit_check(bad), "");
}

TEST_F(LabBooks, AreEqualForEqualSeedsOnAnyNumberOfProcesses) {
  for (const char* kind : {"random", "watcher", "expert"}) {
    SCOPED_TRACE(kind);
    const std::int64_t frogs = player_kinds[player_find(kind)].remembers ? 60 : 600;
    const auto one = play(frogs, kind);
    EXPECT_TRUE(equal(*one, *play(frogs, kind)));
    EXPECT_TRUE(equal(*one, *play(frogs, kind, 2)));
    EXPECT_TRUE(equal(*one, *play(frogs, kind, 3)));
    EXPECT_FALSE(equal(*one, *play(frogs, kind, 1, 2))) << "another seed";
  }
}

TEST_F(LabBooks, AreSumOfTheirBoots) {
  const RunPlan plan{100, 9, {}};
  const auto whole = play(100, "random", 1, 9);
  const auto merged = std::make_unique<Sums>();
  for (std::int64_t number = run_boots(plan) - 1; number >= 0; --number) {  // backwards
    const auto boot = std::make_unique<Sums>();
    boot_play({boot_seed(plan.seed, number), run_frogs_of_boot(plan), plan.player}, *boot);
    sums_add(*merged, *boot);
  }
  EXPECT_TRUE(equal(*whole, *merged));
}

// On a machine that refuses its daily restart. 2 to the 31st and 2 to the 32nd are where clocks of
// 32 bits end, and after 400 days a 32-bit float steps by four seconds.
TEST_F(LabBooks, AddUpHoweverLongMachineHasBeenOn) {
  BootPlan plan{boot_seed(7, 0), 300, {}};
  plan.player.kind = player_find("eager");
  const auto fresh = std::make_unique<Sums>();
  boot_play(plan, *fresh);
  constexpr std::int64_t MINUTE_MS = 60'000;
  constexpr std::int64_t DAY_MS = 1440 * MINUTE_MS;
  constexpr std::int64_t STARTS_MS[] = {(std::int64_t{1} << 31) - MINUTE_MS,
                                        (std::int64_t{1} << 32) - MINUTE_MS, 400 * DAY_MS};
  for (const std::int64_t start_ms : STARTS_MS) {
    SCOPED_TRACE(start_ms);
    plan.start_ms = start_ms;
    const auto aged = std::make_unique<Sums>();
    headless_reboots_ordered = 0;
    boot_begin(plan);
    while (boot_step(aged->awards)) {
      ASSERT_LT(now_ms() - start_ms, 2 * fresh->game_ms) << "play stands still";
      headless_reboot_refused = headless_reboots_ordered > 0;
      periodic_reboot_refused();
      headless_reboots_ordered = 0;
    }
    aged->boots = 1;
    sums_take_books(*aged);
    EXPECT_EQ(audit_check(*aged), "");
    EXPECT_GE(sums_frogs(*aged), 600);
    EXPECT_LT(10 * std::abs(now_ms() - start_ms - fresh->game_ms), fresh->game_ms);
  }
}

// Everything that the lab leaves out, looks and the placing of what nobody eats, is put back in.
TEST_F(LabBooks, AreEqualInCabinetThatIsDrawn) {
  for (const char* points : {"Two Point Tickets=Off", "Two Point Tickets=On"}) {
    set(points);
    const BootPlan plan{boot_seed(5, 0), 300, {}};
    const auto lab = std::make_unique<Sums>();
    boot_play(plan, *lab);

    const auto drawn = std::make_unique<Sums>();
    boot_begin(plan);
    looks_set_watched(true);
    while (boot_step(drawn->awards)) {
      for (Lane& lane : lanes) {
        if (lane.cell_size > 1) gfx_strip_draw(&lane);
      }
    }
    sums_take_books(*drawn);
    EXPECT_EQ(std::memcmp(&lab->books, &drawn->books, sizeof lab->books), 0);
    EXPECT_EQ(std::memcmp(&lab->awards, &drawn->awards, sizeof lab->awards), 0);
  }
}

}  // namespace
