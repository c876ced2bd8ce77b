#include "cabinet/board.h"

#include <cstddef>
#include <vector>

namespace {

using Data = std::vector<std::uint8_t>;

// After the u frame the host needs a moment to turn checksums on. Frames without them are no error
// until then.
constexpr std::int64_t DIGITS_GRACE_MS = 100;

constexpr unsigned T_SIDE = 0x08, T_COUNT_VOID = 0x40, T_FAULT = 0x80;
constexpr unsigned T_ABSOLUTE = 0x80;

void send(Board& board, const std::string& body, std::int64_t now_ms) {
  if (!board.powered || board.silent) return;
  board.to_host += wire_frame(body, board.checksums);
  frame_log_add(board.log, TO_HOST, body, now_ms);
}

template <std::size_t size>
void send_data(Board& board, char letter, const std::uint8_t (&data)[size], std::int64_t now_ms) {
  std::string body(1, letter);
  for (const std::uint8_t byte : data) wire_put_byte(body, byte);
  send(board, body, now_ms);
}

void send_counters(Board& board, std::int64_t now_ms) {
  std::uint8_t data[8];
  const bool trackball = board.settings.firmware >> 4 == 5;
  switches_counters(board.switches, board.counters_valid, trackball, data);
  send_data(board, 'S', data, now_ms);
}

void send_tickets(Board& board, int side, bool fault, std::int64_t now_ms) {
  const Dispenser& dispenser = board.dispensers[side];
  unsigned count = static_cast<unsigned>(dispenser.count);
  unsigned first = side == RIGHT ? T_SIDE : 0;
  if (fault && dispenser.void_count) {
    first |= T_COUNT_VOID;
    count = 0;  // the host must ignore it
  } else if (fault) {
    first |= T_FAULT;
  }
  const std::uint8_t data[2] = {static_cast<std::uint8_t>(first | count >> 8),
                                static_cast<std::uint8_t>(count)};
  send_data(board, 't', data, now_ms);
}

// --- frames from the host ---------------------------------------------------------------------

void take_config(Board& board, const Data& data, std::int64_t) {
  board.config = data[0];
  board.counters_valid = true;
}

void take_ignored(Board&, const Data&, std::int64_t) {}

void take_outputs(Board& board, const Data& data, std::int64_t) {
  coils_set_h(board.coils, data[0]);
}

void take_lamp(Board& board, const Data& data, std::int64_t) {
  coils_set_lamp(board.coils, data[0] >> 4, (data[0] & 0x0F) << 8 | data[1]);
}

void take_counter_query(Board& board, const Data&, std::int64_t now_ms) {
  send_counters(board, now_ms);
}

void take_tickets(Board& board, const Data& data, std::int64_t now_ms) {
  const int side = (data[0] & T_SIDE) != 0 ? RIGHT : LEFT;
  const int count = (data[0] & 3) << 8 | data[1];
  const bool absolute = (data[0] & T_ABSOLUTE) != 0;
  if (!dispenser_command(board.dispensers[side], absolute, count, now_ms)) {
    ++board.counts.malformed;
  }
  send_tickets(board, side, false, now_ms);
}

void take_checksums(Board& board, const Data& data, std::int64_t now_ms) {
  board_set_checksums(board, data[0] == 0x01, now_ms);
}

void take_watchdog(Board& board, const Data& data, std::int64_t now_ms) {
  board.watchdog_armed = true;
  board.watchdog_allowance_ms = data[0] * 1000;
  board.watchdog_fed_ms = now_ms;
  board.watchdog_unanswered = 0;
  ++board.counts.watchdog_fed;
}

void take_config_query(Board& board, const Data&, std::int64_t now_ms) {
  send_data(board, 'c', {board.config, board.settings.config_bits}, now_ms);
}

void take_line_query(Board& board, const Data&, std::int64_t now_ms) {
  std::uint8_t data[5];
  switches_lines(board.switches, board.settings.dips, data);
  send_data(board, 's', data, now_ms);
}

void take_version_query(Board& board, const Data&, std::int64_t now_ms) {
  send_data(board, 'v', {board.settings.hardware, board.settings.firmware}, now_ms);
}

struct HostFrame {
  char letter;
  std::size_t bytes;
  void (*take)(Board&, const Data&, std::int64_t);
};

constexpr HostFrame HOST_FRAMES[] = {
    {'C', 2, take_config},     {'F', 6, take_ignored},       {'H', 1, take_outputs},
    {'P', 2, take_lamp},       {'S', 0, take_counter_query}, {'T', 2, take_tickets},
    {'U', 1, take_checksums},  {'W', 1, take_watchdog},      {'c', 0, take_config_query},
    {'s', 0, take_line_query}, {'v', 0, take_version_query},
};

void take_frame(Board& board, const std::string& body, std::int64_t now_ms) {
  frame_log_add(board.log, TO_BOARD, body, now_ms);
  Data data;
  if (wire_data(body, data)) {
    for (const HostFrame& frame : HOST_FRAMES) {
      if (frame.letter != body[0] || frame.bytes != data.size()) continue;
      frame.take(board, data, now_ms);
      return;
    }
  }
  ++board.counts.malformed;
}

// A frame without the checksum that is on: sent before the u frame arrived, or that frame was lost.
void take_frame_without_digits(Board& board, const std::string& body, std::int64_t now_ms) {
  if (now_ms < board.digits_due_ms) {
    take_frame(board, body, now_ms);
    return;
  }
  ++board.counts.checksum_errors;
  board_set_checksums(board, true, now_ms);
}

// --- time -------------------------------------------------------------------------------------

void advance_watchdog(Board& board, std::int64_t now_ms) {
  const BoardSettings& settings = board.settings;
  const int bite_ms = settings.watchdog_bite_ms == WATCHDOG_BY_FRAME ? board.watchdog_allowance_ms
                                                                     : settings.watchdog_bite_ms;
  if (bite_ms > 0 && board.watchdog_armed && now_ms - board.watchdog_fed_ms >= bite_ms) {
    ++board.counts.watchdog_bites;
    board_restart(board, BOARD_RANDOM_COUNTERS, now_ms);
  }
  if (settings.watchdog_ask_ms > 0 && now_ms >= board.watchdog_ask_at_ms) {
    board.watchdog_ask_at_ms = now_ms + settings.watchdog_ask_ms;
    board_ask_for_watchdog(board, now_ms);
  }
}

}  // namespace

void board_restart(Board& board, int counter, std::int64_t now_ms) {
  board.powered = true;
  board.checksums = false;
  board.counters_valid = false;
  board.config = 0;
  board.watchdog_armed = false;
  board.watchdog_unanswered = 0;
  board.watchdog_ask_at_ms = now_ms + board.settings.watchdog_ask_ms;
  board.digits_due_ms = 0;
  board.receiver = {};
  std::uint8_t counters[INPUT_COUNT];
  for (std::uint8_t& value : counters) {
    value = static_cast<std::uint8_t>(counter < 0 ? board.random() & 0x0F : counter);
  }
  switches_restart(board.switches, counters);
  for (Dispenser& dispenser : board.dispensers) dispenser_power_off(dispenser);
  coils_power_off(board.coils);
  ++board.counts.restarts;
  send(board, "*R", now_ms);
}

void board_power_off(Board& board) {
  board.powered = false;
  for (Dispenser& dispenser : board.dispensers) dispenser_power_off(dispenser);
  coils_power_off(board.coils);
}

void board_receive(Board& board, std::uint8_t byte, std::int64_t now_ms) {
  if (!board.powered) return;
  std::string body;
  switch (wire_receive(board.receiver, byte, board.checksums, body)) {
    case WIRE_NOTHING:
      break;
    case WIRE_FRAME:
      take_frame(board, body, now_ms);
      break;
    case WIRE_WITHOUT_DIGITS:
      take_frame_without_digits(board, body, now_ms);
      break;
    case WIRE_BAD_CHECKSUM:
      ++board.counts.checksum_errors;
      break;
    case WIRE_TOO_LONG:
      ++board.counts.malformed;
      break;
  }
}

void board_advance(Board& board, std::int64_t now_ms) {
  if (!board.powered) return;
  for (int side = LEFT; side < SIDES; ++side) {
    for (;;) {
      const DispenserEvent event = dispenser_advance(board.dispensers[side], now_ms);
      if (event == DISPENSER_NOTHING) break;
      send_tickets(board, side, event == DISPENSER_FAULT, now_ms);
    }
  }
  advance_watchdog(board, now_ms);
}

void board_switch(Board& board, int input, bool closed, std::int64_t now_ms) {
  if (switches_move(board.switches, input, closed)) send_counters(board, now_ms);
}

void board_ask_for_watchdog(Board& board, std::int64_t now_ms) {
  ++board.watchdog_unanswered;
  send(board, "*W", now_ms);
}

void board_send_counters(Board& board, std::int64_t now_ms) {
  send_counters(board, now_ms);
}

void board_say(Board& board, const std::string& body, std::int64_t now_ms) {
  board.to_host += wire_frame(body, board.checksums);
  frame_log_add(board.log, TO_HOST, body, now_ms);
}

void board_turn_ball(Board& board, int axis, int steps, std::int64_t now_ms) {
  board.switches.ball[axis] = static_cast<std::uint8_t>(board.switches.ball[axis] + steps);
  send_counters(board, now_ms);
}

// The u frame has a checksum already. A host with checksums off ignores the digits after CR. A host
// with checksums on, if only the board had lost the mode, would lose this frame and the next
// without them.
void board_set_checksums(Board& board, bool on, std::int64_t now_ms) {
  board.checksums = on;
  if (!on) return;
  board.digits_due_ms = now_ms + DIGITS_GRACE_MS;
  send(board, "u", now_ms);
}
