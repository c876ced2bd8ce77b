#include "frame/tick_steps.h"

#include <algorithm>
#include <cstdint>

#include "books/audits.h"
#include "books/journal.h"
#include "frame/board_note.h"
#include "frame/game_clock.h"  // now_ms
#include "frame/sides.h"
#include "frame/ticket_status.h"
#include "io/jamma.h"

namespace {

constexpr std::uint32_t FAULTS[SIDE_COUNT] = {LEFT_TICKET_FAULT, RIGHT_TICKET_FAULT};
constexpr std::int32_t OWED_MOST = 1023;  // what a board can owe; more is a damaged file

std::uint32_t link_flags() {
  std::uint32_t flags = 0;
  jamma_command(JAMMA_GET_FLAGS, reinterpret_cast<std::intptr_t>(&flags));
  return flags;
}

// What the journal has of the board's counts is from before `tickets_restore`.
constinit bool counts_are_old[SIDE_COUNT]{};

// A board answers an order at once. One that is without an answer for so long never reached it: the
// cable is out, or was. If the game ends before it is ordered again, the next run has to do it.
constexpr std::int64_t LOST_MS = 250;
struct Unanswered {
  std::int32_t tickets;
  std::int64_t since_ms;
};
constinit Unanswered unanswered[SIDE_COUNT]{};

std::int32_t lost_orders(int side) {
  const std::int32_t tickets = jamma_tickets_unanswered(side);
  if (tickets != unanswered[side].tickets) unanswered[side] = {tickets, now_ms()};
  return now_ms() - unanswered[side].since_ms >= LOST_MS ? tickets : 0;
}

void take_counts(int side, std::int32_t owed, std::int32_t queued) {
  if (counts_are_old[side] || owed != ticket_status.tickets_owed[side] ||
      queued != ticket_status.tickets_queued[side]) {
    journal_put(JOURNAL_PAPER, {side, owed, queued});
  }
  counts_are_old[side] = false;
  ticket_status.tickets_owed[side] = owed;
  ticket_status.tickets_queued[side] = queued;
  audits[AUDIT_TICKETS_OWED + side].count = owed;
}

void take_fault(int side, bool fault) {
  if (fault != (ticket_status.ticket_error[side] != 0)) {
    journal_put(fault ? JOURNAL_FAULT : JOURNAL_FAULT_OVER,
                {side, ticket_status.tickets_owed[side]});
  }
  ticket_status.ticket_error[side] = fault ? 1 : 0;
}

}  // namespace

void tickets_restore() {
  const BoardNote note = board_note_read();
  // Nothing was ordered yet, so a board that owes tickets has them from before.
  const bool stayed_up = note.stayed_up || jamma_tickets_reported();
  for (int side = 0; side < SIDE_COUNT; ++side) {
    auto& owed = audits[AUDIT_TICKETS_OWED + side].count;
    counts_are_old[side] = true;
    unanswered[side] = {};
    owed = std::clamp(owed.get(), 0, OWED_MOST);
    if (!stayed_up) {
      const bool told = jamma_command(JAMMA_ADD_TICKETS, side, owed) >= 0;
      if (told) journal_put(JOURNAL_RESTORED, {side, owed, 0, 1});
      continue;
    }
    // The board's count holds: the next poll puts it into the books. A side with a fault has
    // reported it already.
    ticket_status.tickets_owed[side] = owed.get();
    if (owed > 0 && !(link_flags() & FAULTS[side])) jamma_tickets_ask(side);
    const std::int32_t queued = std::max(note.tickets_queued[side], 0);
    jamma_command(JAMMA_ADD_TICKETS, side, queued);
    journal_put(JOURNAL_RESTORED, {side, owed, queued, 0});
  }
}

void tickets_poll() {
  const std::uint32_t flags = link_flags();
  bool store = false, owes = false;
  std::int32_t unknown[SIDE_COUNT]{};  // to the board
  for (int side = 0; side < SIDE_COUNT; ++side) {
    const std::int32_t before = ticket_status.tickets_owed[side];
    const std::int32_t owed = jamma_command(JAMMA_GET_TICKETS_OWED, side);
    // Without a board there is no count: what the books owe stays owed until there is one.
    if (owed >= 0) {
      const std::int32_t queued = jamma_command(JAMMA_GET_TICKETS_QUEUED, side);
      take_counts(side, owed, queued);
      unknown[side] = queued + lost_orders(side);
      store = store || owed > before || (owed < before && owed == 0);
      owes = owes || owed > 0;
    }
    take_fault(side, (flags & FAULTS[side]) != 0);
  }
  board_note_keep(owes, unknown);
  if (store) audits_save();
}
