// Eight-byte keys for banks, playlists, sounds, groups and labels. Names with equal keys are the
// same name to the system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

struct JpsKey {
  std::uint32_t low = 0, high = 0;

  friend constexpr bool operator==(const JpsKey&, const JpsKey&) = default;
};

// The key of a name, whose bytes count as signed. Each of its six bytes combines another sum over
// the name with the byte before it. An empty name has the key 0.
constexpr JpsKey jps_key(std::string_view name) {
  constexpr auto fold = [](std::uint32_t sum) { return ((sum >> 8) + sum) & 0xFF; };
  // The sum of every `stride`-th byte from `first` on, each with the bits of `flip` inverted.
  const auto sum = [name](std::size_t first, std::size_t stride, std::uint32_t flip) {
    std::uint32_t total = 0;
    for (std::size_t i = first; i < name.size(); i += stride) {
      total += static_cast<std::uint32_t>(static_cast<signed char>(name[i])) ^ flip;
    }
    return total;
  };
  if (name.empty()) return {};
  const std::uint32_t a = fold(sum(0, 1, 0));
  const std::uint32_t b = fold(a + sum(0, 2, 0));
  const std::uint32_t c = fold(b + sum(1, 2, ~0U));
  const std::uint32_t d = fold(c + sum(0, 3, 0));
  const std::uint32_t e = fold(d + sum(1, 3, 0));
  const std::uint32_t f = fold(e + sum(1, 3, 0));
  return {e << 24 | f << 16, a << 24 | b << 16 | c << 8 | d};
}

static_assert(jps_key("sine100.wav") == JpsKey{0x07460000, 0xBFF05DC7});
static_assert(jps_key("sine1k.wav") == JpsKey{0xCFE10000, 0xCA6D40BD});
