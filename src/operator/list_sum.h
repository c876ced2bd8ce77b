// The list of an installation's files, and the sum by which it proves each: a reflected CRC-32 of
// polynomial 0xEDB88320 that begins with 0x63046310 and is not inverted at its end. The boot check
// reads the list, `art/` writes it.
#pragma once

#include <zlib.h>

#include <cstddef>
#include <cstdint>

constexpr const char* FILE_LIST_NAME = "lhpcrc.txt";

constexpr std::uint32_t LIST_SUM_START = 0x63046310;

// The sum that more bytes make of the sum of those before. zlib inverts a sum on its way in and
// out.
inline std::uint32_t list_sum(std::uint32_t before, const void* bytes, std::size_t count) {
  const auto* data = static_cast<const unsigned char*>(bytes);
  return ~static_cast<std::uint32_t>(crc32_z(~before, data, count));
}
