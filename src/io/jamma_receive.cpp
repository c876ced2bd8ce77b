// What the board says to the host. Runs on the pump thread.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <mutex>

#include "io/jamma_input_tables.h"
#include "io/jamma_link.h"
#include "platform/clock.h"

namespace {

constexpr std::size_t COUNTER_FRAME_SIZE = 9;  // exactly
constexpr std::uint8_t COUNTERS_VALID = 0x80;

constexpr std::uint32_t ACTIVE_LOW_SWITCHES = 0xFFFF3F;
constexpr std::uint32_t SWITCHES_SEEN = 0x10000000;
constexpr std::uint32_t DIPS_SEEN = 0x10000;

constexpr std::uint8_t CONFIG_A = 0x40, CONFIG_B = 0x80;  // in the second byte of a c frame
constexpr std::uint8_t CONFIG_ECHO = 0xF1;                // of its first byte

// Status questions that make an outage when only the last of them is answered. One lost answer, or
// a board that is up to ten seconds late, is none.
constexpr std::int32_t QUESTIONS_OF_OUTAGE = 3;

constexpr std::uint8_t TICKET_RIGHT = 0x08, TICKET_FAULT_VOID = 0x40, TICKET_FAULT = 0x80;

constexpr std::uint32_t FIRMWARE_WITH_TRACKBALL = 5;  // high nibble

void ask_for_counters(JammaLink& link) {
  jamma_set_flag(link, COUNTERS_SYNCED, false);
  jamma_send_packet(link, PACKET_CONFIG);
  jamma_send_packet(link, PACKET_QUERY_COUNTERS);
}

constexpr std::uint32_t DISPENSING[2] = {LEFT_DISPENSING, RIGHT_DISPENSING};
constexpr std::uint32_t FAULT[2] = {LEFT_TICKET_FAULT, RIGHT_TICKET_FAULT};
constexpr std::uint32_t TICKETS[2] = {PACKET_LEFT_TICKETS, PACKET_RIGHT_TICKETS};

// A board that has restarted has forgotten its outputs and what it had to pay. It is told again:
// lamps and coils that are on, and the whole sum owed, unless the side waits with a fault for the
// next award.
void tell_again(JammaLink& link) {
  for (std::uint32_t channel = 0; channel < LAMP_CHANNELS; ++channel) {
    const std::uint32_t value = link.lamp_value[channel];
    if (value != 0) jamma_send_lamp(link, channel, value);
  }
  if (link.h_bits != 0) jamma_send_h(link);
  const std::lock_guard lock(link.ticket_mutex);
  for (int side = 0; side < 2; ++side) {
    jamma_set_flag(link, DISPENSING[side], false);
    if (link.tickets_owed[side] > 0 && !jamma_flag(link, FAULT[side])) {
      jamma_send_packet(link, TICKETS[side]);
    }
  }
}

// A line that was dead and lives again has lost what was said meanwhile: the state of lamps and
// coils, which may be sent at any time, ...
void send_outputs(JammaLink& link) {
  for (std::uint32_t channel = 0; channel < LAMP_CHANNELS; ++channel) {
    jamma_send_lamp(link, channel, link.lamp_value[channel]);
  }
  jamma_send_h(link);
}

// ... and tickets. Only those are told again that the board gave no answer to: what it knew of it
// may have paid unheard.
void send_lost_tickets(JammaLink& link) {
  const std::lock_guard lock(link.ticket_mutex);
  for (int side = 0; side < 2; ++side) {
    const std::int32_t lost = link.tickets_unanswered[side].exchange(0);
    const bool start = link.start_unanswered[side].exchange(false);
    if (lost == 0 && !start) continue;
    if (start) jamma_set_flag(link, DISPENSING[side], false);
    link.tickets_owed[side] -= lost;
    link.tickets_in_flight[side] += lost;
    jamma_send_packet(link, TICKETS[side]);
  }
}

void handle_text(JammaLink& link, std::uint8_t word) {
  if (word == 'R') {
    ask_for_counters(link);
    tell_again(link);
  } else if (word == 'W' && !jamma_flag(link, WATCHDOG_MUTE)) {
    jamma_send_packet(link, PACKET_WATCHDOG);
  }
}

std::uint8_t raw_counter(const InputRow& row, const std::uint8_t* frame) {
  return frame[row.byte] >> row.shift & row.mask;
}

// The steps from `previous` to `raw` the shorter way round a ring of `mask` + 1 values; half way
// round counts as up for a value that fell and as down for one that rose.
std::int32_t shorter_way(std::int32_t previous, std::int32_t raw, std::int32_t mask) {
  if (raw < previous) {
    const std::int32_t down = previous - raw, up = mask - previous + 1 + raw;
    return down < up ? -down : up;
  }
  const std::int32_t down = mask - raw + 1 + previous, up = raw - previous;
  return down <= up ? -down : up;
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
    const bool news = jamma_flag(link, COUNTERS_SYNCED);  // the board's own word was lost
    ask_for_counters(link);
    if (news) tell_again(link);
    return;
  }
  const auto table = jamma_input_table(link.input_table);
  if (!jamma_flag(link, COUNTERS_SYNCED)) {
    // A board that has restarted at other values joins the wide counters without a jump.
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

// Looks for an outage behind an answer to a status question. The board may only have been slow:
// then the answers to older questions are still to come, and so may be its word on tickets. It
// takes words in order, so it has none to come from before the outage's end once it has answered a
// question asked after that, which is certain when there have been as many answers as there were
// questions open.
void judge_outage(JammaLink& link, bool first_answer) {
  const std::int32_t asked = link.status_unanswered.exchange(0);
  if (asked >= QUESTIONS_OF_OUTAGE && !first_answer) {
    send_outputs(link);
    link.answers_due += asked;
  } else if (link.answers_due > 0) {
    --link.answers_due;
    if (link.answers_due == 0) send_lost_tickets(link);
  }
  if (link.answers_due > 0) jamma_ask_status(link);
}

void handle_status(JammaLink& link, const std::uint8_t* frame) {
  const std::uint32_t lines = static_cast<std::uint32_t>(frame[4]) << 16 |
                              static_cast<std::uint32_t>(frame[3]) << 8 | frame[2];
  judge_outage(link, link.last_heard == 0);
  link.last_heard = clock_calendar_s();
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
  } else if (count > 0) {
    link.tickets_reported = true;
  }
  link.tickets_owed[side] = count;
  link.tickets_unanswered[side] = 0;
  link.start_unanswered[side] = false;
  if (frame[1] & (TICKET_FAULT_VOID | TICKET_FAULT)) {
    jamma_set_flag(link, dispensing, false);
    jamma_set_flag(link, fault, true);
  } else if (count == 0) {
    jamma_set_flag(link, dispensing | fault, false);
  }
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

}  // namespace

void jamma_handle_frame(JammaLink& link, const std::uint8_t* frame, std::size_t size) {
  switch (frame[0]) {
    case '*':
      if (size >= 2) handle_text(link, frame[1]);
      break;
    case 'K':
      if (size >= 3) handle_keypad(link, frame);
      break;
    case 'S':
      if (size == COUNTER_FRAME_SIZE) handle_counters(link, frame);
      break;
    case 'c':
      if (size >= 3) handle_config(link, frame);
      break;
    case 's':
      if (size >= 6) handle_status(link, frame);
      break;
    case 't':
      if (size >= 3) handle_tickets(link, frame);
      break;
    case 'u':
      jamma_set_flag(link, CHECKSUMS_ON, true);
      break;
    case 'v':
      if (size >= 3) handle_version(link, frame);
      break;
    default:  // the frames of guns, which this cabinet has not, and what no board sends
      break;
  }
}
