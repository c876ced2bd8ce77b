// Pictures as textures. Main thread only.
#pragma once

#include <cstdint>
#include <memory>

#include "gfx/coverage.h"
#include "gfx/tga_reader.h"  // TgaImage

struct GlTexture {
  std::uint32_t id;                    // 0: the file couldn't be used
  std::int32_t width, height;          // the picture's own; a padded bitmap's texture is larger
  std::unique_ptr<Coverage> coverage;  // null: not known
};

struct TextureInfo {
  std::int32_t width, height;
};

// The size of texture that holds a picture's side: the next power of two. Texture coordinates are
// fractions of it, so the side of a TGA or PNG, which isn't padded, must be one already.
std::int32_t gfx_padded_size(std::int32_t side);

enum PictureKind { PICTURE_UNKNOWN, PICTURE_BITMAP, PICTURE_TGA, PICTURE_PNG };

// By the first extension found anywhere in the name. Any thread.
PictureKind gfx_picture_kind(const char* file_name);

// A TGA file as read, before GL has it.
struct TgaPicture {
  bool usable = false;
  TgaImage image{};
  std::unique_ptr<Coverage> coverage;
};
TgaPicture tga_picture_read(const char* file_name);  // any thread

// gfx_texture_load for a picture that was read before.
int gfx_texture_from_tga(TgaPicture picture, GlTexture** texture_out, TextureInfo* info_out);

// Allocates a GlTexture, stores it through `texture_out` and loads a file by the reader that its
// name asks for. `info_out` may be null. Returns 1 for a picture, 0 if the file can't be used.
int gfx_texture_load(const char* file_name, GlTexture** texture_out, TextureInfo* info_out);

// Releases the record. Its texture stays until the process ends.
void gfx_texture_free(GlTexture* texture);
