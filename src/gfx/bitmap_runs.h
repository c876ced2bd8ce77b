// The run-length code of Windows bitmap files.
#pragma once

#include <cstddef>
#include <cstdint>

// Unpacks rows of `width` pixels of 4 or 8 bits, bottom row first, to a byte for each pixel in
// `indexes`, which holds `width` times `height` zeros: what the code skips keeps its zero. Pixels
// beside the picture are dropped. False if the code ends before its end mark. Any thread.
bool bitmap_runs_unpack(const std::uint8_t* code, std::size_t size, bool four_bits,
                        std::size_t width, std::size_t height, std::uint8_t* indexes);

// The most pixels that so many bytes of code can paint: a run of two bytes has at most 255. A
// header that asks for more is wrong about its file.
std::size_t bitmap_runs_most_pixels(std::size_t size);
