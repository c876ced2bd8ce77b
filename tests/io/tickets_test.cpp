// Orders of tickets on a line that loses frames.
#include <algorithm>
#include <string>

#include "tests/io/link_fixture.h"

namespace {

class Tickets : public LinkTest {
 protected:
  // A dispenser runs: 10 tickets are still to come.
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(LinkTest::SetUp());
    say({STATUS});
    order(11);
    sent();
    say({"t000b", "t000a"});
  }
  void order(int tickets) {
    jamma_command(JAMMA_ADD_TICKETS, 0, tickets);
    round();
  }
  // What was sent, by earlier rounds too.
  Frames all_sent() {
    jamma_send_packet(*link, PACKET_NUL);
    return sent();
  }
  Frames orders() {
    Frames result = all_sent();
    std::erase_if(result, [](const std::string& frame) { return frame[0] != 'T'; });
    return result;
  }
  // The board answers status queries for so long.
  void board_lives(int ms, const char* also = nullptr) {
    for (; ms > 0; ms -= 100) {
      run(100);
      const Frames now = all_sent();
      for (const std::string& frame : now) {
        if (frame[0] == 'T') seen.push_back(frame);
        if (frame == "T0000" && also) say({also});
        if (frame == "s") say({STATUS});
      }
    }
  }

  static constexpr const char* STATUS = "s00ffffffff";
  Frames seen;
};

TEST_F(Tickets, LostOrderIsSentAgainOnceTheBoardHasToldItsCount) {
  order(3);
  EXPECT_EQ(orders(), Frames{"T0003"});
  say({"t0009"});  // paper, not the answer
  EXPECT_EQ(jamma_tickets_unanswered(0), 3);
  board_lives(8000, "t0008");
  EXPECT_EQ(seen, (Frames{"T0000", "T0003"}));
  say({"t000b"});
  EXPECT_EQ(jamma_tickets_unanswered(0), 0);
  seen.clear();
  board_lives(20000);
  EXPECT_EQ(seen, Frames());
}

// The question makes it pay, so a whole sum would come too late.
TEST_F(Tickets, LostOrderAfterAFaultIsAddedToWhatTheBoardHas) {
  say({"t800a"});
  order(3);
  EXPECT_EQ(orders(), Frames{"T800d"});
  board_lives(8000, "t000a");
  EXPECT_EQ(seen, (Frames{"T0000", "T0003"}));
}

TEST_F(Tickets, OrderWhoseAnswerWasLostIsNotSentAgain) {
  order(3);
  EXPECT_EQ(orders(), Frames{"T0003"});
  say({"t000c"});  // t000d was lost
  EXPECT_EQ(jamma_tickets_unanswered(0), 0);
  order(1);
  say({"t000c"});  // and t000c for the order of one: it has paid one of thirteen
  EXPECT_EQ(jamma_tickets_unanswered(0), 0);
  orders();
  board_lives(20000);
  EXPECT_EQ(seen, Frames());
}

TEST_F(Tickets, LaterOrderWaitsForTheAnswerToTheOneBefore) {
  order(3);
  order(4);
  EXPECT_EQ(orders(), Frames{"T0003"});
  say({"t000d"});
  EXPECT_EQ(orders(), Frames{"T0004"});
}

// It paid six of the ten while nobody heard it. Answered at once, an order of three would look
// lost.
TEST_F(Tickets, SilentDispenserIsAskedBeforeItGetsAnOrder) {
  run(300);
  order(3);
  EXPECT_EQ(orders(), Frames{"T0000"});
  say({"t0004"});
  EXPECT_EQ(orders(), Frames{"T0003"});
  say({"t0007"});
  EXPECT_EQ(jamma_tickets_unanswered(0), 0);
}

TEST_F(Tickets, WaitsAndQuestionsBeginToTheMillisecond) {
  run(199);
  order(3);
  EXPECT_EQ(orders(), Frames{"T0003"}) << "the last count is fresh";
  order(4);
  for (const int ms : {1999, 1}) {
    run(ms);
    jamma_command(JAMMA_QUERY_SWITCHES);
    say({STATUS});
    EXPECT_EQ(orders(), ms == 1 ? Frames{"T0000"} : Frames{}) << "two seconds without an answer";
  }
  jamma_command(JAMMA_QUERY_SWITCHES);
  say({STATUS});
  run(12999);
  EXPECT_EQ(orders(), Frames{});
  run(1);
  EXPECT_EQ(orders(), Frames{"T0004"}) << "fifteen seconds";
  say({"t0011"});
  run(200);
  order(1);
  EXPECT_EQ(orders(), Frames{"T0000"}) << "the last count is old";
}

TEST_F(Tickets, BoardThatNeverTellsItsCountGetsAnOrderOnce) {
  order(3);
  EXPECT_EQ(orders(), Frames{"T0003"});
  board_lives(60000);
  for (const std::string& frame : seen) EXPECT_EQ(frame, "T0000");
  seen.clear();
  order(2);
  board_lives(30000);
  EXPECT_EQ(std::ranges::count(seen, "T0002"), 1) << "it waits, but not for ever";
}

}  // namespace
