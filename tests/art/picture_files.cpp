#include "tests/art/picture_files.h"

#include <png.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

using art::Picture;

const std::string& pictures_folder() {
  static const std::string folder = [] {
    if (const char* given = std::getenv("LILYHOP_PICTURES")) return std::string(given);
    std::string command = std::string(ART_RENDER) + " " + ART_PICTURES;
    return std::string(std::system(command.c_str()) == 0 ? ART_PICTURES : "");
  }();
  return folder;
}

std::vector<uint8_t> read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  if (!in) return {};
  std::vector<uint8_t> bytes(static_cast<size_t>(in.tellg()));
  in.seekg(0);
  in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

static uint32_t word(const std::vector<uint8_t>& b, size_t at, int count) {
  uint32_t v = 0;
  for (int i = count - 1; i >= 0; i--) v = v << 8 | b[at + static_cast<size_t>(i)];
  return v;
}

std::optional<Picture> read_tga(const std::string& path) {
  std::vector<uint8_t> b = read_file(path);
  if (b.size() < 18 || b[0] != 0 || b[2] != 2 || b[16] != 32) return {};
  int w = static_cast<int>(word(b, 12, 2)), h = static_cast<int>(word(b, 14, 2));
  if (b.size() != 18 + static_cast<size_t>(w) * static_cast<size_t>(h) * 4) return {};
  Picture p(w, h);
  size_t at = 18;
  for (int y = h - 1; y >= 0; y--) {
    for (int x = 0; x < w; x++, at += 4) {
      uint8_t* q = p.at(x, y);
      q[0] = b[at + 2];
      q[1] = b[at + 1];
      q[2] = b[at];
      q[3] = b[at + 3];
    }
  }
  return p;
}

std::optional<Picture> read_bmp(const std::string& path) {
  std::vector<uint8_t> b = read_file(path);
  if (b.size() < 54 || b[0] != 'B' || b[1] != 'M' || word(b, 2, 4) != b.size()) return {};
  if (word(b, 10, 4) != 54 || word(b, 14, 4) != 40 || word(b, 26, 2) != 1) return {};
  if (word(b, 28, 2) != 24 || word(b, 30, 4) != 0) return {};
  int w = static_cast<int>(word(b, 18, 4)), h = static_cast<int>(word(b, 22, 4));
  size_t row = (static_cast<size_t>(w) * 3 + 3) & ~size_t{3};
  if (w <= 0 || h <= 0 || b.size() != 54 + row * static_cast<size_t>(h)) return {};
  Picture p(w, h);
  for (int y = 0; y < h; y++) {
    for (int x = 0; x < w; x++) {
      const uint8_t* s = &b[54 + row * static_cast<size_t>(h - 1 - y) + static_cast<size_t>(x) * 3];
      uint8_t* q = p.at(x, y);
      bool key = s[2] == 255 && s[1] == 0 && s[0] == 255;
      for (int k = 0; k < 3; k++) q[k] = key ? 0 : s[2 - k];
      q[3] = key ? 0 : 255;
    }
  }
  return p;
}

std::optional<Picture> read_png(const std::string& path) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, path.c_str())) return {};
  if (image.format != PNG_FORMAT_RGBA) {
    png_image_free(&image);
    return {};
  }
  Picture p(static_cast<int>(image.width), static_cast<int>(image.height));
  if (!png_image_finish_read(&image, nullptr, p.rgba.data(), 0, nullptr)) return {};
  return p;
}

std::optional<Picture> read_picture(const art::CatalogueRow& row) {
  std::string path = pictures_folder() + "/" + art::catalogue_path(row);
  if (std::strstr(row.name, ".tga")) return read_tga(path);
  if (std::strstr(row.name, ".bmp")) return read_bmp(path);
  return read_png(path);
}
