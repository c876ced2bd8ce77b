#include "io/jamma_link.h"

#include <memory>

#include "platform/clock.h"

constinit std::atomic<JammaLink*> jamma_link{nullptr};
constinit Shared<std::int32_t> jamma_link_error{0};
constinit Shared<std::uint32_t> jamma_checksum_failures{0};

namespace {

JammaLink record;

constexpr std::uint32_t WATCHDOG_BYTE = 75;

// The start, podium and marquee lamps. The meters and lockout coils keep what they have.
constexpr std::uint32_t LAMPS_OFF_AT_START[] = {0, 2, 3, 5, 7, 15, 13, 14};

}  // namespace

JammaLink& jamma_reset() {
  jamma_link = nullptr;
  std::destroy_at(&record);
  std::construct_at(&record);
  jamma_presses_reset();
  return record;
}

void jamma_bring_up(JammaLink& link) {
  {
    const MutexLock lock(link.rx_mutex);
    link.rx_capacity = RX_RING_SIZE;
  }
  {
    const MutexLock lock(link.tx_mutex);
    link.tx_capacity = TX_RING_SIZE;
  }
  link.watchdog_byte = WATCHDOG_BYTE;
  link.input_table = 1;
  // The tick's origin is unknown, so a deadline of 0 could be weeks ahead.
  const std::uint32_t now = clock_system_tick_ms();
  link.step_deadline = link.status_deadline = link.tx_next_time = now;
  jamma_link = &link;

  jamma_send_packet(link, PACKET_QUERY_CONFIG);
  jamma_send_packet(link, PACKET_CONFIG);
  jamma_send_packet(link, PACKET_QUERY_VERSION);
  jamma_send_packet(link, PACKET_QUERY_COUNTERS);
  for (const std::uint32_t channel : LAMPS_OFF_AT_START) {
    jamma_command(JAMMA_SET_LAMP, channel, 0);
  }
}

void jamma_close(JammaLink& link) {
  jamma_stop_threads(link);
  if (!link.port || link.reader_thread || link.pump_thread) return;
  serial_close(link.port);
  link.port = nullptr;
}

std::int32_t JammaInit() {
  JammaShutdown();
  if (record.reader_thread || record.pump_thread || record.search_thread) {
    return JAMMA_ERR_THREAD;  // stuck, still on it
  }
  JammaLink& link = jamma_reset();
  const std::int32_t error = jamma_open(link);
  if (error < 0) return error;
  jamma_bring_up(link);
  return 0;
}

void jamma_search_start() {
  jamma_start_search(record);
}

void JammaShutdown() {
  jamma_stop_search(record);
  if (record.search_thread) return;  // stuck, and it may open the link yet
  jamma_link = nullptr;
  jamma_close(record);
  record.alive = 0;
}

bool jamma_link_alive() {
  return record.alive;
}

bool jamma_board_counters(std::uint8_t (&counters)[COUNTER_COUNT]) {
  const JammaLink* const link = jamma_link;
  if (!link || !jamma_flag(*link, COUNTERS_SYNCED)) return false;
  for (int i = 0; i < COUNTER_COUNT; ++i) counters[i] = link->counter_last_raw[i];
  return true;
}

bool jamma_tickets_reported() {
  const JammaLink* const link = jamma_link;
  return link && link->tickets_reported;
}

std::int32_t jamma_tickets_unanswered(int side) {
  const JammaLink* const link = jamma_link;
  return link ? link->tickets_unanswered[side].load() : 0;
}

void jamma_tickets_ask(int side) {
  JammaLink* const link = jamma_link;
  if (!link) return;
  jamma_tickets_query(*link, side);
}

std::int32_t jamma_port() {
  return record.which_port;
}
