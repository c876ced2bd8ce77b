// The journal of real ticks, read as the tool reads it: a game from its coin to its paper, and many
// games with kills and power cuts.
#include "books/journal.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/tick.h"
#include "frame/tick_steps.h"
#include "frame/tick_timers.h"
#include "platform/files.h"
#include "platform/headless/power_record.h"
#include "playfield/playfield.h"
#include "tests/fakes/jamma_fake.h"
#include "tests/fakes/jps_fake.h"
#include "tests/plain_sheets.h"
#include "tests/reset_game.h"
#include "tests/temp_folder.h"
#include "tools/books/ledger.h"

namespace {

class JournalOfPlay : public testing::Test {
 protected:
  JournalOfPlay() {
    files_use_roots(drive.path(), drive.path());
    jamma_fake_reset();
    jps_fake_reset();
    plain_sheets();
    switch_on();
  }
  ~JournalOfPlay() override { journal_close(); }

  // As Game_Init does. What the last run had not written is lost.
  void switch_on() {
    files_use_roots("", "");
    journal_open("", 0);
    journal_close();
    files_use_roots(drive.path(), drive.path());
    reset_game(0, ++runs);
    audits_load();
    prefs_load();
    journal_open("1.0.0", audit_count(AUDIT_BOOT_COUNT));
    audits_note();
    jamma_fake_forget_calls();
    game_begin();
    take_orders();
    for (auto& next : tick_timers.attract_demo_next) next = 1LL << 40;  // never
  }

  void tick(int count = 1) {
    for (int i = 0; i < count; ++i) {
      jamma_fake_forget_calls();
      game_tick(now_ms() + 17);
      take_orders();
    }
  }
  // The board owes what it is told.
  static void take_orders() {
    for (std::size_t i = 0; i < jamma_fake.call_count; ++i) {
      const JammaFakeCall& call = jamma_fake.calls[i];
      if (call.command == JAMMA_ADD_TICKETS) {
        jamma_fake.tickets_owed[call.a] += static_cast<std::int32_t>(call.b);
      }
    }
  }
  void press(JammaPress press) {
    jamma_fake.pending[press] = 1;
    tick();
  }
  Ledger ledger() {
    journal_flush();
    Drive read;
    EXPECT_EQ(drive_read(drive.path(), read), "");
    kinds.clear();
    for (const JournalLine& line : read.journal.lines) {
      if (line.kind != JOURNAL_CATCH) kinds += std::string(JOURNAL_ROWS[line.kind].name) + " ";
    }
    return ledger_of(read);
  }

  TempFolder drive;
  std::uint64_t runs = 0;
  std::string kinds;  // of all lines but the catches
};

TEST_F(JournalOfPlay, TellsAGameFromCoinToPaper) {
  tick();
  press(PRESS_C1);
  press(PRESS_P1S);
  for (int i = 0; i < 5000 && audit_count(AUDIT_TICKETS) == 0; ++i) tick();
  tick();
  jamma_fake.flags = LEFT_TICKET_FAULT;
  tick();
  jamma_fake.flags = 0;
  jamma_fake.tickets_owed[0] = 0;
  jamma_fake.alive = false;
  tick();
  jamma_fake.alive = true;
  tick();
  press(PRESS_SRV);

  const Ledger told = ledger();
  EXPECT_EQ(kinds,
            "start books books restored restored paper paper coin launch end tickets paper "
            "fault link-lost paper fault-over link-back service ");
  EXPECT_TRUE(told.findings.empty()) << told.findings[0].text;
  ASSERT_EQ(told.games.size(), 1U);
  const Game& game = told.games[0];
  EXPECT_EQ(game.paid, "coin");
  EXPECT_EQ(game.tickets, audit_count(AUDIT_TICKETS));
  EXPECT_EQ(game.state, GAME_ENDED);
  EXPECT_NE(game.paper_ms, 0);
  EXPECT_EQ(told.counts.sides[1].credits, 1);
}

TEST_F(JournalOfPlay, WinWithoutBoardIsNamed) {
  tick();
  press(PRESS_C1);
  press(PRESS_P1S);
  jamma_fake.open = false;
  for (int i = 0; i < 5000 && audit_count(AUDIT_TICKETS) == 0; ++i) tick();
  const Ledger told = ledger();
  ASSERT_EQ(told.games.size(), 1U);
  EXPECT_FALSE(told.games[0].told);
  EXPECT_EQ(told.paper[SIDE_LEFT].told, 0);
  jamma_fake.open = true;
}

// Ends at any tick, of the game alone or of the whole cabinet. Whatever is missing then is
// explained, and paper is known to the ticket but for what came out after the journal's last line.
TEST_F(JournalOfPlay, KillsLeaveNothingUnexplained) {
  std::mt19937 random(5);
  std::int64_t paid[SIDE_COUNT]{}, unseen[SIDE_COUNT]{};
  constexpr JammaPress PRESSES[] = {PRESS_C1, PRESS_C2, PRESS_P1S, PRESS_P2S, PRESS_SRV};
  prefs[PREF_FREEPLAY].int_value = 0;
  int games = 0;
  for (int run = 0; run < 25; ++run) {
    jamma_fake.counters[COUNTER_C1] = 2;
    const int length = static_cast<int>(random() % 2000);
    for (int i = 0; i < length; ++i) {
      if (random() % 40 == 0) jamma_fake.pending[PRESSES[random() % 5]] = 1;
      tick();
      for (int side = 0; side < SIDE_COUNT; ++side) {
        if (jamma_fake.tickets_owed[side] == 0 || random() % 4 != 0) continue;
        --jamma_fake.tickets_owed[side];
        ++paid[side];
      }
      if (i % 30 == 0) journal_flush();
    }
    games += audit_count(AUDIT_GAMES_SINCE_BOOT) + audit_count(AUDIT_GAMES_SINCE_BOOT + 1);
    if (random() % 2 == 0) {  // the power goes, and the board forgets
      Drive read;
      drive_read(drive.path(), read);
      const Ledger seen = ledger_of(read);
      for (int side = 0; side < SIDE_COUNT; ++side) {
        unseen[side] += seen.paper[side].owed - jamma_fake.tickets_owed[side];
        jamma_fake.tickets_owed[side] = 0;
      }
      headless_boot_id += "x";
      jamma_fake.counters[COUNTER_C1] = 0;
    }
    switch_on();
    tick();
  }
  const Ledger told = ledger();
  for (const Finding& finding : told.findings) EXPECT_FALSE(finding.wrong) << finding.text;
  EXPECT_GT(games, 50);
  EXPECT_GE(told.games.size(), 50U);
  for (int side = 0; side < SIDE_COUNT; ++side) {
    EXPECT_EQ(told.paper[side].owed, jamma_fake.tickets_owed[side]);
    EXPECT_EQ(told.paper[side].out + unseen[side], paid[side]) << side;
    EXPECT_GT(paid[side], 100);
  }
  headless_boot_id = "headless";
}

}  // namespace
