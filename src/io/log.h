// Messages of the searches for the boards. A cabinet has no sink for them; a bench may set one.
#pragma once

#include <cstdint>
#include <cstdio>

enum LogKind { LOG_ERROR = 3, LOG_MESSAGE = 4 };

struct LogChannel {
  std::int32_t enabled = 1, messages = 1, errors = 1;
  void (*callback)(int kind, const char* text) = nullptr;
  std::FILE* file = nullptr;
  std::int32_t use_file = 0;
};

// The channel of the I/O board and the LED board. Set its sinks before the boards are opened.
extern LogChannel io_log;

// Formats into 128 bytes, cuts off what is longer, and hands the text to the channel's sinks.
[[gnu::format(printf, 2, 3)]] void log_message(const LogChannel& channel, const char* format, ...);
[[gnu::format(printf, 2, 3)]] void log_error(const LogChannel& channel, const char* format, ...);
