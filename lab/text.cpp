#include "lab/text.h"

#include <cerrno>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fstream>

std::string text_of(const char* format, ...) {
  char buffer[512];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer, sizeof buffer, format, arguments);
  va_end(arguments);
  return buffer;
}

std::string json_number(double value) {
  return std::isfinite(value) ? text_of("%.10g", value) : "null";
}

std::string json_text(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
  }
  return quoted + "\"";
}

std::string html_text(const std::string& text) {
  std::string safe;
  for (const char c : text) {
    switch (c) {
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '&':
        safe += "&amp;";
        break;
      default:
        safe += c;
    }
  }
  return safe;
}

std::string text_try_file(const std::string& path) {
  const std::ofstream stream(path, std::ios::binary | std::ios::app);
  return stream ? std::string{} : path + ": can't be written: " + std::strerror(errno);
}

std::string text_write_file(const std::string& path, const std::string& text) {
  std::ofstream stream(path, std::ios::binary);
  stream << text;
  stream.close();
  return stream ? std::string{} : path + ": can't be written: " + std::strerror(errno);
}
