// Plants and stones of the banks, drawn the same way in the backdrop, at the screen's edges and on
// the water. Light comes from the upper left. Sizes are pixels, angles radians, 0 to the right.
#pragma once

#include <vector>

#include "art/canvas.h"

namespace art {

// A breeze, -1 to 1: a slow swing with a flutter on top, a whole number of times in a loop. Another
// phase moves at another time.
double sway(const Cell& cell, double phase, int beats = 1);

// Positions with irregular gaps between least and most: nature plants no grid.
std::vector<double> places(Rng& rng, double from, double to, double least, double most);

// A thick leaf with a lit and a shaded half, veins and a bright edge.
void draw_leaf(cairo_t* c, Point foot, double angle, double length, double width, double bend,
               Colour colour);
// One brush stroke: pointed at both ends, bent sideways.
void draw_blade(cairo_t* c, Point foot, Point tip, double width, double bend, Colour colour,
                double alpha = 1);
// A frond: leaflets in pairs along a bent rib.
void draw_fern(cairo_t* c, Point foot, double angle, double length, double bend, Colour colour);
// A heap of leaves with half-width r whose foot is at (x, y).
void draw_bush(cairo_t* c, Rng& rng, double x, double y, double r, Colour colour);
// A round stone with its middle at (x, y); moss is how much of its top is green, 0 to 1.
void draw_stone(cairo_t* c, Rng& rng, double x, double y, double r, Colour colour, double moss);
// Five broad, colourful petals: the blossoms of the foliage at the screen's edges.
void draw_flower(cairo_t* c, double x, double y, double r, Colour petal, double angle);
// Small flowers of the meadow, open to the sky.
void draw_daisy(cairo_t* c, double x, double y, double r, Colour petal, double angle);
void draw_dandelion(cairo_t* c, double x, double y, double r);
void draw_clover(cairo_t* c, double x, double y, double r, double angle, Colour colour);
// A water lily's flower, seen from the side and above; open is 1 when fully open, less when it
// closes.
void draw_lotus(cairo_t* c, double x, double y, double r, double open, Colour petal);
// A floating leaf with a turned-up rim; its notch points in the given direction.
void draw_pad(cairo_t* c, double x, double y, double rx, double ry, double notch);
// A bulrush from foot to top, its brown head at the top end.
void draw_bulrush(cairo_t* c, Point foot, Point top, double size);

}  // namespace art
