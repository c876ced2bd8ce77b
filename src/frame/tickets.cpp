#include "frame/tick_steps.h"

#include <algorithm>
#include <cstdint>

#include "books/audits.h"
#include "frame/board_note.h"
#include "frame/sides.h"
#include "frame/ticket_status.h"
#include "io/jamma.h"

namespace {

constexpr std::int32_t OWED_MOST = 1023;  // what a board can owe; more is a damaged file

std::uint32_t link_flags() {
  std::uint32_t flags = 0;
  jamma_command(JAMMA_GET_FLAGS, reinterpret_cast<std::intptr_t>(&flags));
  return flags;
}

}  // namespace

void tickets_restore() {
  const BoardNote note = board_note_read();
  // Nothing was ordered yet, so a board that owes tickets has them from before.
  const bool stayed_up = note.stayed_up || jamma_tickets_reported();
  for (int side = 0; side < SIDE_COUNT; ++side) {
    auto& owed = audits[AUDIT_TICKETS_OWED + side].count;
    owed = std::clamp(owed.get(), 0, OWED_MOST);
    if (!stayed_up) {
      jamma_command(JAMMA_ADD_TICKETS, side, owed);
      continue;
    }
    // The board's count holds: the next poll puts it into the books. A side with a fault has
    // reported it already.
    ticket_status.tickets_owed[side] = owed.get();
    const std::uint32_t fault = side == SIDE_LEFT ? LEFT_TICKET_FAULT : RIGHT_TICKET_FAULT;
    if (owed > 0 && !(link_flags() & fault)) jamma_tickets_ask(side);
    jamma_command(JAMMA_ADD_TICKETS, side, std::max(note.tickets_queued[side], 0));
  }
}

void tickets_poll() {
  const std::uint32_t flags = link_flags();
  ticket_status.ticket_error[SIDE_LEFT] = (flags & LEFT_TICKET_FAULT) != 0 ? 1 : 0;
  ticket_status.ticket_error[SIDE_RIGHT] = (flags & RIGHT_TICKET_FAULT) != 0 ? 1 : 0;

  bool store = false, owes = false;
  std::int32_t queued[SIDE_COUNT]{};
  for (int side = 0; side < SIDE_COUNT; ++side) {
    const std::int32_t before = ticket_status.tickets_owed[side];
    const std::int32_t owed = jamma_command(JAMMA_GET_TICKETS_OWED, side);
    // Without a board there is no count: what the books owe stays owed until there is one.
    if (owed < 0) continue;
    queued[side] = jamma_command(JAMMA_GET_TICKETS_QUEUED, side);
    ticket_status.tickets_owed[side] = owed;
    ticket_status.tickets_queued[side] = queued[side];
    audits[AUDIT_TICKETS_OWED + side].count = owed;
    store = store || owed > before || (owed < before && owed == 0);
    owes = owes || owed > 0;
  }
  board_note_keep(owes, queued);
  if (store) audits_save();
}
