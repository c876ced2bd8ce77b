// The rings between the threads. Each lock is held for one copy, never over a system call, and
// never both.
#include <cstdint>
#include <cstring>

#include "io/jamma_link.h"
#include "platform/clock.h"
#include "platform/mutex.h"

namespace {

constexpr std::size_t FRAME_BYTES_MAX = 512;
constexpr std::uint8_t CR = 0x0D;

void ring_put(JammaLink& link, const std::uint8_t* bytes, std::size_t count)
    REQUIRES(link.rx_mutex) {
  if (link.rx_used + count > link.rx_capacity) {
    link.comm_errors |= COMM_RX_OVERFLOW;
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    link.rx_data[link.rx_head] = bytes[i];
    link.rx_head = (link.rx_head + 1) % RX_RING_SIZE;
  }
  link.rx_used += static_cast<std::uint32_t>(count);
}

void ring_put_frame(JammaLink& link) REQUIRES(link.rx_mutex) {
  const std::uint32_t used = link.rx_used;
  ring_put(link, link.framing.buffer, link.framing.length);
  if (link.rx_used != used) ++link.frames_ready;
}

void capture_bytes(JammaLink& link, const std::uint8_t* bytes, std::size_t count)
    REQUIRES(link.rx_mutex) {
  if (!link.capture_on || !link.capture) return;
  for (std::size_t i = 0; i < count && link.capture_used < link.capture_size; ++i) {
    link.capture[link.capture_used++] = bytes[i];
  }
}

}  // namespace

std::int32_t jamma_tx_queue(JammaLink& link, const void* bytes, std::size_t length) {
  const MutexLock lock(link.tx_mutex);
  if (length > link.tx_capacity - link.tx_used) {
    jamma_link_error = 1;
    return JAMMA_ERR_TX_FULL;
  }
  std::memcpy(link.tx_data + link.tx_used, bytes, length);
  link.tx_used += static_cast<std::uint32_t>(length);
  return 0;
}

void jamma_tx_flush(JammaLink& link) {
  if (!tick_reached(clock_system_tick_ms(), link.tx_next_time)) return;
  std::uint8_t burst[TX_RING_SIZE];
  std::size_t size = 0;
  {
    const MutexLock lock(link.tx_mutex);
    size = link.tx_used;
    std::memcpy(burst, link.tx_data, size);
    link.tx_used = 0;
  }
  if (size == 0) return;
  if (size < sizeof burst) burst[size++] = 0;  // the board knows the end of a burst by it
  serial_write(link.port, burst, size);        // what the port doesn't take is lost
  link.tx_next_time = clock_system_tick_ms() + link.tx_min_gap_ms;
}

void jamma_receive_bytes(JammaLink& link, const std::uint8_t* bytes, std::size_t count) {
  bool checksums_lost = false;
  {
    const MutexLock lock(link.rx_mutex);
    if (link.rx_capacity == 0) return;
    capture_bytes(link, bytes, count);
    const std::size_t room = link.rx_capacity - link.rx_used;
    const bool cut = count > room;
    if (cut) {
      link.comm_errors |= COMM_RX_OVERFLOW;
      count = room;
    }
    if (jamma_flag(link, RAW_MODE)) {
      ring_put(link, bytes, count);
      return;
    }
    const bool checksums_on = jamma_flag(link, CHECKSUMS_ON);
    for (std::size_t i = 0; i < count; ++i) {
      switch (wire_feed(link.framing, bytes[i], checksums_on)) {
        case WIRE_FRAME:
          ring_put_frame(link);
          break;
        case WIRE_BAD_CHECKSUM:
          ++jamma_checksum_failures;
          break;
        case WIRE_CHECKSUMS_LOST:
          checksums_lost = true;
          break;
        case WIRE_NOTHING:
          break;
      }
    }
    // Half a frame must not join the end of a later one.
    if (cut) link.framing.in_frame = link.framing.awaiting_checksum = false;
  }
  if (checksums_lost) jamma_send_packet(link, PACKET_CHECKSUMS_ON);
}

std::int32_t jamma_read_frame(JammaLink& link, std::uint8_t* out) {
  std::uint8_t raw[FRAME_BYTES_MAX];
  std::size_t size = 0;
  {
    const MutexLock lock(link.rx_mutex);
    if (link.frames_ready == 0) return 0;
    --link.frames_ready;
    while (link.rx_used > 0) {
      const std::uint8_t byte = link.rx_data[link.rx_tail];
      link.rx_tail = (link.rx_tail + 1) % RX_RING_SIZE;
      --link.rx_used;
      if (byte == CR) break;
      if (size < sizeof raw) raw[size] = byte;
      ++size;
    }
  }
  if (size > sizeof raw) return -1;
  return static_cast<std::int32_t>(wire_decode(raw, size, out));
}

void jamma_clear_rings(JammaLink& link) {
  {
    const MutexLock lock(link.rx_mutex);
    link.frames_ready = 0;
    link.rx_used = link.rx_head = link.rx_tail = 0;
  }
  const MutexLock lock(link.tx_mutex);
  link.tx_used = 0;
}

void jamma_capture(JammaLink& link, std::uint8_t* buffer, std::size_t size, bool on) {
  const MutexLock lock(link.rx_mutex);
  link.capture = buffer;
  link.capture_size = size;
  link.capture_used = 0;
  link.capture_on = on;
}
