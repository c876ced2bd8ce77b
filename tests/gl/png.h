// A picture as a PNG file: blocks stored as they are, not packed.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/gfx/pictures.h"

inline void put_big32(Bytes& out, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(value >> shift & 0xFF);
}

inline std::uint32_t crc_of(const std::uint8_t* data, std::size_t size) {
  std::uint32_t crc = ~0U;
  for (std::size_t i = 0; i < size; ++i) {
    crc ^= data[i];
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320U : 0U);
  }
  return ~crc;
}

inline void put_chunk(Bytes& out, const std::string& type, const Bytes& data) {
  put_big32(out, data.size());
  const std::size_t start = out.size();
  out.insert(out.end(), type.begin(), type.end());
  out.insert(out.end(), data.begin(), data.end());
  put_big32(out, crc_of(&out[start], out.size() - start));
}

inline Bytes png_bytes(int width, int height, const Paint& paint) {
  Bytes rows;
  for (int y = 0; y < height; ++y) {
    rows.push_back(0);  // unfiltered
    for (int x = 0; x < width; ++x) {
      const std::uint32_t c = paint(x, y);
      for (const int shift : {16, 8, 0, 24}) rows.push_back(c >> shift & 0xFF);
    }
  }
  Bytes packed = {0x78, 0x01};
  std::uint32_t a = 1;
  std::uint32_t b = 0;
  for (std::size_t at = 0; at < rows.size(); at += 65535) {
    const std::size_t size = std::min<std::size_t>(65535, rows.size() - at);
    packed.push_back(at + size == rows.size() ? 1 : 0);
    put16(packed, size);
    put16(packed, ~size & 0xFFFF);
    for (std::size_t i = at; i < at + size; ++i) {
      packed.push_back(rows[i]);
      a = (a + rows[i]) % 65521;
      b = (b + a) % 65521;
    }
  }
  put_big32(packed, b << 16 | a);
  Bytes head;
  put_big32(head, width);
  put_big32(head, height);
  head.insert(head.end(), {8, 6, 0, 0, 0});  // 8 bits each of red, green, blue, alpha
  Bytes out = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  put_chunk(out, "IHDR", head);
  put_chunk(out, "IDAT", packed);
  put_chunk(out, "IEND", {});
  return out;
}
