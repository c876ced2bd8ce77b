#include "art/picture.h"

#include <png.h>

#include <cstdio>
#include <cstring>

namespace art {

Picture::Picture(int w, int h)
    : width(w), height(h), rgba(static_cast<size_t>(w) * static_cast<size_t>(h) * 4) {}

namespace {

// Straight from premultiplied.
void take_pixel(uint32_t from, uint8_t* to) {
  uint32_t a = from >> 24;
  to[3] = static_cast<uint8_t>(a);
  if (a == 0) return;
  for (int k = 0; k < 3; k++) {
    uint32_t v = (from >> (16 - 8 * k)) & 0xff;
    v = (v * 255 + a / 2) / a;
    to[k] = static_cast<uint8_t>(v > 255 ? 255 : v);
  }
}

// Two sweeps, one each way along the rows: a transparent pixel repeats the last colour seen.
void bleed(Picture& p, int x0, int y0, int w, int h) {
  auto sweep = [&](int from, int step) {
    uint8_t colour[3] = {};
    bool known = false;
    for (int i = 0, n = from; i < w * h; i++, n += step) {
      uint8_t* q = p.at(x0 + n % w, y0 + n / w);
      if (q[3] > 0 || q[0] || q[1] || q[2]) {
        std::memcpy(colour, q, 3);
        known = true;
      } else if (known) {
        std::memcpy(q, colour, 3);
      }
    }
  };
  sweep(0, 1);
  sweep(w * h - 1, -1);
}

bool close_file(FILE* f, bool good) {
  good = good && !std::ferror(f);
  return std::fclose(f) == 0 && good;
}

void put(std::vector<uint8_t>& out, uint32_t value, int bytes) {
  for (int i = 0; i < bytes; i++) out.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

}  // namespace

void picture_take(Picture& p, const Canvas& canvas, int x0, int y0) {
  cairo_surface_flush(canvas.surface);
  const uint8_t* data = cairo_image_surface_get_data(canvas.surface);
  int stride = cairo_image_surface_get_stride(canvas.surface);
  for (int y = 0; y < canvas.height; y++) {
    auto* row = reinterpret_cast<const uint32_t*>(data + static_cast<ptrdiff_t>(y) * stride);
    for (int x = 0; x < canvas.width; x++) take_pixel(row[x], p.at(x0 + x, y0 + y));
  }
  bleed(p, x0, y0, canvas.width, canvas.height);
}

bool picture_write_tga(const Picture& p, const std::string& path) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  uint8_t header[18] = {};
  header[2] = 2;
  header[12] = static_cast<uint8_t>(p.width);
  header[13] = static_cast<uint8_t>(p.width >> 8);
  header[14] = static_cast<uint8_t>(p.height);
  header[15] = static_cast<uint8_t>(p.height >> 8);
  header[16] = 32;
  header[17] = 8;  // eight bits of alpha, origin at the bottom
  bool good = std::fwrite(header, sizeof header, 1, f) == 1;
  std::vector<uint8_t> row(static_cast<size_t>(p.width) * 4);
  for (int y = p.height - 1; y >= 0 && good; y--) {
    for (int x = 0; x < p.width; x++) {
      const uint8_t* q = p.at(x, y);
      uint8_t* o = &row[static_cast<size_t>(x) * 4];
      o[0] = q[2];
      o[1] = q[1];
      o[2] = q[0];
      o[3] = q[3];
    }
    good = std::fwrite(row.data(), row.size(), 1, f) == 1;
  }
  return close_file(f, good);
}

bool picture_write_bmp(const Picture& p, const std::string& path) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  const uint32_t row_bytes = (static_cast<uint32_t>(p.width) * 3 + 3) & ~3u;
  const uint32_t image_bytes = row_bytes * static_cast<uint32_t>(p.height);
  std::vector<uint8_t> head{'B', 'M'};
  put(head, 54 + image_bytes, 4);
  put(head, 0, 4);
  put(head, 54, 4);
  put(head, 40, 4);
  put(head, static_cast<uint32_t>(p.width), 4);
  put(head, static_cast<uint32_t>(p.height), 4);  // positive: bottom row first
  put(head, 1, 2);
  put(head, 24, 2);
  put(head, 0, 4);
  put(head, image_bytes, 4);
  put(head, 2835, 4);  // 72 dots an inch
  put(head, 2835, 4);
  put(head, 0, 4);
  put(head, 0, 4);
  bool good = std::fwrite(head.data(), head.size(), 1, f) == 1;
  std::vector<uint8_t> row(row_bytes);
  for (int y = p.height - 1; y >= 0 && good; y--) {
    for (int x = 0; x < p.width; x++) {
      const uint8_t* q = p.at(x, y);
      for (int k = 0; k < 3; k++) row[static_cast<size_t>(x) * 3 + k] = q[2 - k];
    }
    good = std::fwrite(row.data(), row.size(), 1, f) == 1;
  }
  return close_file(f, good);
}

bool picture_write_png(const Picture& p, const std::string& path) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  bool good = info != nullptr;
  if (good && setjmp(png_jmpbuf(png)) == 0) {
    png_init_io(png, f);
    png_set_IHDR(png, info, static_cast<png_uint_32>(p.width), static_cast<png_uint_32>(p.height),
                 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    // The game decodes these while a customer waits: little effort here, no filter to undo there.
    png_set_compression_level(png, 3);
    png_set_filter(png, 0, PNG_FILTER_NONE);
    png_write_info(png, info);
    for (int y = 0; y < p.height; y++) png_write_row(png, p.at(0, y));
    png_write_end(png, info);
  } else {
    good = false;
  }
  png_destroy_write_struct(&png, &info);
  return close_file(f, good);
}

}  // namespace art
