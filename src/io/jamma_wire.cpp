#include "io/jamma_wire.h"

#include <cassert>
#include <cstring>

namespace {

constexpr std::uint8_t LF = 0x0A, CR = 0x0D;

std::uint8_t digit_from(unsigned value, char ten) {
  return static_cast<std::uint8_t>(value < 10 ? '0' + value : ten + value - 10);
}
std::uint8_t lower_digit(unsigned value) {
  return digit_from(value, 'a');
}
std::uint8_t upper_digit(unsigned value) {
  return digit_from(value, 'A');
}

int digit_value(std::uint8_t byte) {
  if (byte >= '0' && byte <= '9') return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return -1;
}

// The second byte after CR decides whether the frame is good.
WireEvent end_checksum(WireFraming& framing, std::uint8_t second) {
  const std::uint8_t sum = wire_checksum(framing.buffer, framing.length);
  const bool good = framing.digit == upper_digit(sum >> 4) && second == upper_digit(sum & 15);
  framing.awaiting_checksum = framing.in_frame = false;
  if (!good) return WIRE_BAD_CHECKSUM;
  framing.checksum_request_sent = false;
  return WIRE_FRAME;
}

// LF in place of the first checksum digit: the board has restarted and lost the mode. The frame
// that this LF begins is dropped too.
WireEvent end_without_checksum(WireFraming& framing) {
  framing.awaiting_checksum = framing.in_frame = false;
  if (framing.checksum_request_sent) return WIRE_NOTHING;
  framing.checksum_request_sent = true;
  return WIRE_CHECKSUMS_LOST;
}

WireEvent begin_frame(WireFraming& framing) {
  framing.in_frame = true;
  framing.length = 0;
  if (!framing.awaiting_checksum) return WIRE_NOTHING;
  if (!framing.got_digit) {
    framing.got_digit = true;
    framing.digit = LF;
    return WIRE_NOTHING;
  }
  // A digit of the checksum was lost on the line. The frame before is dropped; the one that begins
  // here is read.
  framing.awaiting_checksum = false;
  return framing.digit == LF ? WIRE_NOTHING : WIRE_BAD_CHECKSUM;
}

}  // namespace

std::uint8_t wire_checksum(const std::uint8_t* frame, std::size_t size) {
  unsigned sum = LF;
  for (std::size_t i = 0; i < size; ++i) sum += frame[i];
  return static_cast<std::uint8_t>(sum);
}

std::size_t wire_build(std::uint8_t* out, char letter, const std::uint8_t* data, std::size_t count,
                       bool checksum) {
  assert(count <= 15);
  std::size_t size = 0;
  out[size++] = LF;
  out[size++] = static_cast<std::uint8_t>(letter);
  for (std::size_t i = 0; i < count; ++i) {
    out[size++] = lower_digit(data[i] >> 4);
    out[size++] = lower_digit(data[i] & 15);
  }
  out[size++] = CR;
  if (checksum) {
    const std::uint8_t sum = wire_checksum(out + 1, size - 1);
    out[size++] = upper_digit(sum >> 4);
    out[size++] = upper_digit(sum & 15);
  }
  return size;
}

std::size_t wire_decode(const std::uint8_t* frame, std::size_t size, std::uint8_t* out) {
  if (size == 0) return 0;
  if (frame[0] == '*') {
    std::memcpy(out, frame, size);
    return size;
  }
  std::size_t length = 0;
  out[length++] = frame[0];
  int high = -1;
  for (std::size_t i = 1; i < size; ++i) {
    const int value = digit_value(frame[i]);
    if (value < 0) continue;
    if (high < 0) {
      high = value;
      continue;
    }
    out[length++] = static_cast<std::uint8_t>(high << 4 | value);
    high = -1;
  }
  return length;
}

WireEvent wire_feed(WireFraming& framing, std::uint8_t byte, bool checksums_on) {
  if (byte == LF) return begin_frame(framing);
  if (!framing.in_frame) return WIRE_NOTHING;
  if (framing.awaiting_checksum) {
    if (framing.got_digit) {
      return framing.digit == LF ? end_without_checksum(framing) : end_checksum(framing, byte);
    }
    framing.got_digit = true;
    framing.digit = byte;
    return WIRE_NOTHING;
  }
  if (framing.length == WIRE_FRAME_MAX) {  // no frame of the board is as long: the line is garbled
    framing.in_frame = false;
    return WIRE_NOTHING;
  }
  framing.buffer[framing.length++] = byte;
  if (byte != CR) return WIRE_NOTHING;
  if (!checksums_on) {
    framing.in_frame = false;
    return WIRE_FRAME;
  }
  framing.awaiting_checksum = true;
  framing.got_digit = false;
  return WIRE_NOTHING;
}
