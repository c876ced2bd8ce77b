#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "platform/display.h"
#include "platform/headless/display_record.h"

bool display_create_context(std::string& error) {
  error = headless_display.context_error;
  return error.empty();
}

void display_set_projection(int left, int top, int width, int height) {
  int i = 0;
  for (const int number : {left, top, width, height}) headless_display.projection[i++] = number;
}

int display_begin_frame(std::uint32_t /*colour*/) {
  ++headless_display.frames;
  return 0;
}

void display_end_frame() {}

void display_wait_drawn() {}

std::uint32_t display_texture_create(int width, int height, PixelFormat format,
                                     const void* pixels) {
  if (format == PIXELS_RGBA && headless_display.record) {
    const auto* bytes = static_cast<const std::uint8_t*>(pixels);
    headless_display.rgba.assign(bytes, bytes + std::size_t{4} * width * height);
  }
  return ++headless_display.textures;
}

// The size is in the first block of a PNG file, big-endian.
std::uint32_t display_texture_load_png(const char* path, int* width, int* height) {
  *width = *height = 0;
  std::uint8_t head[24];
  std::FILE* file = std::fopen(path, "rb");
  if (file == nullptr) return 0;
  const bool whole = std::fread(head, sizeof head, 1, file) == 1;
  std::fclose(file);
  if (!whole || std::memcmp(head, "\x89PNG\r\n\x1a\n", 8) != 0 ||
      std::memcmp(head + 12, "IHDR", 4) != 0) {
    return 0;
  }
  *width = head[16] << 24 | head[17] << 16 | head[18] << 8 | head[19];
  *height = head[20] << 24 | head[21] << 16 | head[22] << 8 | head[23];
  return ++headless_display.textures;
}

bool display_texture_read_alpha(std::uint32_t /*texture*/, std::uint8_t* /*alpha*/) {
  return false;
}

void display_draw_quad(const DisplayQuad& quad) {
  ++headless_display.quads;
  if (headless_display.record) headless_display.recorded.push_back(quad);
}

bool display_is_unscaled() {
  return headless_display.unscaled;
}

bool display_read_frame(std::uint8_t* /*rgb*/) {
  return false;
}
