// Drawing with Cairo: colours, paths, the shading of all flat work, words and noise. Everything is
// deterministic: random numbers come from an Rng with a fixed seed.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>

namespace art {

struct Colour {
  double r, g, b;
};
struct Point {
  double x, y;
};

constexpr double kTau = 6.283185307179586;

Colour mix(Colour a, Colour b, double t);
Colour dim(Colour a, double k);
Point mix(Point a, Point b, double t);
double clamp01(double v);
// 0 below a, 1 above b, an S-curve between.
double smooth(double a, double b, double v);

// A surface with its context; premultiplied ARGB, transparent at first.
class Canvas {
 public:
  Canvas(int width, int height);
  ~Canvas();
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  const int width, height;
  cairo_surface_t* surface;
  cairo_t* ctx;

  void clear();
};

// One frame to draw: a canvas of the cell's size.
struct Cell {
  cairo_t* ctx;
  int width, height;
  int frame, frames;

  // 0 at the first frame, 1 at the end of the loop.
  double turn() const { return static_cast<double>(frame) / frames; }
  // 0 at the first frame, 1 at the last one.
  double run() const { return frames > 1 ? static_cast<double>(frame) / (frames - 1) : 0; }
};

// Pictures that several frames or sheets share. Whichever thread needs one first makes it, once.
template <class Key>
class Memo {
 public:
  template <class Make>
  const Canvas& get(Key key, int width, int height, Make make) {
    Slot* slot;
    {
      std::lock_guard<std::mutex> lock(mutex_);
      slot = &slots_[key];
    }
    std::call_once(slot->once, [&] {
      slot->canvas = std::make_unique<Canvas>(width, height);
      make(*slot->canvas);
      cairo_surface_flush(slot->canvas->surface);
    });
    return *slot->canvas;
  }

 private:
  struct Slot {
    std::once_flag once;
    std::unique_ptr<Canvas> canvas;
  };
  std::mutex mutex_;
  std::map<Key, Slot> slots_;
};

void paint_canvas(cairo_t* c, const Canvas& canvas, double x, double y, double alpha = 1);

// A path is a function, so that it can be stroked, filled and clipped in turn.
using Path = std::function<void(cairo_t*)>;
Path ellipse(double x, double y, double rx, double ry, double angle = 0);
Path circle(double x, double y, double r);
// A limb with round ends: radius ra at a and rb at b.
Path capsule(Point a, double ra, Point b, double rb);
Path round_rect(double x, double y, double w, double h, double r);
Path polygon(std::initializer_list<Point> points);
// A leaf from its foot to its tip, bent sideways by bend, with its full width at a third.
Path leaf(Point foot, Point tip, double width, double bend);
Path heart(double x, double y, double size);
Path star(double x, double y, double outer, double inner, int points, double angle = 0);

void set(cairo_t* c, Colour colour, double alpha = 1);
void fill(cairo_t* c, const Path& p, Colour colour, double alpha = 1);
void stroke(cairo_t* c, const Path& p, Colour colour, double width, double alpha = 1);
void fill_linear(cairo_t* c, const Path& p, Point from, Colour a, Point to, Colour b);
// A glow or a shadow: alpha in the middle, nothing at the rim.
void soft_spot(cairo_t* c, double x, double y, double rx, double ry, Colour colour, double alpha);

// The shading of all flat work: a dark outline, a lit body, a shaded rim and a gloss at the upper
// left. (x, y) and r are the sphere for the light.
void puff(cairo_t* c, const Path& p, Colour base, double x, double y, double r,
          double outline = 2.5, double gloss = 0.4);
void eye(cairo_t* c, double x, double y, double r, Point look);

enum class Face { kChunky, kMono };
struct WordStyle {
  Face face;
  double size;         // pixels of the em
  Colour top, bottom;  // fill, from the top of the letters to their foot
  Colour rim;
  double rim_width;  // 0: no rim
};
// Ink is centred on (x, y); a line wider than max_width (if above 0) is reduced.
void words(cairo_t* c, const char* text, const WordStyle& style, double x, double y,
           double max_width = 0);
// The same on an arc of the given radius round (x, y + radius).
void words_arc(cairo_t* c, const char* text, const WordStyle& style, double x, double y,
               double radius);
struct Ink {
  double x, y, width, height;  // from the origin on the baseline, y downward
};
Ink words_path(cairo_t* c, const char* text, Face face, double size);

struct Rng {
  uint32_t state;
  double unit();  // 0 to less than 1
  double range(double a, double b) { return a + (b - a) * unit(); }
};
// Smooth noise of 0 to 1 and its sum over octaves.
double noise(double x, double y, uint32_t seed);
double fbm(double x, double y, uint32_t seed, int octaves);
// Paints every pixel of a canvas, opaque, with the mean of four samples of the colour at (x, y).
void paint_pixels(Canvas& canvas, const std::function<Colour(double, double)>& at);

}  // namespace art
