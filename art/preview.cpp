#include "art/preview.h"

#include <cmath>
#include <utility>

#include "art/animation.h"
#include "art/catalogue.h"

namespace art {

namespace {

constexpr int kWidth = 480, kHeight = 400;
constexpr int kLeft = 100, kTop = 190;  // of the part of the scene that is shown
constexpr int kHop = 15, kHops = 6, kFrames = kHop * kHops, kFrameMs = 35;
// Every other frame at two thirds of its size, so that a page loads fast.
constexpr int kStep = 2;
constexpr double kZoom = 2.0 / 3;
constexpr double kLaneHeight = 94;

// The things of a lane: the positions of its cells, their distance, and how they move. During the
// preview each moves to its neighbour's position, so that the end matches the beginning.
struct LaneRow {
  const char* picture;
  double y, gap;
  int way;  // -1 to the left
  int cycles;
};
constexpr LaneRow kLanes[] = {
    {"anim_1turtle", 202, 158, 1, 2},     {"anim_log3", 282, 342, -1, 6},
    {"anim_caterpillar", 404, 240, 1, 4}, {"anim_ladybug", 476, 126, 1, 5},
    {"anim_beetle", 536, 128, -1, 5},
};

void draw_cell(cairo_t* c, const CatalogueRow& row, int frame, double x, double y) {
  static Memo<std::pair<const CatalogueRow*, int>> cells;
  const Canvas& cell = cells.get({&row, frame}, row.cell_width, row.cell_height,
                                 [&](Canvas& canvas) { catalogue_draw(row, frame, canvas); });
  paint_canvas(c, cell, std::round(x) - kLeft, std::round(y) - kTop);
}

void draw_lane(cairo_t* c, const LaneRow& lane, double turn) {
  const CatalogueRow& row = *catalogue_find(lane.picture).row;
  const int frame = static_cast<int>(turn * lane.cycles * row.frames) % row.frames;
  const int cells = static_cast<int>((kWidth + kLeft) / lane.gap) + 2;
  for (int i = -1; i < cells; i++)
    draw_cell(c, row, frame, (i + lane.way * turn) * lane.gap, lane.y);
}

void draw_scene(cairo_t* c, int frame) {
  const double turn = static_cast<double>(frame) / kFrames;
  draw_cell(c, *catalogue_find("bkdrop_lft").row, 0, 0, 0);
  for (const LaneRow& lane : kLanes) draw_lane(c, lane, turn);
  const CatalogueRow& frog = *catalogue_find("anim_gfrog").row;
  // Its feet leave the ground after the crouch and touch down before the landing is over.
  const double u = smooth(0.15, 0.85, static_cast<double>(frame % kHop) / kHop);
  const int hops = frame / kHop;
  const double foot = kTop + kHeight + 150 - (hops + u) * kLaneHeight;
  draw_cell(c, frog, frame % kHop, kLeft + (kWidth - frog.cell_width) / 2.0, foot - 248);
}

}  // namespace

bool preview_write(const std::string& path) {
  const int width = static_cast<int>(kWidth * kZoom), height = static_cast<int>(kHeight * kZoom);
  AnimationWriter out(path, width, height, kFrames / kStep);
  Canvas scene(kWidth, kHeight), small(width, height);
  for (int frame = 0; frame < kFrames; frame += kStep) {
    scene.clear();
    draw_scene(scene.ctx, frame);
    cairo_save(small.ctx);
    cairo_scale(small.ctx, kZoom, kZoom);
    cairo_set_source_surface(small.ctx, scene.surface, 0, 0);
    cairo_paint(small.ctx);
    cairo_restore(small.ctx);
    Picture picture(width, height);
    picture_take(picture, small, 0, 0);
    out.add(picture, kFrameMs * kStep);
  }
  return out.finish();
}

}  // namespace art
