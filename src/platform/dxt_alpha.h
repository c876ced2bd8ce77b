// What is certain about the alpha of a compressed texture, whatever decodes it.
#pragma once

#include <cstdint>

// Writes a byte for each pixel of a DXT5 picture whose sides are multiples of 4. 0 and 255 are
// written only where every decoder must give exactly these. Other values are only approximate,
// because decoders round them differently.
void dxt5_alpha(int width, int height, const std::uint8_t* blocks, std::uint8_t* alpha);
