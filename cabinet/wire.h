// Frames on the board's serial line, as the board reads them: LF, a body of letters and digits, CR,
// and two digits of a sum while checksums are on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// A body longer than this is no frame of this line.
constexpr std::size_t WIRE_BODY_MAX = 36;

struct WireReceiver {
  bool in_frame = false;
  bool in_digits = false;  // CR has come, the checksum has not
  std::string body;
  std::string digits;
};

enum WireOutcome {
  WIRE_NOTHING,         // no frame, or it isn't complete
  WIRE_FRAME,           // a whole frame, its checksum right if there has to be one
  WIRE_WITHOUT_DIGITS,  // a whole frame without the checksum that it must have
  WIRE_BAD_CHECKSUM,
  WIRE_TOO_LONG,
};

// The sum that a frame with this body carries: every byte from LF to CR, modulo 256.
std::uint8_t wire_checksum(const std::string& body);

// The bytes of a frame. The checksum's digits are capitals.
std::string wire_frame(const std::string& body, bool checksums);

// Appends a byte to a body as two capital digits.
void wire_put_byte(std::string& body, unsigned value);

// Takes one byte from the line. With any outcome but WIRE_NOTHING, `body` is the text between
// LF and CR. Bytes outside a frame, such as the NUL after each burst, are ignored.
WireOutcome wire_receive(WireReceiver& receiver, std::uint8_t byte, bool checksums,
                         std::string& body);

// The data of a body as bytes. False unless it is pairs of digits alone, lower case as the host has
// to send them.
bool wire_data(const std::string& body, std::vector<std::uint8_t>& data);

// A body for people to read, "T 80 19"; bytes that can't be shown become "\x07".
std::string wire_text(const std::string& body);
