#include "tests/art/picture_files.h"

#include <png.h>

#include <utility>

#include "gfx/bitmap_reader.h"
#include "gfx/tga_reader.h"
#include "platform/files.h"

using art::Picture;

namespace {

std::optional<Picture> read_tga(const std::string& name) {
  TgaImage image{};
  if (!tga_read(name.c_str(), image)) return {};
  Picture p(image.width, image.height);
  p.rgba = image.pixels;
  for (size_t i = 0; i < p.rgba.size(); i += 4) std::swap(p.rgba[i], p.rgba[i + 2]);
  return p;
}

std::optional<Picture> read_bmp(const std::string& name) {
  BitmapImage image{};
  if (!bitmap_read(name.c_str(), image)) return {};
  Picture p(image.width, image.height);
  const uint8_t* in = image.pixels.data();
  for (int y = p.height - 1; y >= 0; y--) {
    for (int x = 0; x < p.width; x++, in += 3) {
      const bool key = in[0] == 255 && in[1] == 0 && in[2] == 255;
      for (int k = 0; k < 3; k++) p.at(x, y)[k] = key ? 0 : in[k];
      p.at(x, y)[3] = key ? 0 : 255;
    }
  }
  return p;
}

std::optional<Picture> read_png(const std::string& path) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, path.c_str())) return {};
  const bool taken = image.format == PNG_FORMAT_RGBA;
  Picture p(static_cast<int>(image.width), static_cast<int>(image.height));
  if (taken) png_image_finish_read(&image, nullptr, p.rgba.data(), 0, nullptr);
  png_image_free(&image);
  if (!taken || PNG_IMAGE_FAILED(image)) return {};
  return p;
}

}  // namespace

std::optional<Picture> read_picture(const std::string& folder, const std::string& name) {
  files_use_roots("", folder);
  if (name.ends_with(".tga")) return read_tga(name);
  if (name.ends_with(".bmp")) return read_bmp(name);
  return read_png(folder + "/" + name);
}
