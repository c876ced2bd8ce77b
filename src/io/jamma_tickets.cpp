// Orders of tickets: when one goes out, when the board has it, and what happens to one that got
// lost on the line. A T frame has no receipt but the count that the board reports.
#include <algorithm>
#include <cstdint>

#include "io/jamma_link.h"
#include "platform/clock.h"

namespace {

// A board answers an order at once. One that is without an answer for so long may be lost.
constexpr std::int64_t ANSWER_MS = 2000;
// So long does a side's next order wait for the answer to the one before. That is time enough to
// find out, and a count tells of one order only.
constexpr std::int64_t HOLD_MS = 15000;
// A dispenser that runs reports each ticket. After so long without a word, reports may be lost.
constexpr std::int64_t FRESH_MS = 200;

constexpr std::uint32_t DISPENSING[2] = {LEFT_DISPENSING, RIGHT_DISPENSING};
constexpr std::uint32_t FAULT[2] = {LEFT_TICKET_FAULT, RIGHT_TICKET_FAULT};
constexpr std::uint32_t TICKETS[2] = {PACKET_LEFT_TICKETS, PACKET_RIGHT_TICKETS};

bool waits_for_answer(const JammaLink& link, int side, std::int64_t ms) {
  return link.order_open[side] && clock_ms() - link.ordered_ms[side] < ms;
}

// A board that has paid without being heard would answer an order with a count below the last one.
bool count_is_old(const JammaLink& link, int side) {
  return jamma_flag(link, DISPENSING[side]) && clock_ms() - link.counted_ms[side] >= FRESH_MS;
}

// Without a count of tickets a stop is open, or a question.
bool is_stop(const JammaLink& link, int side) {
  return link.tickets_unanswered[side] == 0 && link.start_unanswered[side];
}

// Does this count have the order in it? Without the order the board pays down from the count that
// it reported before, and only a fault, or the answer to a question, has the same count again.
bool has_order(const JammaLink& link, int side, std::int32_t count, bool fault) {
  if (is_stop(link, side)) return count == 0;
  if (link.tickets_unanswered[side] == 0) return true;
  const std::int32_t before = link.tickets_on_board[side];
  return count > before || (count == before && !fault && link.answers_due == 0);
}

void close_order(JammaLink& link, int side) {
  link.tickets_unanswered[side] = 0;
  link.start_unanswered[side] = false;
  link.order_open[side] = false;
}

}  // namespace

void jamma_tickets_schedule(JammaLink& link, int side) {
  if (link.tickets_queued[side] <= 0 || link.answers_due > 0) return;
  if (link.tickets_owed[side] >= TICKETS_ON_BOARD_MAX) return;
  if (waits_for_answer(link, side, HOLD_MS)) return;
  if (!link.order_open[side] && count_is_old(link, side)) {
    jamma_tickets_query(link, side);
    return;
  }
  const MutexLock lock(link.ticket_mutex);
  std::int32_t queued = link.tickets_queued[side];
  if (queued <= 0) return;
  const std::int32_t batch = std::min(queued, TICKETS_ON_BOARD_MAX - link.tickets_owed[side]);
  // An award or a clearing in between is handled in the next pass.
  if (!link.tickets_queued[side].compare_exchange_strong(queued, queued - batch)) return;
  link.tickets_in_flight[side] = batch;
  jamma_send_packet(link, TICKETS[side]);
}

void jamma_tickets_query(JammaLink& link, int side) {
  const MutexLock lock(link.ticket_mutex);
  jamma_set_flag(link, DISPENSING[side], true);
  jamma_send_packet(link, TICKETS[side]);
}

void jamma_tickets_counted(JammaLink& link, int side, std::int32_t count, bool fault) {
  if (link.order_open[side] && has_order(link, side, count, fault)) close_order(link, side);
  link.tickets_on_board[side] = count;
  link.counted_ms[side] = clock_ms();
  link.count_asked[side] = false;
}

void jamma_tickets_void(JammaLink& link, int side) {
  close_order(link, side);
  link.count_asked[side] = false;
}

bool jamma_tickets_lost(const JammaLink& link) {
  for (int side = 0; side < 2; ++side) {
    if (link.order_open[side] && !waits_for_answer(link, side, ANSWER_MS)) return true;
  }
  return false;
}

void jamma_tickets_find(JammaLink& link) {
  for (int side = 0; side < 2; ++side) {
    if (!link.order_open[side] || is_stop(link, side)) continue;
    link.count_asked[side] = true;
    jamma_tickets_query(link, side);
  }
}

void jamma_tickets_order_lost(JammaLink& link) {
  const MutexLock lock(link.ticket_mutex);
  for (int side = 0; side < 2; ++side) {
    if (!link.order_open[side] || link.count_asked[side]) continue;
    // The question has set the dispenser going, so an order is added to what it has: a whole sum
    // would undo what it has paid since it answered. A stop is a whole sum.
    if (is_stop(link, side)) jamma_set_flag(link, DISPENSING[side], false);
    link.tickets_in_flight[side] += link.tickets_unanswered[side];
    close_order(link, side);
    jamma_send_packet(link, TICKETS[side]);
  }
}

void jamma_tickets_order_all(JammaLink& link) {
  const MutexLock lock(link.ticket_mutex);
  for (int side = 0; side < 2; ++side) {
    jamma_set_flag(link, DISPENSING[side], false);
    link.tickets_on_board[side] = 0;
    close_order(link, side);
    link.tickets_unanswered[side] = link.tickets_owed[side].load();
    if (link.tickets_owed[side] > 0 && !jamma_flag(link, FAULT[side])) {
      jamma_send_packet(link, TICKETS[side]);
    }
  }
}
