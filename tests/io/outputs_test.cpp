#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/io/link_fixture.h"

class Outputs : public LinkTest {
 protected:
  // Runs for a time and notes when each frame reached the wire, but for the status queries.
  std::vector<std::pair<int, std::string>> watch(int ms) {
    std::vector<std::pair<int, std::string>> seen;
    for (int at = 1; at <= ms; ++at) {
      run(1);
      for (const std::string& frame : sent()) {
        if (frame != "s") seen.emplace_back(at, frame);
      }
    }
    return seen;
  }
};
using Seen = std::vector<std::pair<int, std::string>>;

TEST_F(Outputs, SendsQueriesAndLampsAtBringUp) {
  EXPECT_EQ(start_frames, (Frames{"c", "C0081", "v", "S", "P0000", "P2000", "P3000", "P5000",
                                  "P7000", "Pf000", "Pd000", "Pe000"}));
  EXPECT_EQ(first_round, Frames{"s"});
  Frames later;
  for (int at = 1; at <= 10000; ++at) {
    run(1);
    for (const std::string& frame : sent()) later.push_back(frame + std::to_string(at));
  }
  EXPECT_EQ(later, (Frames{"s5000", "s10000"}));
}

TEST_F(Outputs, PulsesMeterOnAndOffForQuarterSecondEach) {
  EXPECT_EQ(jamma_command(JAMMA_PULSE_COIN_METER, 0, 1), 0);
  EXPECT_EQ(watch(2000), (Seen{{250, "H10"}, {500, "H00"}}));
  run(100);
  EXPECT_EQ(jamma_command(JAMMA_PULSE_COIN_METER, 1, 2), 0);
  EXPECT_EQ(watch(1500), (Seen{{250, "P0fff"}, {500, "P0000"}, {750, "P0fff"}, {1000, "P0000"}}));
  jamma_command(JAMMA_PULSE_TICKET_METER, 1, 1);
  jamma_command(JAMMA_PULSE_TICKET_METER, 0, 1);
  EXPECT_EQ(watch(600), (Seen{{250, "Pcfff"}, {250, "Pbfff"}, {500, "Pc000"}, {500, "Pb000"}}));
}

TEST_F(Outputs, RestartsStepWhenAnotherPulseIsOrdered) {
  jamma_command(JAMMA_PULSE_COIN_METER, 0, 1);
  EXPECT_EQ(watch(200), Seen{});
  jamma_command(JAMMA_PULSE_COIN_METER, 0, 1);
  EXPECT_EQ(watch(1500), (Seen{{250, "H10"}, {500, "H00"}, {750, "H10"}, {1000, "H00"}}));
  jamma_command(JAMMA_PULSE_COIN_METER, 2, 1);
  jamma_command(JAMMA_PULSE_TICKET_METER, -1, 1);
  EXPECT_EQ(watch(1000), Seen{});
}

TEST_F(Outputs, StepsMeterAcrossWrapOfSystemTick) {
  headless_system_tick_set(0xFFFFFF80u);
  jamma_command(JAMMA_PULSE_COIN_METER, 0, 1);
  EXPECT_EQ(watch(1000), (Seen{{250, "H10"}, {500, "H00"}}));
}

TEST(OutputsAtStart, SendsFirstQueryWhenSystemTickIsHalfWayRound) {
  headless_clock_reset();
  headless_system_tick_set(0x90000000u);
  Pty pty;
  environment.com[0] = pty.path();
  JammaLink& link = jamma_reset();
  int error = 0;
  link.port = serial_open("COM1", &error);
  ASSERT_NE(link.port, nullptr);
  jamma_bring_up(link);
  jamma_pump();
  {
    const MutexLock lock(link.tx_mutex);
    EXPECT_GT(link.tx_used, 0u) << "the first status query is waiting";
  }
  JammaShutdown();
  environment.com[0].clear();
  headless_clock_reset();
}

TEST_F(Outputs, SendsLockoutsWithNextStep) {
  jamma_command(JAMMA_SET_LOCKOUT, 0, 1);
  jamma_command(JAMMA_SET_LOCKOUT, 1, -1);
  EXPECT_EQ(watch(251), (Seen{{250, "Pafff"}, {250, "P1000"}}));
  jamma_command(JAMMA_SET_LOCKOUT, 1, 5);
  jamma_command(JAMMA_SET_LOCKOUT, 1, 0);
  EXPECT_EQ(jamma_command(JAMMA_SET_LOCKOUT, 2, 1), 0);
  EXPECT_EQ(watch(1000), (Seen{{249, "P1fff"}}));
}

TEST_F(Outputs, SendsAllHBitsTogether) {
  jamma_command(JAMMA_SET_AUX_OUT, 1, 1);
  jamma_command(JAMMA_SET_GUN_OUTPUT, 1, 1);
  jamma_command(JAMMA_SET_AUX_OUT, 0, 1);
  jamma_command(JAMMA_SET_AUX_OUT, 1, 0);
  EXPECT_EQ(sent(), (Frames{"H08", "H88", "H8c", "H84"}));
  std::uint8_t guns = 0;
  jamma_command(JAMMA_GET_GUN_OUTPUT, reinterpret_cast<std::intptr_t>(&guns));
  EXPECT_EQ(guns, 2);
  jamma_command(JAMMA_SET_H_FOLLOWS, 1);
  jamma_command(JAMMA_SET_GUN_AUX, 0, 1);
  EXPECT_EQ(sent(), (Frames{"C4081", "H24"}));
  jamma_command(JAMMA_SEND_F, 0x312, 0x234, 0x756, 0x478);
  EXPECT_EQ(sent(), Frames{"F1234235678"
                           "47"})
      << "the high bits share a byte";
}

TEST_F(Outputs, SendsLampsWatchdogAndQueries) {
  EXPECT_EQ(jamma_command(JAMMA_SET_LAMP, 13, 0x1800), 0);
  EXPECT_EQ(jamma_command(JAMMA_SET_LAMP, 16, 1), JAMMA_ERR_BAD_ARGUMENT);
  EXPECT_EQ(jamma_command(JAMMA_SET_LAMP, -1, 1), JAMMA_ERR_BAD_ARGUMENT);
  jamma_command(JAMMA_SET_WATCHDOG_BYTE, 0x1F);
  jamma_command(JAMMA_SEND_WATCHDOG);
  jamma_command(JAMMA_QUERY_SWITCHES);
  jamma_command(JAMMA_QUERY_COUNTERS);
  jamma_command(JAMMA_QUERY_CONFIG);
  jamma_command(JAMMA_QUERY_VERSION);
  jamma_command(JAMMA_SET_C_BIT0, 1);
  EXPECT_EQ(sent(), (Frames{"Pd800", "W1f", "s", "S", "c", "v", "C0181"}));
}

TEST_F(Outputs, FeedsWatchdogWhenBoardAsks) {
  say({"*W"});
  EXPECT_EQ(sent(), Frames{"W4b"});
  jamma_command(JAMMA_SET_WATCHDOG_MUTE, 1);
  say({"*W", "*R"});
  EXPECT_EQ(sent(), (Frames{"C0081", "S"}));
}

TEST_F(Outputs, UsesChecksumsBothWays) {
  const std::uint32_t failures = jamma_checksum_failures;
  say({"u"});
  jamma_command(JAMMA_QUERY_VERSION);
  EXPECT_EQ(sent(), Frames{"v8D"});
  feed("\nt0005\r50\nt0004\r4F\nt0003\rFF");
  round();
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 0), 4);
  EXPECT_EQ(jamma_checksum_failures - failures, 1u);
  feed("\nt0001\r\nt0000\r\nt0000\r");
  EXPECT_EQ(sent(), Frames{"U01CD"}) << "once";
}

TEST_F(Outputs, SendsTicketsInBatchesOfTenBitCount) {
  EXPECT_EQ(jamma_command(JAMMA_ADD_TICKETS, 0, 5000), 0);
  round();
  EXPECT_EQ(sent(), Frames{"T83ff"}) << "absolute: the dispenser stood";
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 0), 1023);
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_QUEUED, 0), 3977);
  EXPECT_TRUE(flag(LEFT_DISPENSING));
  run(50);
  EXPECT_EQ(sent(), Frames{}) << "no room";

  int paid = 0, relative = 0;
  while (jamma_command(JAMMA_GET_TICKETS_OWED, 0) > 0 && paid < 6000) {
    const int left = jamma_command(JAMMA_GET_TICKETS_OWED, 0) - 1;
    char report[8];
    std::snprintf(report, sizeof report, "t%02x%02x", left >> 8, left & 255);
    ++paid;
    say({report});
    for (const std::string& frame : sent()) {
      EXPECT_EQ(frame, "T0001") << "one more for each that came out";
      ++relative;
    }
    ASSERT_LE(jamma_command(JAMMA_GET_TICKETS_OWED, 0), 1023);
  }
  EXPECT_EQ(paid, 5000);
  EXPECT_EQ(relative, 3977);
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_QUEUED, 0), 0);
  EXPECT_FALSE(flag(LEFT_DISPENSING | LEFT_TICKET_FAULT));
}

TEST_F(Outputs, FillsBatchUpToItsLimit) {
  jamma_command(JAMMA_ADD_TICKETS, 1, 1000);
  round();
  jamma_command(JAMMA_ADD_TICKETS, 1, 23);
  round();
  EXPECT_EQ(sent(), (Frames{"T8be8", "T0817"})) << "1023 in all fit";
  jamma_command(JAMMA_ADD_TICKETS, 1, 10);
  say({"t0bfb"});  // 1019 left: room for 4
  EXPECT_EQ(sent(), Frames{"T0804"});
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_QUEUED, 1), 6);
}

TEST_F(Outputs, KeepsCountOnFaultAndSendsWholeSumWithNextAward) {
  jamma_command(JAMMA_SET_TICKET_MODE, 1, 1);
  jamma_command(JAMMA_ADD_TICKETS, 1, 10);
  round();
  EXPECT_EQ(sent(), Frames{"T980a"});
  say({"t8807"});
  EXPECT_TRUE(flag(RIGHT_TICKET_FAULT));
  EXPECT_FALSE(flag(RIGHT_DISPENSING | LEFT_TICKET_FAULT));
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 1), 7);
  say({"t4bff"});
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 1), 7) << "the count of such a frame is void";
  jamma_command(JAMMA_ADD_TICKETS, 1, 5);
  round();
  EXPECT_EQ(sent(), Frames{"T980c"});
  EXPECT_TRUE(flag(RIGHT_DISPENSING));
  EXPECT_FALSE(flag(RIGHT_TICKET_FAULT));
  say({"t8800"});
  EXPECT_TRUE(flag(RIGHT_TICKET_FAULT)) << "a fault with nothing left to pay";
  say({"t0800"});
  EXPECT_FALSE(flag(RIGHT_TICKET_FAULT));
}

constexpr char STATUS[] = "s00ffffff00";

Frames ticket_frames(Frames frames) {
  std::erase_if(frames, [](const std::string& frame) { return frame[0] != 'T'; });
  return frames;
}

// It has forgotten its outputs and what it had to pay.
TEST_F(Outputs, ResendsOutputsAndTicketsOwedAfterBoardRestart) {
  jamma_command(JAMMA_SET_LAMP, 10, 0xFFF);
  jamma_command(JAMMA_SET_LAMP, 1, 0xFFF);
  jamma_command(JAMMA_SET_LAMP, 1, 0);
  sent();
  jamma_command(JAMMA_ADD_TICKETS, 0, 300);
  jamma_command(JAMMA_ADD_TICKETS, 1, 9);
  round();
  EXPECT_EQ(sent(), (Frames{"T812c", "T8809"}));
  say({"t8805"});  // the right side waits with a fault
  say({"*R"});
  EXPECT_EQ(sent(), (Frames{"C0081", "S", "Pafff", "T812c"}));
  jamma_command(JAMMA_ADD_TICKETS, 0, 2);
  round();
  EXPECT_EQ(sent(), Frames{"T0002"});

  say({counters({})});
  say({counters({}, 0x00)});  // the *R was lost: the counters tell of the restart, once
  EXPECT_EQ(sent(), (Frames{"C0081", "S", "Pafff", "T812e"}));
  say({counters({}, 0x00)});
  EXPECT_EQ(sent(), (Frames{"C0081", "S"}));

  jamma_command(JAMMA_PULSE_COIN_METER, 0, 1);
  watch(250);  // its coil is on
  say({"*R"});
  EXPECT_EQ(sent(), (Frames{"C0081", "S", "Pafff", "H10", "T812e"}));
}

// What the board had answered it may have paid unheard; what it never answered it never heard.
TEST_F(Outputs, ResendsUnansweredTicketsAndOutputsAfterOutage) {
  say({STATUS});
  jamma_command(JAMMA_ADD_TICKETS, 1, 30);
  jamma_command(JAMMA_PULSE_COIN_METER, 0, 1);
  watch(300);
  say({"t081e"});
  jamma_command(JAMMA_SET_LAMP, 10, 0xFFF);
  jamma_command(JAMMA_ADD_TICKETS, 0, 12);  // a start
  jamma_command(JAMMA_ADD_TICKETS, 1, 3);   // more for one that runs
  watch(15000);                             // three questions; the last one is answered
  say({STATUS});
  Frames frames = sent();
  EXPECT_EQ(std::count(frames.begin(), frames.end(), "Pafff"), 1);
  EXPECT_EQ(std::count(frames.begin(), frames.end(), "P1000"), 1);
  EXPECT_EQ(std::count(frames.begin(), frames.end(), "H00"), 1) << "the left coin meter's coil";
  EXPECT_EQ(frames.back(), "s") << "asks at once";
  EXPECT_EQ(ticket_frames(frames), Frames{}) << "two more answers may be for old questions";
  jamma_command(JAMMA_ADD_TICKETS, 0, 5);  // waits until it is known what was lost
  say({STATUS});
  say({STATUS});
  EXPECT_EQ(sent(), (Frames{"s", "s"}));
  say({STATUS});
  EXPECT_EQ(sent(), (Frames{"T800c", "T0803", "T0005"}));
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 0), 17);
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 1), 33);

  say({"t0011", "t0808"});
  watch(30000);
  for (int answer = 0; answer < 9; ++answer) {
    say({STATUS});
    EXPECT_EQ(ticket_frames(sent()), Frames{}) << "all were answered";
  }
}

TEST_F(Outputs, ResendsNoTicketsForLostAnswerLateBoardOrSteppedClock) {
  const auto expect_no_tickets = [this](int ms) {
    for (const auto& [at, frame] : watch(ms)) EXPECT_NE(frame[0], 'T') << frame << " at " << at;
  };
  say({STATUS});
  jamma_command(JAMMA_ADD_TICKETS, 0, 12);
  round();
  EXPECT_EQ(ticket_frames(sent()), Frames{"T800c"});
  expect_no_tickets(10000);  // the first answer is lost
  say({STATUS});
  headless_calendar_set(2000000000);
  expect_no_tickets(5000);
  say({STATUS});
  headless_calendar_set(1000000000);
  expect_no_tickets(5000);
  say({STATUS});
  expect_no_tickets(8000);  // late
  say({STATUS});
  // So late that it looks like an outage; then comes all it had to say, in order.
  expect_no_tickets(15000);
  say({STATUS, STATUS, "t000c", STATUS, STATUS, STATUS, STATUS});
  expect_no_tickets(5000);
  for (int answer = 0; answer < 5; ++answer) {
    say({STATUS});
    expect_no_tickets(1);
  }
}

TEST_F(Outputs, KeepsTicketsClearedDuringBoardRestart) {
  jamma_command(JAMMA_ADD_TICKETS, 0, 300);
  round();
  sent();
  std::unique_lock lock(link->ticket_mutex);  // as JAMMA_CLEAR_TICKETS holds it
  std::thread pump([this] { say({"*R"}); });
  clock_sleep_ms(50);  // a pump that doesn't wait for the lock has sent T812c by then
  link->tickets_owed[0] = 0;
  lock.unlock();
  pump.join();
  EXPECT_EQ(sent(), (Frames{"C0081", "S"}));
}

TEST_F(Outputs, ResendsStopLostInOutage) {
  say({STATUS});
  jamma_command(JAMMA_ADD_TICKETS, 0, 12);
  round();
  say({"t000b"});
  jamma_command(JAMMA_CLEAR_TICKETS, 0);
  watch(15000);
  Frames told;
  for (int answer = 0; answer < 4; ++answer) {
    say({STATUS});
    for (const std::string& frame : ticket_frames(sent())) told.push_back(frame);
  }
  EXPECT_EQ(told, Frames{"T8000"});
}

// For a board that an earlier run of the program gave tickets to.
TEST_F(Outputs, OrdersNoTicketsWhenItAsksForCount) {
  std::uint8_t raw[COUNTER_COUNT] = {};
  EXPECT_FALSE(jamma_board_counters(raw)) << "no S frame yet";
  say({counters({{COUNTER_C1, 5}, {COUNTER_TST, 12}})});
  ASSERT_TRUE(jamma_board_counters(raw));
  EXPECT_EQ(raw[COUNTER_C1], 5);
  EXPECT_EQ(raw[COUNTER_TST], 12);
  EXPECT_FALSE(jamma_tickets_reported());

  jamma_tickets_ask(0);
  jamma_tickets_ask(1);
  EXPECT_EQ(sent(), (Frames{"T0000", "T0800"}));
  say({"t0000"});
  EXPECT_FALSE(jamma_tickets_reported());
  say({"t0904"});
  EXPECT_TRUE(jamma_tickets_reported());
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 0), 0);
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 1), 260);
  jamma_command(JAMMA_ADD_TICKETS, 0, 7);
  jamma_command(JAMMA_ADD_TICKETS, 1, 7);
  round();
  EXPECT_EQ(sent(), (Frames{"T8007", "T0807"})) << "one stands, the other runs";
}

TEST_F(Outputs, IgnoresNegativeCounts) {
  jamma_command(JAMMA_ADD_TICKETS, 0, -1);
  jamma_command(JAMMA_SET_TICKETS_QUEUED, 1, -5);
  round();
  EXPECT_EQ(sent(), Frames{});
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_QUEUED, 0), 0);
}

TEST_F(Outputs, StopsDispenserWhenTicketsAreCleared) {
  jamma_command(JAMMA_ADD_TICKETS, 0, 2000);
  round();
  sent();
  EXPECT_EQ(jamma_command(JAMMA_CLEAR_TICKETS, 0), 0);
  EXPECT_EQ(jamma_command(JAMMA_CLEAR_TICKETS, 1), 0);
  EXPECT_EQ(sent(), (Frames{"T8000", "T8800"}));
  round();
  EXPECT_EQ(sent(), Frames{});
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 0), 0);
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_QUEUED, 0), 0);
}

TEST_F(Outputs, SetsErrorAndKeepsBytesWhenTransmitRingIsFull) {
  for (int i = 0; i < 64; ++i) {
    EXPECT_EQ(jamma_command(JAMMA_SEND_RAW, reinterpret_cast<std::intptr_t>("0123456789abcdef"),
                            i == 63 ? 15 : 16),
              0);
  }
  EXPECT_EQ(jamma_link_error, 0);
  EXPECT_EQ(jamma_command(JAMMA_QUERY_CONFIG), JAMMA_ERR_TX_FULL);
  EXPECT_EQ(jamma_link_error, 1);
  EXPECT_EQ(tx_used(), 1023u);
  EXPECT_EQ(jamma_command(JAMMA_SEND_NUL), 0);
  jamma_tx_flush(*link);
  std::string bytes;
  for (std::string more = "-"; !more.empty(); bytes += more) more = pty.receive(50);
  EXPECT_EQ(bytes.size(), 1024u) << "a full burst gets no NUL behind it";
}

TEST_F(Outputs, CountsAsAliveByStatusFrames) {
  run(30000);
  EXPECT_TRUE(jamma_link_alive()) << "never heard: never judged";
  say({"s00ffffff00"});
  for (int s = 1; s <= 20; ++s) {
    headless_clock_advance(1000);
    say({"c0081", counters({})});
    EXPECT_TRUE(jamma_link_alive()) << s;
  }
  headless_clock_advance(1000);
  round();
  EXPECT_FALSE(jamma_link_alive());
  say({"s00ffffff00"});
  EXPECT_TRUE(jamma_link_alive());
}

// A dead battery's calendar is set by years once a network answers; an operator may set it back.
TEST_F(Outputs, CalendarNeitherMakesNorHidesSilence) {
  for (const std::int64_t calendar :
       {std::int64_t{4'000'000'000}, std::int64_t{1'000}, std::int64_t{-1'000'000'000}}) {
    SCOPED_TRACE(calendar);
    say({"s00ffffff00"});
    headless_calendar_set(calendar);
    run(20000);
    EXPECT_TRUE(jamma_link_alive());
    run(1500);
    EXPECT_FALSE(jamma_link_alive());
  }
}

TEST(Commands, RefusesCommandsWhileLinkIsDown) {
  JammaShutdown();
  char text[32] = "";
  std::uint32_t ticks = 0;
  for (int command = -300; command <= 300; ++command) {
    const int number = command & 0xFF;
    std::int32_t expected = JAMMA_ERR_NOT_OPEN;
    std::intptr_t argument = 0;
    switch (number) {
      case 6:
      case 41:
      case 42:
      case 52:
        expected = 0;
        break;
      case 3:
      case 7:
        continue;  // search all ports
      case 9:
        expected = 0;
        argument = reinterpret_cast<std::intptr_t>(text);
        break;
      case 10:
        expected = 0;
        argument = reinterpret_cast<std::intptr_t>(&ticks);
        break;
      default:
        if (number == 0 || number == 40 || number > 53) expected = JAMMA_ERR_BAD_COMMAND;
    }
    EXPECT_EQ(jamma_command(command, argument, sizeof text), expected) << command;
  }
  jamma_presses_count();
  EXPECT_EQ(jamma_presses_pending(PRESS_C1), 0u);
}

TEST(Commands, FailsInTimeWithoutBoard) {
  headless_clock_reset();
  EXPECT_EQ(JammaInit(), JAMMA_ERR_PORT_OPEN);
  EXPECT_LT(clock_ms(), 2000);
  EXPECT_EQ(jamma_command(JAMMA_RESET), JAMMA_ERR_LINK_STILL_CLOSED);
  EXPECT_FALSE(jamma_link_alive());
}

TEST_F(Outputs, RefusesUnknownSidesAndIgnoresReservedCommands) {
  for (const int command :
       {JAMMA_ADD_TICKETS, JAMMA_CLEAR_TICKETS, JAMMA_GET_TICKETS_OWED, JAMMA_GET_TICKETS_QUEUED,
        JAMMA_SET_TICKETS_QUEUED, JAMMA_SET_TICKET_MODE}) {
    EXPECT_EQ(jamma_command(command, 2, 1), JAMMA_ERR_BAD_ARGUMENT) << command;
    EXPECT_EQ(jamma_command(command, -1, 1), JAMMA_ERR_BAD_ARGUMENT) << command;
  }
  for (const int reserved : {11, 12, 13, 24, 25, 26, 27, 34}) {
    EXPECT_EQ(jamma_command(reserved), 0);
  }
  EXPECT_EQ(sent(), Frames{});
}
