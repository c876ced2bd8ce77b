#include "art/picture.h"

#include <png.h>

#include <cstdio>
#include <cstring>

namespace art {

Picture::Picture(int w, int h)
    : width(w), height(h), rgba(static_cast<size_t>(w) * static_cast<size_t>(h) * 4) {}

namespace {

// Straight alpha from premultiplied.
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

// Spreads the visible colours outwards over transparent pixels, ring by ring: each pixel takes the
// mean of its neighbours in the ring before. Four rings reach as far as a block of a compressed
// picture. Nobody sees the pixels beyond; they repeat the last colour of their row.
class Bleed {
 public:
  Bleed(Picture& p, int x0, int y0, int w, int h)
      : p_(p), x0_(x0), y0_(y0), w_(w), h_(h), ring_(static_cast<size_t>(w * h)) {}

  void run() {
    std::vector<int> edge;
    for (int i = 0; i < w_ * h_; i++)
      ring_[static_cast<size_t>(i)] = pixel(i)[3] ? kSeen : kUnknown;
    for (int i = 0; i < w_ * h_; i++)
      if (ring_[static_cast<size_t>(i)] == kUnknown && mean_of_known(i, 1)) edge.push_back(i);
    for (uint8_t ring = 1; ring <= 4; ring++) edge = grow(edge, ring);
    sweep(0, 1);
    sweep(w_ * h_ - 1, -1);
  }

 private:
  static constexpr uint8_t kSeen = 0, kUnknown = 255;

  uint8_t* pixel(int i) { return p_.at(x0_ + i % w_, y0_ + i / w_); }

  template <class Visit>
  void neighbours(int i, Visit visit) {
    const int x = i % w_, y = i / w_;
    for (int dy = -1; dy <= 1; dy++)
      for (int dx = -1; dx <= 1; dx++)
        if ((dx || dy) && x + dx >= 0 && x + dx < w_ && y + dy >= 0 && y + dy < h_)
          visit((y + dy) * w_ + x + dx);
  }

  // Gives pixel i the mean colour of its neighbours in rings below `ring`, weighted by alpha.
  bool mean_of_known(int i, uint8_t ring) {
    int sum[3] = {}, weight = 0;
    neighbours(i, [&](int n) {
      if (ring_[static_cast<size_t>(n)] >= ring) return;
      const uint8_t* q = pixel(n);
      const int k = q[3] ? q[3] : 1;
      for (int c = 0; c < 3; c++) sum[c] += q[c] * k;
      weight += k;
    });
    if (weight == 0) return false;
    for (int c = 0; c < 3; c++) pixel(i)[c] = static_cast<uint8_t>((sum[c] + weight / 2) / weight);
    return true;
  }

  // Finishes a ring, and returns the pixels of the next one.
  std::vector<int> grow(const std::vector<int>& edge, uint8_t ring) {
    for (int i : edge) mean_of_known(i, ring);
    for (int i : edge) ring_[static_cast<size_t>(i)] = ring;
    std::vector<int> next;
    for (int i : edge)
      neighbours(i, [&](int n) {
        if (ring_[static_cast<size_t>(n)] != kUnknown) return;
        ring_[static_cast<size_t>(n)] = static_cast<uint8_t>(ring + 1);
        next.push_back(n);
      });
    return next;
  }

  void sweep(int from, int step) {
    uint8_t colour[3] = {};
    bool known = false;
    for (int i = 0, n = from; i < w_ * h_; i++, n += step) {
      uint8_t* q = pixel(n);
      uint8_t& ring = ring_[static_cast<size_t>(n)];
      if (ring != kUnknown) {
        std::memcpy(colour, q, 3);
        known = true;
      } else if (known) {
        std::memcpy(q, colour, 3);
        ring = kUnknown - 1;
      }
    }
  }

  Picture& p_;
  const int x0_, y0_, w_, h_;
  std::vector<uint8_t> ring_;
};

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
  Bleed(p, x0, y0, canvas.width, canvas.height).run();
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
    // The game decodes these during its start: little compression, and no filters to undo.
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
