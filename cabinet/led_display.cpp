#include "cabinet/led_display.h"

#include <cstddef>
#include <cstdint>

namespace {

constexpr std::size_t COMMAND_SIZE = 6;  // 55, command, operand high, operand low, AA, any byte
constexpr std::uint8_t HEAD = 0x55, TAIL = 0xAA;
constexpr std::uint8_t VALUE = 0x55, TYPE = 0x57, BLINK = 0x59;
constexpr const char* ANSWER = "LED 4 digits 1.0\r\n";

std::uint8_t byte_at(const std::string& bytes, std::size_t at) {
  return static_cast<std::uint8_t>(bytes[at]);
}

bool is_command(const std::string& bytes) {
  const std::uint8_t command = byte_at(bytes, 1);
  return byte_at(bytes, 0) == HEAD && byte_at(bytes, 4) == TAIL &&
         (command == VALUE || command == TYPE || command == BLINK);
}

void obey(LedDisplay& display) {
  const std::string& bytes = display.received;
  const int operand = byte_at(bytes, 2) << 8 | byte_at(bytes, 3);
  switch (byte_at(bytes, 1)) {
    case VALUE:
      display.value = operand;
      break;
    case BLINK:
      display.blink = operand != 0;
      break;
    default:
      ++display.types;
      display.to_host += ANSWER;
      break;
  }
}

}  // namespace

void led_display_power(LedDisplay& display, bool on) {
  display.powered = on;
  display.value = -1;
  display.blink = false;
  display.received.clear();
  display.to_host.clear();
}

void led_display_receive(LedDisplay& display, const std::string& bytes) {
  if (display.deaf || !display.powered) return;
  display.received += bytes;
  while (display.received.size() >= COMMAND_SIZE) {
    if (is_command(display.received)) {
      obey(display);
      display.received.erase(0, COMMAND_SIZE);
    } else {
      ++display.malformed;
      display.received.erase(0, 1);
    }
  }
}

std::string led_display_text(const LedDisplay& display) {
  if (display.value < 0) return "dark";
  return std::to_string(display.value) + (display.blink ? "*" : "");
}
