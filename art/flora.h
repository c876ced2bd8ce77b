// What grows and lies about on the banks, drawn alike in the backdrop, at the screen's edges and on
// the water. Light comes from the upper left. Sizes are pixels, angles radians, 0 to the right.
#pragma once

#include <vector>

#include "art/canvas.h"

namespace art {

// A breeze, -1 to 1: a slow swing with a flutter on top, a whole number of times in a loop. Whoever
// has another phase moves at another time.
double sway(const Cell& cell, double phase, int beats = 1);

// Places from one to another with a gap of least to most between them: nature plants no grid.
std::vector<double> places(Rng& rng, double from, double to, double least, double most);

// A thick leaf with a lit and a shaded half, veins and a bright edge.
void draw_leaf(cairo_t* c, Point foot, double angle, double length, double width, double bend,
               Colour colour);
// One dab of a brush: pointed at both ends, bent sideways.
void draw_blade(cairo_t* c, Point foot, Point tip, double width, double bend, Colour colour,
                double alpha = 1);
// A frond: leaflets in pairs along a bent rib.
void draw_fern(cairo_t* c, Point foot, double angle, double length, double bend, Colour colour);
// A heap of leaves of half a width r that stands on (x, y).
void draw_bush(cairo_t* c, Rng& rng, double x, double y, double r, Colour colour);
// A round-worn stone with its middle at (x, y); moss is how much of its top is green, 0 to 1.
void draw_stone(cairo_t* c, Rng& rng, double x, double y, double r, Colour colour, double moss);
// Five broad petals, full of colour: the blossoms of the foliage at the screen's edges.
void draw_flower(cairo_t* c, double x, double y, double r, Colour petal, double angle);
// Small flowers of the meadow, lying open to the sky.
void draw_daisy(cairo_t* c, double x, double y, double r, Colour petal, double angle);
void draw_dandelion(cairo_t* c, double x, double y, double r);
void draw_clover(cairo_t* c, double x, double y, double r, double angle, Colour colour);
// A water lily's flower, seen from the side and above; open 1 as it stands, less when it closes.
void draw_lotus(cairo_t* c, double x, double y, double r, double open, Colour petal);
// A floating leaf with a turned-up rim; its notch points to the angle given.
void draw_pad(cairo_t* c, double x, double y, double rx, double ry, double notch);
// A bulrush from foot to top, its brown head at the top end.
void draw_bulrush(cairo_t* c, Point foot, Point top, double size);

}  // namespace art
