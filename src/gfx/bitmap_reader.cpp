#include "gfx/bitmap_reader.h"

#include <bit>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "gfx/bitmap_runs.h"
#include "platform/display.h"
#include "platform/files.h"

namespace {

constexpr std::size_t FILE_HEADER_SIZE = 14;
constexpr std::size_t PIXELS_OFFSET_AT = 10;
constexpr std::uint32_t CORE_HEADER_SIZE = 12;  // 16-bit sizes, colours of three bytes
constexpr std::uint32_t INFO_HEADER_SIZE = 40;  // later, longer headers begin with the same fields
constexpr std::uint32_t LONGEST_HEADER_SIZE = 124;
constexpr std::int32_t LARGEST_SIDE = 32768;

enum Compression : std::uint32_t { UNCOMPRESSED = 0, RUNS_OF_8 = 1, RUNS_OF_4 = 2, BITFIELDS = 3 };

struct Bytes {
  const std::uint8_t* data;
  std::size_t size;

  [[nodiscard]] bool holds(std::size_t at, std::size_t count) const {
    return at <= size && count <= size - at;
  }
  [[nodiscard]] std::uint32_t u16(std::size_t at) const {
    return static_cast<std::uint32_t>(data[at] | data[at + 1] << 8);
  }
  [[nodiscard]] std::uint32_t u32(std::size_t at) const { return u16(at) | u16(at + 2) << 16; }
};

struct Layout {  // what the headers say
  std::int32_t width, height;
  bool top_down;
  std::uint32_t depth;  // bits per pixel
  std::uint32_t compression;
  std::uint32_t masks[3];  // red, green, blue of 16 and 32 bits
  std::size_t colours_at, colour_size, colour_count;
  std::size_t pixels_at;
};

bool core_header(const Bytes& in, std::size_t at, Layout& out) {
  out.width = static_cast<std::int32_t>(in.u16(at + 4));
  out.height = static_cast<std::int32_t>(in.u16(at + 6));
  out.depth = in.u16(at + 10);
  out.colours_at = at + CORE_HEADER_SIZE;
  out.colour_size = 3;
  out.colour_count = out.depth <= 8 ? std::size_t{1} << out.depth : 0;
  return true;
}

bool info_header(const Bytes& in, std::size_t at, std::uint32_t header_size, Layout& out) {
  out.width = static_cast<std::int32_t>(in.u32(at + 4));
  const auto height = static_cast<std::int64_t>(static_cast<std::int32_t>(in.u32(at + 8)));
  out.top_down = height < 0;
  if (std::abs(height) > LARGEST_SIDE) return false;
  out.height = static_cast<std::int32_t>(std::abs(height));
  out.depth = in.u16(at + 14);
  out.compression = in.u32(at + 16);
  out.colours_at = at + header_size;
  out.colour_size = 4;
  out.colour_count = in.u32(at + 32);
  if (out.depth <= 8) {
    const std::size_t most = std::size_t{1} << out.depth;
    if (out.colour_count == 0 || out.colour_count > most) out.colour_count = most;
  }
  if (out.compression == BITFIELDS) {
    const std::size_t masks_at = at + INFO_HEADER_SIZE;
    if (!in.holds(masks_at, 12)) return false;
    for (std::size_t i = 0; i < 3; ++i) out.masks[i] = in.u32(masks_at + i * 4);
    if (header_size == INFO_HEADER_SIZE) out.colours_at += 12;
  }
  return true;
}

void usual_masks(Layout& out) {
  if (out.compression == BITFIELDS) return;
  const bool deep = out.depth == 32;
  out.masks[0] = deep ? 0xFF0000 : 0x7C00;
  out.masks[1] = deep ? 0x00FF00 : 0x03E0;
  out.masks[2] = deep ? 0x0000FF : 0x001F;
}

bool headers_read(const Bytes& in, Layout& out) {
  const bool has_file_header =
      in.holds(0, FILE_HEADER_SIZE) && in.data[0] == 'B' && in.data[1] == 'M';
  const std::size_t at = has_file_header ? FILE_HEADER_SIZE : 0;
  if (!in.holds(at, 4)) return false;
  const std::uint32_t header_size = in.u32(at);
  const bool core = header_size == CORE_HEADER_SIZE;
  if (!core && (header_size < INFO_HEADER_SIZE || header_size > LONGEST_HEADER_SIZE)) return false;
  if (!in.holds(at, header_size)) return false;
  if (!(core ? core_header(in, at, out) : info_header(in, at, header_size, out))) return false;
  if (out.width <= 0 || out.width > LARGEST_SIDE || out.height == 0) return false;
  usual_masks(out);
  out.pixels_at = out.colours_at + out.colour_count * out.colour_size;
  if (has_file_header && in.u32(PIXELS_OFFSET_AT) != 0) out.pixels_at = in.u32(PIXELS_OFFSET_AT);
  return true;
}

// The bits of a mask as a level of 0 to 255: a short level is repeated until it fills eight bits,
// so that its least is 0, its most 255, and the steps between are even.
std::uint8_t masked(std::uint32_t value, std::uint32_t mask) {
  if (mask == 0) return 0;
  const int shift = std::countr_zero(mask);
  const int bits = std::bit_width(mask >> shift);
  const std::uint32_t level = (value & mask) >> shift;
  std::uint32_t out = 0;
  for (int at = 8 - bits; at > -bits; at -= bits) out |= at >= 0 ? level << at : level >> -at;
  return static_cast<std::uint8_t>(out);
}

// An index without a colour is black.
void colour_put(const Bytes& in, const Layout& layout, std::uint32_t index, std::uint8_t* out) {
  const std::size_t at = layout.colours_at + index * layout.colour_size;
  const bool known = index < layout.colour_count && in.holds(at, layout.colour_size);
  for (std::size_t i = 0; i < 3; ++i) out[i] = known ? in.data[at + 2 - i] : 0;
}

// One pixel of a row to three bytes.
void pixel_convert(const Bytes& in, const Layout& layout, std::size_t row_at, std::int32_t column,
                   std::uint8_t* out) {
  const auto c = static_cast<std::size_t>(column);
  if (layout.depth <= 8) {
    const std::size_t bit = c * layout.depth;
    const std::uint32_t byte = in.data[row_at + bit / 8];
    colour_put(in, layout, byte >> (8 - layout.depth - bit % 8) & ((1U << layout.depth) - 1), out);
  } else if (layout.depth == 24) {
    for (std::size_t i = 0; i < 3; ++i) out[i] = in.data[row_at + c * 3 + 2 - i];
  } else {
    const std::uint32_t value =
        layout.depth == 16 ? in.u16(row_at + c * 2) : in.u32(row_at + c * 4);
    for (std::size_t i = 0; i < 3; ++i) out[i] = masked(value, layout.masks[i]);
  }
}

bool has_runs(const Layout& layout) {
  return layout.compression == RUNS_OF_8 || layout.compression == RUNS_OF_4;
}

bool depth_known(const Layout& layout) {
  switch (layout.depth) {
    case 4:
      if (layout.compression == RUNS_OF_4) return !layout.top_down;
      return layout.compression == UNCOMPRESSED;
    case 8:
      if (layout.compression == RUNS_OF_8) return !layout.top_down;
      return layout.compression == UNCOMPRESSED;
    case 1:
    case 24:
      return layout.compression == UNCOMPRESSED;
    case 16:
    case 32:
      return layout.compression == UNCOMPRESSED || layout.compression == BITFIELDS;
    default:
      return false;
  }
}

std::size_t pixel_count(const Layout& layout) {
  return static_cast<std::size_t>(layout.width) * static_cast<std::size_t>(layout.height);
}

std::size_t stored_row_size(const Layout& layout) {
  return (static_cast<std::size_t>(layout.width) * layout.depth + 31) / 32 * 4;
}

// Checked before anything is allocated: a header may promise more than the file holds.
bool file_holds_picture(const Bytes& in, const Layout& layout) {
  if (has_runs(layout)) {
    return in.holds(layout.pixels_at, 0) &&
           pixel_count(layout) <= bitmap_runs_most_pixels(in.size - layout.pixels_at);
  }
  return in.holds(layout.pixels_at,
                  stored_row_size(layout) * static_cast<std::size_t>(layout.height));
}

BitmapResult runs_decode(const Bytes& in, const Layout& layout, BitmapImage& image) {
  std::vector<std::uint8_t> indexes(pixel_count(layout));
  if (!bitmap_runs_unpack(in.data + layout.pixels_at, in.size - layout.pixels_at,
                          layout.compression == RUNS_OF_4, static_cast<std::size_t>(layout.width),
                          static_cast<std::size_t>(layout.height), indexes.data())) {
    return BITMAP_NOT_CONVERTED;
  }
  std::uint8_t* out = image.pixels.data();
  for (const std::uint8_t index : indexes) {
    colour_put(in, layout, index, out);
    out += 3;
  }
  return BITMAP_OK;
}

void rows_decode(const Bytes& in, const Layout& layout, BitmapImage& image) {
  const auto height = static_cast<std::size_t>(layout.height);
  std::uint8_t* out = image.pixels.data();
  for (std::size_t row = 0; row < height; ++row) {
    const std::size_t stored = layout.top_down ? height - 1 - row : row;
    const std::size_t row_at = layout.pixels_at + stored * stored_row_size(layout);
    for (std::int32_t column = 0; column < layout.width; ++column, out += 3) {
      pixel_convert(in, layout, row_at, column, out);
    }
  }
}

bool file_whole(const char* file_name, std::vector<std::uint8_t>& data) {
  constexpr std::size_t PIECE = std::size_t{1} << 20;
  ReadFile* file = read_open(file_name);
  if (file == nullptr) return false;
  std::size_t got = PIECE;
  while (got == PIECE) {
    const std::size_t at = data.size();
    data.resize(at + PIECE);
    got = read_bytes(file, data.data() + at, PIECE);
    data.resize(at + got);
  }
  read_close(file);
  return true;
}

const char* failure_text(BitmapResult result) {
  switch (result) {
    case BITMAP_NO_MEMORY:
      return "Out of memory.";
    case BITMAP_UNKNOWN_FORMAT:
      return "Unknown DIB file format.";
    default:
      return "Image file conversion error.";
  }
}

}  // namespace

BitmapResult bitmap_decode(const std::uint8_t* data, std::size_t size, BitmapImage& image) {
  const Bytes in{data, size};
  Layout layout{};
  if (!headers_read(in, layout)) return BITMAP_UNKNOWN_FORMAT;
  if (!depth_known(layout) || !file_holds_picture(in, layout)) return BITMAP_NOT_CONVERTED;
  image.width = layout.width;
  image.height = layout.height;
  try {
    image.pixels.resize(pixel_count(layout) * 3);
    if (has_runs(layout)) return runs_decode(in, layout, image);
  } catch (const std::bad_alloc&) {
    return BITMAP_NO_MEMORY;
  }
  rows_decode(in, layout, image);
  return BITMAP_OK;
}

bool bitmap_read(const char* file_name, BitmapImage& image) {
  std::vector<std::uint8_t> data;
  if (file_whole(file_name, data)) {
    const BitmapResult result = bitmap_decode(data.data(), data.size(), image);
    if (result == BITMAP_OK) return true;
    display_message_box("Error", failure_text(result), false);
  }
  char text[320];
  std::snprintf(text, sizeof text, "Failed to open DIB file %s.\n", file_name);
  display_message_box("Error", text, false);
  return false;
}
