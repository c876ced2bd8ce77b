#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "gfx/bitmap_reader.h"
#include "gfx/texture.h"
#include "gfx/tga_reader.h"
#include "platform/display.h"
#include "platform/files.h"

namespace {

// Coverage counts pixels of the texture, source rectangles those of the padded size.
std::unique_ptr<Coverage> coverage_of(std::int32_t width, std::int32_t height,
                                      const std::uint8_t* alpha, std::size_t step) {
  if (width != gfx_padded_size(width) || height != gfx_padded_size(height)) return nullptr;
  return std::make_unique<Coverage>(coverage_make(width, height, alpha, step));
}

// A bitmap in its corner of a texture whose sides are powers of two, top row first, with the rest
// and the colour that stands for "nothing" transparent.
void bitmap_pad(const BitmapImage& image, std::int32_t padded_width, std::int32_t padded_height,
                std::uint8_t* out) {
  for (std::int32_t r = 0; r < padded_height; ++r) {
    for (std::int32_t c = 0; c < padded_width; ++c, out += 4) {
      if (r >= image.height || c >= image.width) {
        out[0] = out[2] = out[3] = 0;
        out[1] = 0xFF;
        continue;
      }
      const std::size_t row = image.height - 1 - r;
      const std::uint8_t* in = &image.pixels[(row * image.width + c) * 3];
      const bool nothing = in[0] == 0xFF && in[1] == 0 && in[2] == 0xFF;
      for (int i = 0; i < 3; ++i) out[i] = nothing ? 0 : in[i];
      out[3] = nothing ? 0 : 0xFF;
    }
  }
}

bool bitmap_load(const char* file_name, GlTexture& texture) {
  BitmapImage image;
  if (!bitmap_read(file_name, image)) return false;
  const std::int32_t width = gfx_padded_size(image.width);
  const std::int32_t height = gfx_padded_size(image.height);
  const std::unique_ptr<std::uint8_t[]> staging(
      new (std::nothrow) std::uint8_t[static_cast<std::size_t>(width) * height * 4]);
  if (staging != nullptr) {
    bitmap_pad(image, width, height, staging.get());
    texture.id = display_texture_create(width, height, PIXELS_RGBA, staging.get());
    texture.coverage = coverage_of(width, height, staging.get() + 3, 4);
  } else {  // out of memory: what there is, rather than nothing
    texture.id = display_texture_create(width / 2, height / 2, PIXELS_RGB, image.pixels.data());
  }
  texture.width = image.width;
  texture.height = image.height;
  return true;
}

bool tga_load(TgaPicture picture, GlTexture& texture) {
  if (!picture.usable) return false;
  const TgaImage& image = picture.image;
  texture.id = display_texture_create(image.width, image.height, PIXELS_BGRA, image.pixels.data());
  texture.width = image.width;
  texture.height = image.height;
  texture.coverage = std::move(picture.coverage);
  return true;
}

// The texture is compressed, which may move an alpha: coverage looks at what GL really holds.
bool png_load(const char* file_name, GlTexture& texture) {
  texture.id =
      display_texture_load_png(files_path(file_name).c_str(), &texture.width, &texture.height);
  if (texture.id == 0) return false;
  const std::size_t size = static_cast<std::size_t>(texture.width) * texture.height;
  const std::unique_ptr<std::uint8_t[]> alpha(new (std::nothrow) std::uint8_t[size]);
  if (alpha != nullptr && display_texture_read_alpha(texture.id, alpha.get())) {
    texture.coverage = coverage_of(texture.width, texture.height, alpha.get(), 1);
  }
  return true;
}

struct Extension {
  const char* text;
  PictureKind kind;
};

constexpr Extension extensions[] = {{".bmp", PICTURE_BITMAP}, {".BMP", PICTURE_BITMAP},
                                    {".tga", PICTURE_TGA},    {".TGA", PICTURE_TGA},
                                    {".png", PICTURE_PNG},    {".PNG", PICTURE_PNG}};

bool picture_load(const char* file_name, GlTexture& texture) {
  switch (gfx_picture_kind(file_name)) {
    case PICTURE_BITMAP:
      return bitmap_load(file_name, texture);
    case PICTURE_TGA:
      return tga_load(tga_picture_read(file_name), texture);
    case PICTURE_PNG:
      return png_load(file_name, texture);
    default:
      return false;
  }
}

int loaded(bool usable, const GlTexture& texture, TextureInfo* info_out) {
  if (usable && info_out != nullptr) *info_out = {texture.width, texture.height};
  return usable ? 1 : 0;
}

}  // namespace

std::int32_t gfx_padded_size(std::int32_t side) {
  std::int32_t padded = 1;
  while (padded < side) padded *= 2;
  return padded;
}

PictureKind gfx_picture_kind(const char* file_name) {
  for (const Extension& extension : extensions) {
    if (std::strstr(file_name, extension.text) != nullptr) return extension.kind;
  }
  return PICTURE_UNKNOWN;
}

TgaPicture tga_picture_read(const char* file_name) {
  TgaPicture picture;
  picture.usable = tga_read(file_name, picture.image);
  if (!picture.usable) return {};
  const TgaImage& image = picture.image;
  picture.coverage = coverage_of(image.width, image.height, image.pixels.data() + 3, 4);
  return picture;
}

int gfx_texture_load(const char* file_name, GlTexture** texture_out, TextureInfo* info_out) {
  *texture_out = new GlTexture{};
  return loaded(picture_load(file_name, **texture_out), **texture_out, info_out);
}

int gfx_texture_from_tga(TgaPicture picture, GlTexture** texture_out, TextureInfo* info_out) {
  *texture_out = new GlTexture{};
  return loaded(tga_load(std::move(picture), **texture_out), **texture_out, info_out);
}

void gfx_texture_free(GlTexture* texture) {
  delete texture;
}
