// How each picture of gfx/picture_list.h is drawn: how large it is, how it moves, and by which
// function. Each family of pictures is a source file that ends with its own rows.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "art/canvas.h"
#include "art/picture.h"
#include "gfx/picture_list.h"

namespace art {

// Draws one frame (or one glyph) on a transparent canvas of the cell's size. Any thread; the same
// frame always gives the same pixels.
using Draw = void (*)(const Cell& cell);

// How the frames of a sheet follow each other in time.
enum class Play {
  kStill,   // one picture
  kOnce,    // played once, or followed by another sheet
  kLoop,    // the first frame follows the last one
  kGlyphs,  // not an animation
};

// Repeated frames are copied, which halves the work of a motion to and fro.
enum class Twin {
  kNone,
  kSwing,     // frame n is frame frames - n
  kThereBack  // frame n is frame frames - 1 - n
};

// Sides on which a cell's pictures may touch the cell's border, because they meet a neighbour there
// or come in from the screen's edge.
enum Touch : unsigned {
  kTouchNone = 0,
  kTouchLeft = 1,
  kTouchRight = 2,
  kTouchTop = 4,
  kTouchBottom = 8,
  kTouchAll = 15,
};

struct CatalogueRow {
  const char* name;   // of its file
  int width, height;  // of the whole picture; powers of two except for bitmaps
  int columns, rows, frames;
  int cell_width, cell_height;
  Play play;
  Twin twin;
  unsigned touch;  // Touch
  Draw draw;
};

// A sheet that its cells, of this size, fill.
constexpr CatalogueRow sheet(SheetIndex index, int cell_width, int cell_height, Play play,
                             Draw draw, Twin twin = Twin::kNone, unsigned touch = kTouchNone) {
  const SheetRow& grid = SHEETS[index];
  const int width = cell_width * grid.columns, height = cell_height * grid.rows;
  return {grid.file,  width,       height, grid.columns, grid.rows, grid.frames,
          cell_width, cell_height, play,   twin,         touch,     draw};
}

constexpr CatalogueRow still(PanelIndex index, int width, int height, Draw draw,
                             unsigned touch = kTouchNone) {
  return {PICTURES[index], width,  height,       1,           1,     1,
          width,           height, Play::kStill, Twin::kNone, touch, draw};
}

struct Family {
  const char* source;  // from the project's root; its pictures are out of date when it changes
  std::span<const CatalogueRow> rows;
};

extern const Family kAttractFrogFamily, kBackdropFamily, kBlankFamily, kBugsFamily,
    kButterflyFamily, kEffectsFamily, kFontsFamily, kFrogFamily, kLogoFamily, kMarksFamily,
    kMessagesFamily, kPlantsFamily, kRidersFamily, kRiverFamily, kSignsFamily, kThumbsFamily,
    kTicketsFamily, kTurtlesFamily, kWaterFamily;

std::span<const Family* const> families();

struct CatalogueEntry {
  const Family* family;
  const CatalogueRow* row;
};

// All pictures, in the order of the families.
const std::vector<CatalogueEntry>& catalogue();
// By its name with or without the extension; its row is null if there is none.
CatalogueEntry catalogue_find(std::string_view name);
// Where its file lies, from an installation's folder on.
std::string catalogue_path(const CatalogueRow& row);

// All frames of a row, in their places. Aborts with a message if a drawing function broke its
// context.
Picture catalogue_render(const CatalogueRow& row);
// One frame on a canvas of the cell's size.
void catalogue_draw(const CatalogueRow& row, int frame, Canvas& canvas);
// The frame that this one repeats, or itself.
int catalogue_twin(const CatalogueRow& row, int frame);

}  // namespace art
