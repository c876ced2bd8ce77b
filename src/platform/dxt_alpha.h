// What a compressed texture's alpha is known to be, whoever decodes it.
#pragma once

#include <cstdint>

// Writes a byte for each pixel of a DXT5 picture whose sides are multiples of 4: 0 and 255 only
// where every decoder must find just these. An alpha between two ends is somewhere between them,
// and how it is rounded differs.
void dxt5_alpha(int width, int height, const std::uint8_t* blocks, std::uint8_t* alpha);
