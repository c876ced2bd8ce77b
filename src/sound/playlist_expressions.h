// Numbers in a playlist file: plain ones, seconds, and sums with constants.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

constexpr int JPS_CONSTANTS = 64;
constexpr std::size_t JPS_CONSTANT_NAME_MAX = 52;

// The value of a sum with an unknown name: outside of every range.
constexpr std::int32_t JPS_INVALID_VALUE = 4096;

struct JpsConstant {
  std::string_view name;  // in the file's text
  std::int32_t value;
};

struct JpsConstants {
  JpsConstant rows[JPS_CONSTANTS] = {};
  int count = 0;
};

// An integer as in C: decimal, octal with "0" or hexadecimal with "0x", with a sign. A number too
// large for 32 bits becomes the largest or smallest. False if the text is not a number.
bool playlist_integer(std::string_view text, std::int32_t& value);

// A finite decimal number. False if the text doesn't begin with one; `length` is its length.
bool playlist_seconds(std::string_view text, float& value, std::size_t& length);

// The value of terms joined by "+" or "-": decimal numbers, numbers with "0x", and constants;
// limited to 32 bits. False if a term is none of these: `unknown` is then that term and the value
// JPS_INVALID_VALUE.
bool playlist_expression(std::string_view text, const JpsConstants& constants, std::int32_t& value,
                         std::string_view& unknown);
