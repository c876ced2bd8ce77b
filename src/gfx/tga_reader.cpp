#include "gfx/tga_reader.h"

#include <cstdio>
#include <new>

#include "platform/files.h"

namespace {

constexpr std::size_t HEADER_SIZE = 18;
constexpr std::uint8_t TRUE_COLOUR = 2;
constexpr std::uint8_t DEPTH = 32;
constexpr std::size_t PIXEL_SIZE = 4;

struct TgaHeader {  // the fields that count; colour map, origin and descriptor don't
  std::uint8_t id_length;
  std::uint8_t image_type;
  std::int32_t width, height;
  std::uint8_t depth;
};

bool header_read(ReadFile* file, TgaHeader& header) {
  std::uint8_t raw[HEADER_SIZE];
  if (read_bytes(file, raw, sizeof raw) != sizeof raw) return false;
  header = {raw[0], raw[2], raw[12] | raw[13] << 8, raw[14] | raw[15] << 8, raw[16]};
  std::uint8_t id[UINT8_MAX];
  return read_bytes(file, id, header.id_length) == header.id_length;
}

// The file's first row is the picture's lowest.
bool rows_read(ReadFile* file, TgaImage& image) {
  const std::size_t row_size = static_cast<std::size_t>(image.width) * PIXEL_SIZE;
  for (std::int32_t row = image.height - 1; row >= 0; --row) {
    std::uint8_t* place = image.pixels.data() + static_cast<std::size_t>(row) * row_size;
    if (read_bytes(file, place, row_size) != row_size) return false;
  }
  return true;
}

bool picture_read(ReadFile* file, TgaImage& image) {
  TgaHeader header{};
  if (!header_read(file, header)) return false;
  if (header.image_type != TRUE_COLOUR || header.depth != DEPTH) {
    std::printf("FUCK!!\n");
    return false;
  }
  // Compared with the file before anything is allocated: a few bytes can ask for 17 GB.
  const std::size_t size = static_cast<std::size_t>(header.width) * header.height * PIXEL_SIZE;
  if (read_size(file) < HEADER_SIZE + header.id_length + size) return false;
  image.width = header.width;
  image.height = header.height;
  try {
    image.pixels.resize(size);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return rows_read(file, image);
}

}  // namespace

bool tga_read(const char* file_name, TgaImage& image) {
  ReadFile* file = read_open(file_name);
  if (file == nullptr) return false;
  const bool read = picture_read(file, image);
  read_close(file);
  return read;
}
