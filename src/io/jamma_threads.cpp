// The two threads of the link: the reader cuts bytes into frames, the pump runs the protocol.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "io/jamma_link.h"
#include "platform/clock.h"

namespace {

constexpr int ROUND_MS = 1;
constexpr int READ_WAIT_MS = 250;  // on a silent line, the time between two checks of the board
constexpr std::uint32_t SILENT_QUERY_MS = 300;
constexpr int JOIN_BOUND_MS = 2000;
constexpr int SEARCH_EVERY_MS = 5000, SEARCH_LOOK_MS = 50;

// Receives for at most `wait_ms`. Returns after the first bytes.
void receive(JammaLink& link, int wait_ms) {
  clock_sleep_ms(ROUND_MS);
  if (link.comm_errors & COMM_PURGE_MASK) {
    serial_purge(link.port);
    link.comm_errors &= ~COMM_PURGE_MASK;
  }
  const int ready = serial_wait(link.port, wait_ms);
  if (ready < 0) link.comm_errors |= COMM_WAIT_FAILED;
  if (ready <= 0) return;
  std::uint8_t bytes[RX_RING_SIZE];
  const int count = serial_read(link.port, bytes, sizeof bytes);
  if (count < 0) link.comm_errors |= COMM_READ_FAILED;
  if (count > 0) jamma_receive_bytes(link, bytes, static_cast<std::size_t>(count));
}

// While the board is silent: sets the error, sends a query, and receives until the next one is due.
void silent_round(const Thread& self, JammaLink& link) {
  jamma_link_error = 1;
  jamma_command(JAMMA_QUERY_CONFIG);
  const std::uint32_t next_query = clock_system_tick_ms() + SILENT_QUERY_MS;
  while (!link.alive && !thread_stop_requested(self)) {
    const std::uint32_t now = clock_system_tick_ms();
    if (tick_reached(now, next_query)) return;
    receive(link, static_cast<int>(next_query - now));
  }
}

void reader_body(const Thread& self, void* context) {
  JammaLink& link = *static_cast<JammaLink*>(context);
  while (!thread_stop_requested(self)) {
    if (!link.alive) {
      silent_round(self, link);
      continue;
    }
    jamma_link_error = 0;
    receive(link, READ_WAIT_MS);
  }
}

void pump_body(const Thread& self, void*) {
  while (!thread_stop_requested(self)) {
    jamma_pump();
    jamma_presses_count();
    clock_sleep_ms(ROUND_MS);
  }
}

void search_body(const Thread& self, void* context) {
  JammaLink& link = *static_cast<JammaLink*>(context);
  for (int waited_ms = 0; !thread_stop_requested(self); waited_ms += SEARCH_LOOK_MS) {
    clock_sleep_ms(SEARCH_LOOK_MS);
    if (waited_ms < SEARCH_EVERY_MS) continue;
    waited_ms = 0;
    if (jamma_find_port(&self) == NO_PORT || jamma_open(link) < 0) continue;
    jamma_bring_up(link);
    return;
  }
}

void stop(std::shared_ptr<Thread>& thread) {
  if (thread && thread_join(*thread, JOIN_BOUND_MS)) thread.reset();
}

}  // namespace

bool jamma_start_threads(JammaLink& link) {
  link.reader_thread =
      thread_start("jamma-reader", THREAD_PRIORITY_TIME_CRITICAL, reader_body, &link);
  link.pump_thread = thread_start("jamma-pump", THREAD_PRIORITY_TIME_CRITICAL, pump_body, &link);
  return link.reader_thread && link.pump_thread;
}

void jamma_stop_threads(JammaLink& link) {
  if (link.reader_thread) {
    thread_request_stop(*link.reader_thread);
    serial_wake(link.port);
  }
  if (link.pump_thread) thread_request_stop(*link.pump_thread);
  stop(link.reader_thread);
  stop(link.pump_thread);
}

void jamma_start_search(JammaLink& link) {
  link.search_thread = thread_start("jamma-search", THREAD_PRIORITY_NORMAL, search_body, &link);
}

void jamma_stop_search(JammaLink& link) {
  if (link.search_thread) thread_request_stop(*link.search_thread);
  stop(link.search_thread);
}
