// One pass of the protocol. The board's timing depends on the order.
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "io/jamma_link.h"
#include "platform/clock.h"

namespace {

constexpr std::uint32_t STEP_MS = 250;
constexpr std::uint32_t STATUS_QUERY_MS = 5000;
constexpr std::int64_t SILENCE_S = 20;

// Lamp channels that drive meters and coils. The left coin meter is a bit of the H frame.
constexpr std::uint32_t RIGHT_COIN_METER_LAMP = 0;
constexpr std::uint32_t TICKET_METER_LAMP[2] = {12, 11};
constexpr std::uint32_t LOCKOUT_LAMP[2] = {10, 1};

// Subtracts one half-period of a meter. Returns those left: odd in a pulse, even in a gap, -1 at
// rest.
std::int32_t step_meter(std::atomic<std::int32_t>& steps) {
  return steps == 0 ? -1 : steps.fetch_sub(1) - 1;
}

void set_lamp(std::uint32_t channel, bool on) {
  jamma_command(JAMMA_SET_LAMP, channel, on ? LAMP_FULL : 0);
}

void step_meter_lamp(std::atomic<std::int32_t>& steps, std::uint32_t channel) {
  const std::int32_t left = step_meter(steps);
  if (left >= 0) set_lamp(channel, left & 1);
}

void step_outputs(JammaLink& link) {
  const std::int32_t left = step_meter(link.coin_meter_steps[0]);
  if (left >= 0) {
    jamma_send_packet(link, PACKET_H_LEFT_COIN_METER | (left & 1 ? PACKET_BIT_ON : 0));
  }
  step_meter_lamp(link.coin_meter_steps[1], RIGHT_COIN_METER_LAMP);
  step_meter_lamp(link.ticket_meter_steps[0], TICKET_METER_LAMP[0]);
  step_meter_lamp(link.ticket_meter_steps[1], TICKET_METER_LAMP[1]);
  for (int side = 0; side < 2; ++side) {
    const std::int32_t request = link.lockout_request[side].exchange(0);
    if (request != 0) set_lamp(LOCKOUT_LAMP[side], request > 0);
  }
}

void handle_frames(JammaLink& link) {
  while (link.frames_ready != 0) {
    std::uint8_t frame[512];
    const std::int32_t size = jamma_read_frame(link, frame);
    if (size == 0) return;
    if (size > 0) jamma_handle_frame(link, frame, static_cast<std::size_t>(size));
  }
}

void judge_life(JammaLink& link) {
  const std::int64_t heard = link.last_heard;
  link.alive = heard == 0 || jamma_clock_s() - heard <= SILENCE_S;
}

}  // namespace

void jamma_ask_status(JammaLink& link) {
  link.status_deadline = clock_system_tick_ms() + STATUS_QUERY_MS;
  jamma_send_packet(link, PACKET_QUERY_STATUS);
}

void jamma_pump() {
  JammaLink* const link = jamma_link;
  if (!link) return;
  jamma_tx_flush(*link);
  const std::uint32_t now = clock_system_tick_ms();
  if (tick_reached(now, link->step_deadline)) {
    link->step_deadline = now + STEP_MS;
    step_outputs(*link);
  }
  if (tick_reached(now, link->status_deadline)) jamma_ask_status(*link);
  handle_frames(*link);
  jamma_tickets_schedule(*link, 0);
  jamma_tickets_schedule(*link, 1);
  judge_life(*link);
}
