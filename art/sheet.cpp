#include "art/sheet.h"

#include <algorithm>
#include <cmath>

#include "art/animation.h"

namespace art {

namespace {

constexpr int kGap = 2;

Colour ground_colour(Ground ground) {
  switch (ground) {
    case Ground::kWater:
      return {0.16, 0.44, 0.60};
    case Ground::kGrey:
      return {0.36, 0.36, 0.36};
    case Ground::kGrass:
      break;
  }
  return {0.36, 0.60, 0.34};
}

// One frame at a position, on its ground. Enlarged pixels stay sharp.
void lay(cairo_t* c, const CatalogueRow& row, int frame, Ground ground, double x, double y,
         double zoom) {
  Canvas cell(row.cell_width, row.cell_height);
  catalogue_draw(row, frame, cell);
  const Colour g = ground_colour(ground);
  cairo_save(c);
  cairo_translate(c, x, y);
  cairo_scale(c, zoom, zoom);
  cairo_rectangle(c, 0, 0, row.cell_width, row.cell_height);
  cairo_set_source_rgb(c, g.r, g.g, g.b);
  cairo_fill(c);
  cairo_set_source_surface(c, cell.surface, 0, 0);
  cairo_pattern_set_filter(cairo_get_source(c),
                           zoom > 1 ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
  cairo_paint(c);
  cairo_restore(c);
}

void fill_grey(const Canvas& canvas) {
  cairo_set_source_rgb(canvas.ctx, 0.25, 0.25, 0.25);
  cairo_paint(canvas.ctx);
}

bool write_png(const Canvas& canvas, const std::string& path) {
  return cairo_surface_write_to_png(canvas.surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
}

}  // namespace

bool contact_sheet_write(const CatalogueRow& row, Ground ground, const std::string& path) {
  // A font is best shown as it is, glyph by glyph; for a sheet a few frames are enough.
  const bool glyphs = row.play == Play::kGlyphs;
  const int shown = glyphs ? row.frames : std::min(row.frames, 20);
  const int across =
      glyphs ? std::min(row.columns, shown) : std::min(shown, row.cell_width > 256 ? 4 : 5);
  double zoom = std::min(4.0, 1500.0 / across / row.cell_width);
  if (zoom > 1) zoom = std::floor(zoom);
  const int w = static_cast<int>(row.cell_width * zoom) + kGap,
            h = static_cast<int>(row.cell_height * zoom) + kGap;
  const int down = (shown + across - 1) / across;
  Canvas all(across * w + kGap, down * h + kGap);
  fill_grey(all);
  for (int i = 0; i < shown; i++) {
    int frame = shown < 2 ? i : i * (row.frames - 1) / (shown - 1);
    const int column = i % across, line = i / across;
    lay(all.ctx, row, frame, ground, kGap + column * w, kGap + line * h, zoom);
  }
  return write_png(all, path);
}

bool family_sheet_write(const Family& family, Ground ground, const std::string& path) {
  constexpr int kBox = 300, kLabel = 20, kAcross = 5;
  const int count = static_cast<int>(family.rows.size());
  Canvas all(kAcross * kBox, (count + kAcross - 1) / kAcross * (kBox + kLabel));
  fill_grey(all);
  cairo_set_font_size(all.ctx, 13);
  for (int i = 0; i < count; i++) {
    const CatalogueRow& row = family.rows[static_cast<size_t>(i)];
    const int column = i % kAcross, line = i / kAcross;
    const double x = column * kBox, y = line * (kBox + kLabel);
    const double room = kBox - kGap;
    const double zoom = std::min({2.0, room / row.cell_width, room / row.cell_height});
    lay(all.ctx, row, row.frames / 3, ground, x, y, zoom > 1 ? std::floor(zoom) : zoom);
    cairo_set_source_rgb(all.ctx, 1, 1, 1);
    cairo_move_to(all.ctx, x + 2, y + kBox + 13);
    cairo_show_text(all.ctx, row.name);
  }
  return write_png(all, path);
}

bool motion_write(const CatalogueRow& row, Ground ground, int frame_ms, const std::string& path) {
  const double zoom = std::clamp(std::floor(256.0 / row.cell_width), 1.0, 4.0);
  Canvas canvas(static_cast<int>(row.cell_width * zoom), static_cast<int>(row.cell_height * zoom));
  AnimationWriter out(path, canvas.width, canvas.height, row.frames);
  for (int frame = 0; frame < row.frames; frame++) {
    lay(canvas.ctx, row, frame, ground, 0, 0, zoom);
    Picture picture(canvas.width, canvas.height);
    picture_take(picture, canvas, 0, 0);
    const bool stands = row.play == Play::kOnce && frame == row.frames - 1;
    out.add(picture, stands ? 1000 : frame_ms);
  }
  return out.finish();
}

}  // namespace art
