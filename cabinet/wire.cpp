#include "cabinet/wire.h"

#include <cctype>
#include <cstdio>

namespace {

constexpr char LF = '\n', CR = '\r';

int digit_value(char c) {  // -1 for anything but a lower-case digit
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

void begin_frame(WireReceiver& receiver) {
  receiver.in_frame = true;
  receiver.in_digits = false;
  receiver.body.clear();
  receiver.digits.clear();
}

void end_frame(WireReceiver& receiver) {
  receiver.in_frame = false;
  receiver.in_digits = false;
}

// A byte after CR, where the two digits belong.
WireOutcome receive_digit(WireReceiver& receiver, char c, std::string& body) {
  body = receiver.body;
  // The next frame's LF or the NUL of the burst's end: the host sends no digits.
  if (receiver.digits.empty() && (c == LF || c == '\0')) {
    end_frame(receiver);
    if (c == LF) begin_frame(receiver);
    return WIRE_WITHOUT_DIGITS;
  }
  if (c == LF) {  // a digit was lost on the line
    begin_frame(receiver);
    return WIRE_BAD_CHECKSUM;
  }
  receiver.digits += c;
  if (receiver.digits.size() < 2) return WIRE_NOTHING;
  std::string right;
  wire_put_byte(right, wire_checksum(receiver.body));
  end_frame(receiver);
  return receiver.digits == right ? WIRE_FRAME : WIRE_BAD_CHECKSUM;
}

}  // namespace

std::uint8_t wire_checksum(const std::string& body) {
  unsigned sum = LF + CR;
  for (const char c : body) sum += static_cast<unsigned char>(c);
  return static_cast<std::uint8_t>(sum);
}

void wire_put_byte(std::string& body, unsigned value) {
  static const char digits[] = "0123456789ABCDEF";
  body += digits[value >> 4 & 15];
  body += digits[value & 15];
}

std::string wire_frame(const std::string& body, bool checksums) {
  std::string frame = LF + body + CR;
  if (checksums) wire_put_byte(frame, wire_checksum(body));
  return frame;
}

WireOutcome wire_receive(WireReceiver& receiver, std::uint8_t byte, bool checksums,
                         std::string& body) {
  const char c = static_cast<char>(byte);
  if (receiver.in_digits) return receive_digit(receiver, c, body);
  if (c == LF) {
    begin_frame(receiver);
    return WIRE_NOTHING;
  }
  if (!receiver.in_frame) return WIRE_NOTHING;
  if (c == CR) {
    if (checksums) {
      receiver.in_digits = true;
      return WIRE_NOTHING;
    }
    end_frame(receiver);
    body = receiver.body;
    return WIRE_FRAME;
  }
  receiver.body += c;
  if (receiver.body.size() <= WIRE_BODY_MAX) return WIRE_NOTHING;
  end_frame(receiver);
  body = receiver.body;
  return WIRE_TOO_LONG;
}

bool wire_data(const std::string& body, std::vector<std::uint8_t>& data) {
  data.clear();
  if (body.size() % 2 != 1) return false;
  for (std::size_t i = 1; i < body.size(); i += 2) {
    const int high = digit_value(body[i]), low = digit_value(body[i + 1]);
    if (high < 0 || low < 0) return false;
    data.push_back(static_cast<std::uint8_t>(high << 4 | low));
  }
  return true;
}

std::string wire_text(const std::string& body) {
  std::string text;
  const bool pairs = !body.empty() && body[0] != '*';
  for (std::size_t i = 0; i < body.size(); ++i) {
    if (pairs && i % 2 == 1) text += ' ';
    const auto c = static_cast<unsigned char>(body[i]);
    if (std::isprint(c)) {
      text += body[i];
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02x", c);
      text += escape;
    }
  }
  return text;
}
