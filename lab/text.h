// Numbers as text.
#pragma once

#include <string>

// As printf, into a string.
[[gnu::format(printf, 1, 2)]] std::string text_of(const char* format, ...);

// A number for JSON: null where it isn't one.
std::string json_number(double value);
// Quoted and escaped.
std::string json_text(const std::string& text);
std::string html_text(const std::string& text);

// Checks before the work that a file can be written, and creates it if it is missing. Empty, or a
// line that says what is wrong.
std::string text_try_file(const std::string& path);

// Writes a whole file. Empty, or a line that says what is wrong.
std::string text_write_file(const std::string& path, const std::string& text);
