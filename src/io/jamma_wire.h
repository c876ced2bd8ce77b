// The frames of the I/O board's line as bytes: building, cutting out of a stream, decoding. Pure:
// no port, no lock, no clock.
//
// A frame is LF, a letter, data as pairs of hexadecimal digits, CR, and, while checksums are on,
// the sum of all bytes from LF to CR as two upper-case digits.
#pragma once

#include <cstddef>
#include <cstdint>

inline constexpr std::size_t WIRE_FRAME_MAX = 36;  // from the letter to CR

// The sum, modulo 256, of LF and of a frame's bytes from its letter to its CR.
std::uint8_t wire_checksum(const std::uint8_t* frame, std::size_t size);

// Writes a frame with up to 15 data bytes to `out`, which takes WIRE_FRAME_MAX bytes. Returns its
// length on the wire.
std::size_t wire_build(std::uint8_t* out, char letter, const std::uint8_t* data, std::size_t count,
                       bool checksum);

// Decodes a frame, given from its letter to before its CR, to the letter and its data bytes. Other
// bytes than digits are skipped, and so is half a pair at the end. A frame that begins with '*' is
// text and is copied unchanged. `out` takes `size` bytes. Returns the decoded length.
std::size_t wire_decode(const std::uint8_t* frame, std::size_t size, std::uint8_t* out);

enum WireEvent {
  WIRE_NOTHING,
  WIRE_FRAME,           // `buffer` holds a frame, from its letter to its CR
  WIRE_BAD_CHECKSUM,    // a frame was dropped
  WIRE_CHECKSUMS_LOST,  // the board sends frames without checksums; reported once
};

struct WireFraming {
  bool in_frame = false;
  bool awaiting_checksum = false;
  bool checksum_request_sent = false;
  bool got_digit = false;  // the first byte after CR has arrived
  std::uint8_t digit = 0;  // that byte
  std::uint8_t buffer[WIRE_FRAME_MAX] = {};
  std::size_t length = 0;
};

// Takes the next byte of the stream.
WireEvent wire_feed(WireFraming& framing, std::uint8_t byte, bool checksums_on);
