// Raised shapes: a path becomes a body with a rounded rim, lit from the upper left like the clay.
// For signs, letters, emblems and tickets.
#pragma once

#include <functional>
#include <vector>

#include "art/canvas.h"

namespace art {

// Paints a body's own colours, in the same space as its path.
using Paint = std::function<void(cairo_t*)>;
Paint plain(Colour colour);
Paint ramp(Point from, Colour a, Point to, Colour b);
// Colours by a function of the position: x from left to right edge, y from top to foot.
Paint texture(double left, double top, double width, double height,
              const std::function<Colour(double, double)>& colour_at);

struct Relief {
  double bevel;        // width of the rounded rim, pixels
  double lift = 1;     // 1: the rim starts upright; less is flatter, negative is hollow
  double gloss = 0.5;  // of the highlights, 0 to 1
  double metal = 0;    // 0 lacquer, 1 polished metal
};

void raise(cairo_t* c, const Path& shape, const Paint& paint, const Relief& relief);

Path moved(const Path& shape, double x, double y);
Path joined(std::vector<Path> parts);
// Words as a path, their ink centred on (x, y); wider than max_width (if above 0) they are reduced.
Path word_shape(const char* text, double size, double x, double y, double max_width = 0);

// A block of ink, a visible side below the face, and the raised face.
struct Block {
  Colour top, bottom;  // of the face
  Colour side, ink;
  double rim;    // width of the ink around everything
  double depth;  // how much of the side is visible, downwards
  Relief relief;
};
// The game's lettering: gold for prizes, green and yellow for the two players, cream for all other
// words.
extern const Block kGoldLetters, kGreenLetters, kYellowLetters, kCreamLetters;

// top and foot: where the face's colours begin and end.
void block(cairo_t* c, const Path& shape, const Block& style, double top, double foot);
// Words as a block; max_width includes their rim.
void block_words(cairo_t* c, const char* text, double size, const Block& style, double x, double y,
                 double max_width = 0);

// A glint with four long points.
void draw_glint(cairo_t* c, double x, double y, double size);

}  // namespace art
