#include "art/catalogue.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace art {

std::span<const Family* const> families() {
  static constexpr const Family* kFamilies[] = {
      &kAttractFrogFamily, &kBackdropFamily, &kBlankFamily,   &kBugsFamily,  &kButterflyFamily,
      &kEffectsFamily,     &kFontsFamily,    &kFrogFamily,    &kLogoFamily,  &kMarksFamily,
      &kMessagesFamily,    &kPlantsFamily,   &kRidersFamily,  &kRiverFamily, &kSignsFamily,
      &kThumbsFamily,      &kTicketsFamily,  &kTurtlesFamily, &kWaterFamily};
  return kFamilies;
}

const std::vector<CatalogueEntry>& catalogue() {
  static const std::vector<CatalogueEntry> all = [] {
    std::vector<CatalogueEntry> entries;
    for (const Family* family : families())
      for (const CatalogueRow& row : family->rows) entries.push_back({family, &row});
    return entries;
  }();
  return all;
}

CatalogueEntry catalogue_find(std::string_view name) {
  for (const CatalogueEntry& entry : catalogue()) {
    std::string_view file = entry.row->name;
    if (name == file || name == file.substr(0, file.rfind('.'))) return entry;
  }
  return {nullptr, nullptr};
}

std::string catalogue_path(const CatalogueRow& row) {
  return std::string(row.play == Play::kGlyphs ? "images/fonts/" : "images/") + row.name;
}

int catalogue_twin(const CatalogueRow& row, int frame) {
  int other = row.twin == Twin::kSwing       ? (row.frames - frame) % row.frames
              : row.twin == Twin::kThereBack ? row.frames - 1 - frame
                                             : frame;
  return other < frame ? other : frame;
}

void catalogue_draw(const CatalogueRow& row, int frame, Canvas& canvas) {
  canvas.clear();
  if (std::strstr(row.name, ".bmp")) {
    cairo_set_source_rgb(canvas.ctx, 1, 0, 1);
    cairo_paint(canvas.ctx);
  }
  cairo_save(canvas.ctx);
  row.draw({canvas.ctx, row.cell_width, row.cell_height, frame, row.frames});
  cairo_restore(canvas.ctx);
  // A context with an error silently draws nothing more: all later frames would be like this one.
  if (cairo_status(canvas.ctx) != CAIRO_STATUS_SUCCESS) {
    std::fprintf(stderr, "%s frame %d: %s\n", row.name, frame,
                 cairo_status_to_string(cairo_status(canvas.ctx)));
    std::abort();
  }
}

Picture catalogue_render(const CatalogueRow& row) {
  Picture picture(row.width, row.height);
  Canvas canvas(row.cell_width, row.cell_height);
  if (std::strstr(row.name, ".bmp")) {
    // Pixels outside of all cells have the colour that the loader makes transparent.
    for (size_t i = 0; i < picture.rgba.size(); i += 4)
      picture.rgba[i] = picture.rgba[i + 2] = picture.rgba[i + 3] = 255;
  }
  for (int frame = 0; frame < row.frames; frame++) {
    int x = frame % row.columns * row.cell_width, y = frame / row.columns * row.cell_height;
    int twin = catalogue_twin(row, frame);
    if (twin != frame) {
      int from_x = twin % row.columns * row.cell_width;
      int from_y = twin / row.columns * row.cell_height;
      for (int line = 0; line < row.cell_height; line++)
        std::memcpy(picture.at(x, y + line), picture.at(from_x, from_y + line),
                    static_cast<size_t>(row.cell_width) * 4);
      continue;
    }
    catalogue_draw(row, frame, canvas);
    picture_take(picture, canvas, x, y);
  }
  return picture;
}

}  // namespace art
