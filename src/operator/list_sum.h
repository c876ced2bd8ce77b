// The list of installed files, and the checksum it has for each: a reflected CRC-32 with polynomial
// 0xEDB88320, start value 0x63046310 and no final inversion. The boot check reads the list; `art/`
// writes it.
#pragma once

#include <zlib.h>

#include <cstddef>
#include <cstdint>

constexpr const char* FILE_LIST_NAME = "lhpcrc.txt";

constexpr std::uint32_t LIST_SUM_START = 0x63046310;

// Continues a sum over more bytes. zlib inverts the sum on its way in and out.
inline std::uint32_t list_sum(std::uint32_t before, const void* bytes, std::size_t count) {
  const auto* data = static_cast<const unsigned char*>(bytes);
  return ~static_cast<std::uint32_t>(crc32_z(~before, data, count));
}
