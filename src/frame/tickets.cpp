#include "frame/tickets.h"

#include <algorithm>
#include <cstdint>

#include "books/audits.h"
#include "frame/sides.h"
#include "frame/ticket_status.h"
#include "io/jamma.h"

namespace {
constexpr std::int32_t OWED_MOST = 1023;  // what a board can owe; more is a damaged file
}

void tickets_restore() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    auto& owed = audits[AUDIT_TICKETS_OWED + side].count;
    owed = std::clamp(owed.get(), 0, OWED_MOST);
    jamma_command(JAMMA_ADD_TICKETS, side, owed);
  }
}

void tickets_poll() {
  std::uint32_t flags = 0;
  jamma_command(JAMMA_GET_FLAGS, reinterpret_cast<std::intptr_t>(&flags));
  ticket_status.ticket_error[SIDE_LEFT] = (flags & LEFT_TICKET_FAULT) != 0 ? 1 : 0;
  ticket_status.ticket_error[SIDE_RIGHT] = (flags & RIGHT_TICKET_FAULT) != 0 ? 1 : 0;

  bool store = false;
  for (int side = 0; side < SIDE_COUNT; ++side) {
    const std::int32_t before = ticket_status.tickets_owed[side];
    const std::int32_t owed = jamma_command(JAMMA_GET_TICKETS_OWED, side);
    // Without a board there is no count: what the books owe stays owed, for the next boot that
    // finds one.
    if (owed < 0) continue;
    ticket_status.tickets_owed[side] = owed;
    ticket_status.tickets_queued[side] = jamma_command(JAMMA_GET_TICKETS_QUEUED, side);
    audits[AUDIT_TICKETS_OWED + side].count = owed;
    store = store || owed > before || (owed < before && owed == 0);
  }
  if (store) audits_save();
}
