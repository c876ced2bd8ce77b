#include "io/log.h"

#include <cstdarg>
#include <cstring>
#include <ctime>

constinit LogChannel io_log;

namespace {

void write_line(const LogChannel& channel, LogKind kind, const char* format, va_list arguments) {
  char text[128];
  std::vsnprintf(text, sizeof text, format, arguments);
  if (channel.use_file && channel.file) {
    const std::time_t now = std::time(nullptr);
    char time_text[32] = "";
    ctime_r(&now, time_text);
    time_text[std::strcspn(time_text, "\n")] = '\0';
    std::fprintf(channel.file, "%s: %s %s\n", time_text, kind == LOG_MESSAGE ? "MESSAGE" : "ERROR",
                 text);
  }
  if (channel.callback) channel.callback(kind, text);
}

}  // namespace

void log_message(const LogChannel& channel, const char* format, ...) {
  if (!channel.enabled || !channel.messages) return;
  va_list arguments;
  va_start(arguments, format);
  write_line(channel, LOG_MESSAGE, format, arguments);
  va_end(arguments);
}

void log_error(const LogChannel& channel, const char* format, ...) {
  if (!channel.enabled || !channel.errors) return;
  va_list arguments;
  va_start(arguments, format);
  write_line(channel, LOG_ERROR, format, arguments);
  va_end(arguments);
}
