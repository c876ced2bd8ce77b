#include "gfx/panel.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "gfx/blit.h"
#include "gfx/read_ahead.h"
#include "gfx/texture.h"

namespace {

// The number fonts that gfx_number_draw knows.
constinit const NumberFont* number_fonts = nullptr;
constinit int number_font_count = 0;

enum NumberFlags { NUMBER_TRIMMED = 1, NUMBER_CENTRED = 2, NUMBER_ENDS_AT_X = 4 };

int digits_of(int value) {
  return value > 0 ? static_cast<int>(std::floor(std::log10(value))) + 1 : 1;
}

int number_offset(int flags, int digits, int digit_width) {
  if ((flags & NUMBER_CENTRED) != 0) return -static_cast<int>(digits * 0.5 * digit_width);
  if ((flags & NUMBER_ENDS_AT_X) != 0) return -digit_width * digits;
  return 0;
}

std::int64_t power_of_ten(int exponent) {
  constexpr int MOST = 18;  // more than any value's digits
  std::int64_t power = 1;
  for (int i = 0; i < std::min(exponent, MOST); ++i) power *= 10;
  return power;
}

void panel_begin(Panel& panel, const PanelName& name) {
  panel = Panel{};
  panel.visible = 1;
  panel.flags = 1;
  panel.colour = 0xFFFFFFFF;
  std::memcpy(panel.name, name, sizeof panel.name);
}

void panel_load(Panel& panel, const PanelName& name) {
  panel_begin(panel, name);
  TextureInfo size{};
  gfx_texture_load(name, &panel.texture, &size);
  panel.width = size.width;
  panel.height = size.height;
}

void panel_take(Panel& panel, const PanelName& name, TgaPicture picture) {
  panel_begin(panel, name);
  TextureInfo size{};
  gfx_texture_from_tga(std::move(picture), &panel.texture, &size);
  panel.width = size.width;
  panel.height = size.height;
}

int next_png(const PanelName* names, int count, int from) {
  while (from < count && gfx_picture_kind(names[from]) != PICTURE_PNG) ++from;
  return from;
}

struct Size {
  std::int32_t width, height;
};

Size panel_size(const Panel& panel) {
  if ((panel.flags & PANEL_SOURCE_RECT) != 0) {
    if ((panel.flags & PANEL_SCALED) == 0) return {panel.src_w, panel.src_h};
    return {static_cast<std::int32_t>(static_cast<float>(panel.src_w) * panel.scale_x),
            static_cast<std::int32_t>(static_cast<float>(panel.src_h) * panel.scale_y)};
  }
  if ((panel.flags & PANEL_HALF_SIZE) != 0) return {panel.width / 2, panel.height / 2};
  if ((panel.flags & (PANEL_SCALED | PANEL_ROTATED)) != 0) return {panel.src_w, panel.src_h};
  return {panel.width, panel.height};
}

}  // namespace

// PNG files take the main thread long; TGA files are read ahead meanwhile. So a PNG is loaded
// whenever the next TGA isn't there yet, and those that are left come at the end.
int gfx_panels_load(Panel* table, int count, const PanelName* names) {
  const std::shared_ptr<ReadAhead> reading = read_ahead_start(names, count);
  int png = next_png(names, count, 0);
  for (int i = 0; i < count; ++i) {
    const PictureKind kind = gfx_picture_kind(names[i]);
    if (kind == PICTURE_PNG) continue;
    while (kind == PICTURE_TGA && png < count && !read_ahead_ready(*reading, i)) {
      panel_load(table[png], names[png]);
      png = next_png(names, count, png + 1);
    }
    if (kind == PICTURE_TGA) {
      panel_take(table[i], names[i], read_ahead_take(*reading, i));
    } else {
      panel_load(table[i], names[i]);
    }
  }
  for (; png < count; png = next_png(names, count, png + 1)) panel_load(table[png], names[png]);
  read_ahead_end(*reading);
  return 0;
}

int gfx_panels_free(Panel* table, int count) {
  for (int i = 0; i < count; ++i) {
    gfx_texture_free(table[i].texture);
    table[i] = Panel{};
  }
  return 0;
}

int gfx_numbers_load(NumberFont* table, int count, const PanelName* names) {
  for (int i = 0; i < count; ++i) {
    TextureInfo size{};
    gfx_texture_load(names[i], &table[i].texture, &size);
    table[i].digit_width = size.width / 10;
    table[i].height = size.height;
    std::memcpy(table[i].name, names[i], sizeof table[i].name);
  }
  number_fonts = table;
  number_font_count = count;
  return 0;
}

int gfx_numbers_free(NumberFont* table, int count) {
  for (int i = 0; i < count; ++i) {
    gfx_texture_free(table[i].texture);
    table[i] = NumberFont{};
  }
  if (number_fonts == table) {
    number_fonts = nullptr;
    number_font_count = 0;
  }
  return 0;
}

void gfx_panel_draw(Panel panel) {
  const Size size = panel_size(panel);
  if ((panel.flags & PANEL_SOURCE_RECT) == 0) {
    panel.src_x = panel.src_y = 0;
    panel.src_w = panel.width;
    panel.src_h = panel.height;
  }
  if (panel.visible == 0) return;
  if ((panel.flags & PANEL_ROTATED) != 0) {
    gfx_blit_rotated(panel.x, panel.y, size.width, size.height, panel.texture, panel.src_x,
                     panel.src_y, panel.src_w, panel.src_h, panel.rotation);
  } else {
    gfx_blit_tinted(panel.x, panel.y, size.width, size.height, panel.texture, panel.src_x,
                    panel.src_y, panel.src_w, panel.src_h, panel.colour, panel.flip != 0 ? 1 : 0);
  }
}

void gfx_frame_draw(Panel* panel, int columns, int rows, int /*frames*/, int frame, int x, int y) {
  const std::int32_t cell_w = panel->width / columns;
  const std::int32_t cell_h = panel->height / rows;
  panel->src_w = cell_w;
  panel->src_h = cell_h;
  panel->src_x = cell_w * (frame % columns);
  panel->src_y = cell_h * (frame / columns);
  panel->x = x;
  panel->y = y;
  gfx_panel_draw(*panel);
}

int gfx_number_draw(int value, int font, int x, int y, int digit_width, int digit_height,
                    int digits, int flags) {
  if (font < 0 || font >= number_font_count) return 0;
  const NumberFont& strip = number_fonts[font];
  const bool trimmed = (flags & NUMBER_TRIMMED) != 0;
  if (digit_width == 0) digit_width = strip.digit_width;
  if (digit_height == 0) digit_height = strip.height;
  if (trimmed) digits = digits_of(value);
  const int left = x + number_offset(flags, digits, digit_width);
  for (int i = 0; i < digits; ++i) {
    const std::int64_t rest = value / power_of_ten(digits - 1 - i);
    if (trimmed && rest < 1 && i != digits - 1) continue;
    const int digit = std::abs(static_cast<int>(rest % 10));
    gfx_blit_tinted(left + i * digit_width, y, digit_width, digit_height, strip.texture,
                    digit * strip.digit_width, 0, strip.digit_width, strip.height, 0xFFFFFFFF, 0);
  }
  return 0;
}
