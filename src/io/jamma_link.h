// The link to the I/O board from within: its record, and the calls between the files of the link.
// The game includes io/jamma.h instead.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "io/jamma.h"
#include "io/jamma_wire.h"    // WireFraming
#include "platform/clock.h"   // clock_ms
#include "platform/mutex.h"   // Mutex
#include "platform/serial.h"  // SerialPort
#include "platform/shared.h"  // Shared
#include "platform/thread.h"  // Thread

inline constexpr std::uint32_t RX_RING_SIZE = 4096;
inline constexpr std::uint32_t TX_RING_SIZE = 1024;
inline constexpr int LAMP_CHANNELS = 16;
inline constexpr std::uint32_t LAMP_FULL = 0xFFF;
inline constexpr std::int32_t TICKETS_ON_BOARD_MAX = 1023;  // the count travels in 10 bits

// Faults of the port. One of the low byte makes the reader purge it. (Bits 2 and 8 stand for faults
// of overlapped calls, which don't exist here.)
enum JammaCommError : std::uint32_t {
  COMM_WAIT_FAILED = 0x1,
  COMM_READ_FAILED = 0x4,
  COMM_PURGE_MASK = 0xFF,
  COMM_RX_OVERFLOW = 0x1000,
};

enum JammaPacket : std::uint32_t {
  PACKET_CONFIG = 1,
  PACKET_WATCHDOG = 2,
  PACKET_H_LEFT_COIN_METER = 3,
  PACKET_H_UNUSED = 4,
  PACKET_QUERY_CONFIG = 5,
  PACKET_QUERY_COUNTERS = 6,
  PACKET_QUERY_STATUS = 7,
  PACKET_QUERY_VERSION = 8,
  PACKET_H_GUN1_OUTPUT = 9,
  PACKET_H_GUN2_OUTPUT = 10,
  PACKET_F = 11,
  PACKET_H_AUX_OUT_1 = 12,
  PACKET_H_AUX_OUT_2 = 13,
  PACKET_LEFT_TICKETS = 14,
  PACKET_LEFT_STOP = 15,
  PACKET_RIGHT_TICKETS = 16,
  PACKET_RIGHT_STOP = 17,
  PACKET_LAMP = 18,
  PACKET_NUL = 19,
  PACKET_CHECKSUMS_ON = 20,
};
inline constexpr std::uint32_t PACKET_BIT_ON =
    0x100;  // with an H packet: set its bit, else clear it

// The clock of the board's silence: seconds of the steady clock, from 1 on. A calendar that is set
// must neither show a fault nor hide one.
inline std::int64_t jamma_clock_s() {
  return 1 + clock_ms() / 1000;
}

// A `Shared` word has one writer. Words that several threads change are atomic, or guarded by a
// mutex. A plain word belongs to the thread that its comment names.
struct JammaLink {
  // The line: its port, its threads, whether the board answers.
  SerialPort* port = nullptr;
  Shared<std::int32_t> which_port{NO_PORT};
  std::shared_ptr<Thread> reader_thread, pump_thread, search_thread;
  std::atomic<std::uint32_t> comm_errors{};
  Shared<std::uint8_t> alive{};
  Shared<std::int64_t> last_heard{};  // by jamma_clock_s; 0: not yet
  std::uint32_t status_deadline = 0;  // system tick; pump
  // Status queries since the last answer; and after an outage, how many answers it takes until one
  // is certain to be for a query that was sent after it.
  std::atomic<std::int32_t> status_unanswered{};
  std::int32_t answers_due = 0;  // pump
  Shared<bool> trace{}, status_events{};

  // What the board is.
  std::atomic<std::uint32_t> flags{};  // JammaFlags
  Shared<std::uint32_t> hardware_version{}, firmware_version{};
  Shared<std::uint32_t> config_f[4]{};
  Shared<std::uint32_t> input_table{};

  // Inputs.
  JammaInputs inputs{};
  std::atomic<std::uint32_t> changed{};
  std::uint8_t counter_offset[COUNTER_COUNT] = {};  // pump
  Shared<std::uint8_t> counter_last_raw[COUNTER_COUNT]{};
  std::uint32_t keys = 0, key_edges = 0;  // the keypad; pump, and so are the next two
  std::uint8_t key_queue[32] = {};
  std::uint32_t key_count = 0;

  // Outputs.
  Shared<std::uint32_t> watchdog_byte{};
  std::atomic<std::uint32_t> step_deadline{};                                // system tick
  std::atomic<std::int32_t> coin_meter_steps[2]{}, ticket_meter_steps[2]{};  // half-periods left
  std::atomic<std::int32_t> lockout_request[2]{};
  Shared<std::uint32_t> lamp_value[LAMP_CHANNELS]{};
  Shared<std::uint32_t> last_lamp{};
  std::atomic<std::uint32_t> h_bits{};
  Shared<std::uint32_t> h_invert{};

  // Tickets. The mutex is held while tickets are ordered or cleared: a clearing in between would be
  // followed by what it cleared. Taken before tx_mutex. The counts are read without it.
  Mutex ticket_mutex;
  std::atomic<std::int32_t> tickets_queued[2]{}, tickets_owed[2]{}, tickets_in_flight[2]{};
  // The board's count as it last reported it, and when; pump.
  std::int32_t tickets_on_board[2] = {};
  std::int64_t counted_ms[2] = {};
  // Tickets whose order the board did not answer yet, whether a start or a stop was among the
  // orders, and whether one was sent at all: a side with a fault waits for its next award.
  std::atomic<std::int32_t> tickets_unanswered[2]{};
  std::atomic<bool> start_unanswered[2]{}, order_open[2]{};
  std::atomic<std::int64_t> ordered_ms[2]{};  // the first that is open
  bool count_asked[2] = {};         // after an outage, until the board has reported its count; pump
  Shared<bool> tickets_reported{};  // the board has reported that it owes some; pump

  // Received frames, and a captured copy of the bytes.
  Mutex rx_mutex;
  std::uint8_t rx_data[RX_RING_SIZE] GUARDED_BY(rx_mutex) = {};
  std::uint32_t rx_capacity GUARDED_BY(rx_mutex) = 0;
  std::uint32_t rx_used GUARDED_BY(rx_mutex) = 0;
  std::uint32_t rx_head GUARDED_BY(rx_mutex) = 0, rx_tail GUARDED_BY(rx_mutex) = 0;
  WireFraming framing GUARDED_BY(rx_mutex);
  std::atomic<std::int32_t> frames_ready{};  // changed under rx_mutex
  std::uint8_t* capture GUARDED_BY(rx_mutex) = nullptr;
  std::size_t capture_size GUARDED_BY(rx_mutex) = 0, capture_used GUARDED_BY(rx_mutex) = 0;
  std::atomic<bool> capture_on{};

  // Bytes to send.
  Mutex tx_mutex;
  std::uint8_t tx_data[TX_RING_SIZE] GUARDED_BY(tx_mutex) = {};
  std::uint32_t tx_capacity GUARDED_BY(tx_mutex) = 0, tx_used GUARDED_BY(tx_mutex) = 0;
  std::uint32_t tx_min_gap_ms = 0, tx_next_time = 0;  // system tick; pump
};

// The record once the link is up, else null.
extern std::atomic<JammaLink*> jamma_link;

inline bool jamma_flag(const JammaLink& link, std::uint32_t flag) {
  return link.flags & flag;
}
inline void jamma_set_flag(JammaLink& link, std::uint32_t flag, bool on) {
  if (on) {
    link.flags |= flag;
  } else {
    link.flags &= ~flag;
  }
}

// True once the system tick has reached a deadline.
inline bool tick_reached(std::uint32_t now, std::uint32_t deadline) {
  return static_cast<std::int32_t>(now - deadline) >= 0;
}

// jamma_link.cpp

// Zeroes the record and the presses, and returns the record. The threads must not be running.
JammaLink& jamma_reset();
// Takes an opened link into use: rings, defaults, the first queries, all lamps off.
void jamma_bring_up(JammaLink& link);
// Ends the threads and closes the port. A thread that doesn't end in time keeps the port.
void jamma_close(JammaLink& link);

// jamma_port.cpp

// Searches "COM1" to "COM16" for the board. Returns its index, or NO_PORT. On a thread that is
// given it gives up when that is asked to stop.
std::int32_t jamma_find_port(const Thread* searcher = nullptr);
// Finds and opens the port and starts the threads. 0 or a JammaError; then nothing is left open.
std::int32_t jamma_open(JammaLink& link);

// jamma_threads.cpp

bool jamma_start_threads(JammaLink& link);
// The search for a board that comes late. It opens the link by itself, so it ends before that does.
void jamma_start_search(JammaLink& link);
void jamma_stop_search(JammaLink& link);
void jamma_stop_threads(JammaLink& link);

// jamma_rings.cpp

// Appends bytes, all or nothing. 0, or JAMMA_ERR_TX_FULL, which sets `jamma_link_error`. Any
// thread.
std::int32_t jamma_tx_queue(JammaLink& link, const void* bytes, std::size_t length);
// Sends what the ring holds as one burst. Pump thread.
void jamma_tx_flush(JammaLink& link);
// Cuts received bytes into frames and puts these into the receive ring. Reader thread.
void jamma_receive_bytes(JammaLink& link, const std::uint8_t* bytes, std::size_t count);
// Takes one decoded frame from the receive ring. `out` takes 512 bytes. Returns its length, 0 if
// there is none or an empty one, -1 if it would not fit. Pump thread.
std::int32_t jamma_read_frame(JammaLink& link, std::uint8_t* out);
// Empties both rings.
void jamma_clear_rings(JammaLink& link);
// Copies what arrives from now on into a caller's buffer, until it is full.
void jamma_capture(JammaLink& link, std::uint8_t* buffer, std::size_t size, bool on);

// jamma_send.cpp

// Builds the frame of a JammaPacket and queues it. Any thread.
std::int32_t jamma_send_packet(JammaLink& link, std::uint32_t packet);
// Queues the P frame of a channel.
std::int32_t jamma_send_lamp(JammaLink& link, std::uint32_t channel, std::uint32_t value);
// Queues the H frame with the present bits.
std::int32_t jamma_send_h(JammaLink& link);
// The first data byte of the C frame, as the flags require.
std::uint8_t jamma_config_byte(const JammaLink& link);

// jamma_tickets.cpp: all but the query on the pump thread.

// Orders queued tickets, as far as the board's count has room. They wait for the answer to the
// order before, and after an outage until it is known which orders were lost.
void jamma_tickets_schedule(JammaLink& link, int side);
// Asks for the board's count, by an order to add none. Any thread.
void jamma_tickets_query(JammaLink& link, int side);
// The board has reported a count that isn't void.
void jamma_tickets_counted(JammaLink& link, int side, std::int32_t count, bool fault);
// The board has reported a fault without a count. Its next order has the whole sum again.
void jamma_tickets_void(JammaLink& link, int side);
// Was an order lost, as far as can be seen? True for one that is without an answer for too long.
bool jamma_tickets_lost(const JammaLink& link);
// Asks for the counts that tell which orders were lost, ...
void jamma_tickets_find(JammaLink& link);
// ... and orders those again.
void jamma_tickets_order_lost(JammaLink& link);
// For a board that has forgotten its counts: orders the whole sums, except on a side with a fault,
// which waits for its next award.
void jamma_tickets_order_all(JammaLink& link);

// jamma_receive.cpp, jamma_pump.cpp and jamma_presses.cpp: the pump thread's duties.

void jamma_handle_frame(JammaLink& link, const std::uint8_t* frame, std::size_t size);
void jamma_pump();
void jamma_presses_count();
// Asks for the board's status, now and from then on every five seconds.
void jamma_ask_status(JammaLink& link);
// Back to no presses, as the counters start at 0.
void jamma_presses_reset();
