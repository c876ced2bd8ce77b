// Frames on the board's serial line: LF, a body of letters and digits, CR, and while checksums are
// on two digits of a sum. The board's own reading of it.
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
  WIRE_NOTHING,         // the frame isn't over, or no frame has begun
  WIRE_FRAME,           // a whole frame, its checksum right if there has to be one
  WIRE_WITHOUT_DIGITS,  // whole, but it carried no checksum where one was due
  WIRE_BAD_CHECKSUM,
  WIRE_TOO_LONG,
};

// The sum that a frame with this body carries: every byte from LF to CR, modulo 256.
std::uint8_t wire_checksum(const std::string& body);

// The bytes of a frame. The checksum's digits are capitals.
std::string wire_frame(const std::string& body, bool checksums);

// Appends a byte to a body as two capital digits.
void wire_put_byte(std::string& body, unsigned value);

// Takes one byte from the line. With an outcome other than WIRE_NOTHING `body` is what stood
// between LF and CR. Bytes outside a frame, the NUL behind each burst among them, pass unnoticed.
WireOutcome wire_receive(WireReceiver& receiver, std::uint8_t byte, bool checksums,
                         std::string& body);

// The data of a body as bytes. False unless it is pairs of digits alone, lower case as the host has
// to send them.
bool wire_data(const std::string& body, std::vector<std::uint8_t>& data);

// A body as people read it, "T 80 19"; what can't be shown stands as "\x07".
std::string wire_text(const std::string& body);
