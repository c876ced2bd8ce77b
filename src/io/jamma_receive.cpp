// The frames that the board sends. A new one is a function and a row of BOARD_FRAMES. Pump thread.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "io/jamma_input_tables.h"
#include "io/jamma_link.h"
#include "platform/clock.h"

namespace {

constexpr std::uint8_t COUNTERS_VALID = 0x80;

constexpr std::uint32_t ACTIVE_LOW_SWITCHES = 0xFFFF3F;
constexpr std::uint32_t SWITCHES_SEEN = 0x10000000;
constexpr std::uint32_t DIPS_SEEN = 0x10000;

constexpr std::uint8_t CONFIG_A = 0x40, CONFIG_B = 0x80;  // in the second byte of a c frame
constexpr std::uint8_t CONFIG_ECHO = 0xF1;                // of its first byte

// So many status queries of which only the last was answered are an outage. One lost answer is not,
// nor is a board that is up to ten seconds late.
constexpr std::int32_t OUTAGE_QUERIES = 3;

constexpr std::uint8_t TICKET_RIGHT = 0x08, TICKET_FAULT_VOID = 0x40, TICKET_FAULT = 0x80;

constexpr std::uint32_t FIRMWARE_WITH_TRACKBALL = 5;  // high nibble

void query_counters(JammaLink& link) {
  jamma_set_flag(link, COUNTERS_SYNCED, false);
  jamma_send_packet(link, PACKET_CONFIG);
  jamma_send_packet(link, PACKET_QUERY_COUNTERS);
}

constexpr std::uint32_t DISPENSING[2] = {LEFT_DISPENSING, RIGHT_DISPENSING};
constexpr std::uint32_t FAULT[2] = {LEFT_TICKET_FAULT, RIGHT_TICKET_FAULT};

// For a board that has restarted, which has lost its outputs and its ticket counts.
void send_again(JammaLink& link) {
  for (std::uint32_t channel = 0; channel < LAMP_CHANNELS; ++channel) {
    const std::uint32_t value = link.lamp_value[channel];
    if (value != 0) jamma_send_lamp(link, channel, value);
  }
  if (link.h_bits != 0) jamma_send_h(link);
  jamma_tickets_order_all(link);
}

// After an outage: lamps and coils may be sent at any time, and the counters show whether it is
// another board, or one that has restarted.
void send_outputs(JammaLink& link) {
  for (std::uint32_t channel = 0; channel < LAMP_CHANNELS; ++channel) {
    jamma_send_lamp(link, channel, link.lamp_value[channel]);
  }
  jamma_send_h(link);
  jamma_send_packet(link, PACKET_QUERY_COUNTERS);
}

void handle_text(JammaLink& link, const std::uint8_t* frame) {
  if (frame[1] == 'R') {
    query_counters(link);
    send_again(link);
  } else if (frame[1] == 'W' && !jamma_flag(link, WATCHDOG_MUTE)) {
    jamma_send_packet(link, PACKET_WATCHDOG);
  }
}

std::uint8_t raw_counter(const InputRow& row, const std::uint8_t* frame) {
  return frame[row.byte] >> row.shift & row.mask;
}

// The steps from `previous` to `raw`, the shorter way round a ring of `mask` + 1 values. Exactly
// half way round counts up if the value fell and down if it rose.
std::int32_t shorter_way(std::int32_t previous, std::int32_t raw, std::int32_t mask) {
  const std::int32_t up = (raw - previous) & mask, down = mask + 1 - up;
  return up < down || (up == down && raw < previous) ? up : -down;
}

void move_counter(JammaLink& link, const InputRow& row, std::uint8_t raw) {
  Shared<std::uint32_t>& counter = link.inputs.counters[row.counter];
  const std::uint8_t previous = link.counter_last_raw[row.counter];
  link.counter_last_raw[row.counter] = raw;
  std::uint32_t steps = 0;  // of a row that wraps: modulo 2^32, since it may go down
  if (row.wraps) {
    steps = static_cast<std::uint32_t>(shorter_way(previous, raw, row.mask));
  } else {
    steps = (link.counter_offset[row.counter] + raw - counter) & row.mask;
  }
  if (steps == 0) return;
  counter += steps;
  link.changed |= row.event;
  jamma_set_flag(link, COUNTERS_MOVED, true);
}

void handle_counters(JammaLink& link, const std::uint8_t* frame) {
  if (!(frame[1] & COUNTERS_VALID)) {
    const bool news = jamma_flag(link, COUNTERS_SYNCED);  // its *R was lost
    query_counters(link);
    if (news) send_again(link);
    return;
  }
  const auto table = jamma_input_table(link.input_table);
  if (!jamma_flag(link, COUNTERS_SYNCED)) {
    // A restarted board counts from other values; the offsets keep the wide counters where they
    // are.
    for (const InputRow& row : table) {
      const std::uint8_t raw = raw_counter(row, frame);
      const std::uint32_t wide = link.inputs.counters[row.counter];
      link.counter_offset[row.counter] = static_cast<std::uint8_t>((wide - raw) & row.mask);
      link.counter_last_raw[row.counter] = raw;
    }
    jamma_set_flag(link, COUNTERS_SYNCED, true);
  }
  for (const InputRow& row : table) move_counter(link, row, raw_counter(row, frame));
}

// An answer to a status query may end an outage, or show that the line, which is well, has lost an
// order of tickets. Tickets that the board knew of it may have paid in the meantime, so it is asked
// for its counts before an order is sent again. But the board may only have been slow: then
// answers to older queries are still to come, and a t frame may be among them. It answers in order,
// so nothing older is left once it has answered a query sent after the outage. That is certain
// after as many further answers as there were queries open.
void judge_outage(JammaLink& link, bool first_answer) {
  const std::int32_t asked = link.status_unanswered.exchange(0);
  const bool outage = asked >= OUTAGE_QUERIES && !first_answer;
  if (outage || (asked > 0 && link.answers_due == 0 && jamma_tickets_lost(link))) {
    send_outputs(link);
    jamma_tickets_find(link);
    link.answers_due += asked;
  } else if (link.answers_due > 0) {
    --link.answers_due;
    if (link.answers_due == 0) jamma_tickets_order_lost(link);
  }
  if (link.answers_due > 0) jamma_ask_status(link);
}

void handle_status(JammaLink& link, const std::uint8_t* frame) {
  const std::uint32_t lines = static_cast<std::uint32_t>(frame[4]) << 16 |
                              static_cast<std::uint32_t>(frame[3]) << 8 | frame[2];
  judge_outage(link, link.last_heard == 0);
  link.last_heard = jamma_clock_s();
  link.inputs.previous_switches = link.inputs.switches.get();
  link.inputs.switches = (lines ^ ACTIVE_LOW_SWITCHES) | SWITCHES_SEEN;
  link.inputs.dips = (~static_cast<std::uint32_t>(frame[5]) & 0xFF) | DIPS_SEEN;
}

void handle_config(JammaLink& link, const std::uint8_t* frame) {
  const bool a = frame[2] & CONFIG_A;
  if (!jamma_flag(link, CONFIG_KNOWN)) {
    jamma_set_flag(link, CONFIG_BIT_A, a);
    jamma_set_flag(link, CONFIG_BIT_B, frame[2] & CONFIG_B);
    if (a) jamma_set_flag(link, CONFIG_PENDING, true);
    jamma_set_flag(link, CONFIG_KNOWN, true);
  } else if (a) {
    jamma_set_flag(link, CONFIG_PENDING, false);
  }
  if ((frame[1] & CONFIG_ECHO) != jamma_config_byte(link)) {
    jamma_send_packet(link, PACKET_CONFIG);
  }
}

void handle_tickets(JammaLink& link, const std::uint8_t* frame) {
  const int side = frame[1] & TICKET_RIGHT ? 1 : 0;
  const std::uint32_t dispensing = DISPENSING[side], fault = FAULT[side];
  std::int32_t count = (frame[1] & 3) << 8 | frame[2];
  if (frame[1] & TICKET_FAULT_VOID) {
    count = std::min(link.tickets_owed[side].load(), TICKETS_ON_BOARD_MAX);
    jamma_tickets_void(link, side);
  } else {
    if (count > 0) link.tickets_reported = true;
    jamma_tickets_counted(link, side, count, frame[1] & TICKET_FAULT);
  }
  link.tickets_owed[side] = count;
  if (frame[1] & (TICKET_FAULT_VOID | TICKET_FAULT)) {
    jamma_set_flag(link, dispensing, false);
    jamma_set_flag(link, fault, true);
  } else if (count == 0) {
    jamma_set_flag(link, dispensing | fault, false);
  }
}

void handle_checksums(JammaLink& link, const std::uint8_t* /*frame*/) {
  jamma_set_flag(link, CHECKSUMS_ON, true);
}

void handle_version(JammaLink& link, const std::uint8_t* frame) {
  link.hardware_version = frame[1];
  link.firmware_version = frame[2];
  jamma_command(JAMMA_SET_INPUT_TABLE, frame[2] >> 4 == FIRMWARE_WITH_TRACKBALL ? 1 : 0);
}

void handle_keypad(JammaLink& link, const std::uint8_t* frame) {
  const std::uint32_t keys = static_cast<std::uint32_t>(frame[1]) << 8 | frame[2];
  link.key_edges = keys & ~link.keys;
  link.keys = keys;
  for (std::uint8_t key = 0; key < 12; ++key) {
    if (!(link.key_edges >> key & 1) || link.key_count == std::size(link.key_queue)) continue;
    link.key_queue[link.key_count++] = key;
  }
}

enum SizeRule { AT_LEAST, EXACTLY };

struct BoardFrame {
  std::uint8_t letter;
  SizeRule rule;
  std::size_t size;  // bytes, the letter among them; a frame of another size is ignored
  void (*handle)(JammaLink& link, const std::uint8_t* frame);
};

// Guns send frames of their own; this cabinet has none.
constexpr BoardFrame BOARD_FRAMES[] = {
    {'*', AT_LEAST, 2, handle_text},      {'K', AT_LEAST, 3, handle_keypad},
    {'S', EXACTLY, 9, handle_counters},   {'c', AT_LEAST, 3, handle_config},
    {'s', AT_LEAST, 6, handle_status},    {'t', AT_LEAST, 3, handle_tickets},
    {'u', AT_LEAST, 1, handle_checksums}, {'v', AT_LEAST, 3, handle_version},
};

}  // namespace

void jamma_handle_frame(JammaLink& link, const std::uint8_t* frame, std::size_t size) {
  for (const BoardFrame& row : BOARD_FRAMES) {
    if (row.letter != frame[0]) continue;
    if (row.rule == EXACTLY ? size == row.size : size >= row.size) row.handle(link, frame);
    return;
  }
}
