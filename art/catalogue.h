// The table of all pictures: what each is called, how large it is, how its frames lie in it and who
// draws them.
#pragma once

#include <span>
#include <string_view>

#include "art/canvas.h"
#include "art/picture.h"

namespace art {

// Draws one frame (or one glyph) on a transparent canvas of the cell's size. Any thread; the same
// frame gives the same pixels.
using Draw = void (*)(const Cell& cell);

// How a sheet's time runs.
enum class Play {
  kStill,   // one picture
  kOnce,    // played through, or followed by another sheet
  kLoop,    // the first frame follows the last one
  kGlyphs,  // not in time at all
};

// Frames that repeat an earlier one are copied, which halves the work of a swing to and fro.
enum class Twin {
  kNone,
  kSwing,     // frame n is frame frames - n
  kThereBack  // frame n is frame frames - 1 - n
};

// Sides on which a cell's pictures may touch the cell's border: those that meet a neighbour there,
// or that come in from the screen's edge.
enum Touch : unsigned {
  kTouchNone = 0,
  kTouchLeft = 1,
  kTouchRight = 2,
  kTouchTop = 4,
  kTouchBottom = 8,
  kTouchAll = 15,
};

struct CatalogueRow {
  const char* name;   // with its folder below images/, e.g. "fonts/font8x12.bmp"
  int width, height;  // of the whole picture; powers of two but for bitmaps
  int columns, rows, frames;
  int cell_width, cell_height;
  Play play;
  Twin twin;
  unsigned touch;  // Touch
  Draw draw;
};

std::span<const CatalogueRow> catalogue();
// By its name with or without folder and extension; null if there is none.
const CatalogueRow* catalogue_find(std::string_view name);

// All frames of a row, in their places.
Picture catalogue_render(const CatalogueRow& row);
// The frame that this one repeats, or itself.
int catalogue_twin(const CatalogueRow& row, int frame);

}  // namespace art
