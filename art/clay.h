// A small renderer for rounded creatures: distance fields of balls and limbs that blend into each
// other, lit from the upper left, seen without perspective. World: x right, y up, z away from the
// viewer, the ground at y 0.
#pragma once

#include <functional>
#include <vector>

#include "art/canvas.h"

namespace art {

struct Vec {
  float x, y, z;
};
inline Vec operator+(Vec a, Vec b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec operator-(Vec a, Vec b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec operator*(Vec a, float k) {
  return {a.x * k, a.y * k, a.z * k};
}
inline Vec operator*(Vec a, Vec b) {
  return {a.x * b.x, a.y * b.y, a.z * b.z};
}
inline float dot(Vec a, Vec b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
float length(Vec a);
Vec unit(Vec a);
Vec cross(Vec a, Vec b);
Vec lerp(Vec a, Vec b, float t);
float step_s(float a, float b, float v);
// Shading uses linear light; colours of the palette are screen colours.
Vec linear(Colour c);

// The position and rotation of a part's own axes in the world.
struct ClayFrame {
  Vec x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1}, at{0, 0, 0};
  Vec out(Vec p) const { return at + x * p.x + y * p.y + z * p.z; }
  Vec in(Vec p) const {
    Vec d = p - at;
    return {dot(d, x), dot(d, y), dot(d, z)};
  }
};
// Turned about the vertical axis, in degrees; 180 faces the viewer.
ClayFrame frame_yaw(float degrees);
// inner, which is relative to outer, in the world's axes.
ClayFrame frame_within(const ClayFrame& outer, const ClayFrame& inner);

struct ClayShape {
  bool ball;  // otherwise a limb from a (radius ra) to b (radius rb)
  Vec a, b;   // ball: centre, radii
  float ra, rb;
  Vec colour;
  Vec middle{0, 0, 0};  // of a bounding sphere; set by clay_draw
  float reach = 0;
};

// Shapes that blend into each other over the width of blend. Parts don't blend with other parts.
struct ClayPart {
  float blend = 0.1f;
  float gloss = 0.35f;
  bool inked = true;  // a dark line where the surface turns away
  ClayFrame frame;
  std::vector<ClayShape> shapes;
  // Paints the surface: from a point in the part's own axes and the shapes' colour there.
  std::function<Vec(Vec, Vec)> paint;
  // Its own distance function, from a point in the part's own axes; the shapes are then only its
  // bounds.
  std::function<float(Vec)> field;
  float soft = 0;   // how far light passes through: 1 like jelly
  float metal = 0;  // how much of the sky it reflects: 0.3 lacquer, 1 polished metal
  float glow = 0;   // how much of its colour is its own light
  // Cut out of the blended shapes: the distance from a point in the part's own axes.
  std::function<float(Vec)> cut;

  void ball(Vec centre, Vec radii, Vec colour);
  void limb(Vec a, float ra, Vec b, float rb, Vec colour);

  Vec centre{0, 0, 0};  // of a sphere round all shapes, in the world; set by clay_draw
  float radius = 0;
};

using ClayScene = std::vector<ClayPart>;

struct ClayCamera {
  float pitch_deg;  // 0 level, 90 straight down
  float px_per_unit;
  Point origin;  // position of the world's origin in the picture
};

// Draws the scene over the picture, with an outline of the given width in pixels.
void clay_draw(Canvas& canvas, ClayScene& scene, const ClayCamera& camera, Colour outline,
               float outline_px);

// The same with several times as many pixels each way, averaged: for small things.
void clay_draw_fine(Canvas& canvas, ClayScene& scene, const ClayCamera& camera, Colour outline,
                    float outline_px, int times);

// A ball that looks in a direction: white, pupil, glint; lid 1 closes it with the skin's colour.
ClayPart clay_eye(const ClayFrame& frame, Vec centre, float radius, Vec look, float pupil, Vec skin,
                  float lid, Vec lid_from);
// The same for small faces: open, inked, slightly luminous, its glint always in the light.
ClayPart clay_big_eye(const ClayFrame& frame, Vec centre, float radius, Vec look);

}  // namespace art
