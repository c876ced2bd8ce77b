#include "art/sheet.h"

#include <algorithm>
#include <cmath>

namespace art {

bool sheet_write(const CatalogueRow& row, const std::string& path) {
  // A font reads best as it is, glyph beside glyph; of a sheet some frames tell enough.
  const bool glyphs = row.play == Play::kGlyphs;
  const int shown = std::min(row.frames, glyphs ? 95 : 20);
  const int across =
      glyphs ? std::min(row.columns, shown) : std::min(shown, row.cell_width > 256 ? 4 : 5);
  const double largest = 1500.0 / across;
  double zoom = std::min(4.0, largest / row.cell_width);
  if (zoom > 1) zoom = std::floor(zoom);
  const int w = static_cast<int>(row.cell_width * zoom),
            h = static_cast<int>(row.cell_height * zoom);
  const int down = (shown + across - 1) / across;
  Canvas all(across * (w + 2) + 2, down * (h + 2) + 2);
  cairo_set_source_rgb(all.ctx, 0.30, 0.30, 0.30);
  cairo_paint(all.ctx);
  Canvas canvas(row.cell_width, row.cell_height);
  for (int i = 0; i < shown; i++) {
    int frame = shown == row.frames || shown < 2 ? i : i * (row.frames - 1) / (shown - 1);
    canvas.clear();
    cairo_save(canvas.ctx);
    row.draw({canvas.ctx, row.cell_width, row.cell_height, frame, row.frames});
    cairo_restore(canvas.ctx);
    cairo_save(all.ctx);
    const int column = i % across, line = i / across;
    cairo_translate(all.ctx, 2 + column * (w + 2), 2 + line * (h + 2));
    cairo_scale(all.ctx, zoom, zoom);
    cairo_rectangle(all.ctx, 0, 0, row.cell_width, row.cell_height);
    cairo_set_source_rgb(all.ctx, 0.36, 0.60, 0.34);
    cairo_fill(all.ctx);
    cairo_set_source_surface(all.ctx, canvas.surface, 0, 0);
    cairo_pattern_set_filter(cairo_get_source(all.ctx),
                             zoom > 1 ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
    cairo_paint(all.ctx);
    cairo_restore(all.ctx);
  }
  return cairo_surface_write_to_png(all.surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
}

}  // namespace art
