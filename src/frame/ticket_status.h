// What the board says of the ticket dispensers. Written by the tick, read by drawing and shows.
#pragma once

#include <cstdint>

#include "frame/sides.h"
#include "platform/shared.h"  // Shared

struct TicketStatus {
  Shared<std::int32_t> tickets_owed[SIDE_COUNT];    // paper that the board has yet to pay
  Shared<std::int32_t> tickets_queued[SIDE_COUNT];  // paper held back here, the board's count full
  Shared<std::int32_t> ticket_error[SIDE_COUNT];    // 1: the dispenser has reported a fault
};

inline constinit TicketStatus ticket_status{};
