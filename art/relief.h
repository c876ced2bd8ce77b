// Raised shapes: a path becomes a body with a rounded rim, lit as the clay is, from the upper left.
// Signs, letters, emblems and tickets are made of it.
#pragma once

#include <functional>
#include <vector>

#include "art/canvas.h"

namespace art {

// Paints a body's own colours, in the same space as its path.
using Paint = std::function<void(cairo_t*)>;
Paint plain(Colour colour);
Paint ramp(Point from, Colour a, Point to, Colour b);
// Colours by a function of the place, x from left to right edge and y from top to foot.
Paint texture(double left, double top, double width, double height,
              const std::function<Colour(double, double)>& colour_at);

struct Relief {
  double bevel;        // how far the rounded rim reaches in, pixels
  double lift = 1;     // 1: the rim starts upright, less is flatter, below 0 is hollow
  double gloss = 0.5;  // of the highlights, 0 to 1
  double metal = 0;    // 0 lacquer, 1 polished metal
};

void raise(cairo_t* c, const Path& shape, const Paint& paint, const Relief& relief);

Path moved(const Path& shape, double x, double y);
Path joined(std::vector<Path> parts);
// Words as a path, their ink centred on (x, y); wider than max_width (if above 0) they get smaller.
Path word_shape(const char* text, double size, double x, double y, double max_width = 0);

// A block of ink, a side that shows below the face, and the raised face.
struct Block {
  Colour top, bottom;  // of the face
  Colour side, ink;
  double rim;    // width of the ink round all
  double depth;  // how far the side shows, downward
  Relief relief;
};
// The game's lettering: gold for what can be won, green and yellow for the two players, cream for
// all other words.
extern const Block kGoldLetters, kGreenLetters, kYellowLetters, kCreamLetters;

// top and foot: where the face's colours begin and end.
void block(cairo_t* c, const Path& shape, const Block& style, double top, double foot);
// Words as a block; they take max_width with their rim.
void block_words(cairo_t* c, const char* text, double size, const Block& style, double x, double y,
                 double max_width = 0);

// A glint with four long points.
void draw_glint(cairo_t* c, double x, double y, double size);

}  // namespace art
