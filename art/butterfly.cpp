// The butterfly that crosses the field, flying to the right. Its wings are drawn flat and then
// turned into curved sheets of clay.
#include <algorithm>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <vector>

#include "art/catalogue.h"
#include "art/clay.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr float kTurn = static_cast<float>(kTau);
constexpr float kDeg = kTurn / 360;
constexpr int kBeat = 16;  // frames of one wing beat; a sheet holds two
constexpr float kPitch = 52, kYaw = -16, kNoseUp = 16, kScale = 36.5f;

// A wing as drawn: along the body (ahead is up) and away from it (to the right), in units, with the
// body at the left.
constexpr int kSide = 256;
constexpr double kPerUnit = 74;
constexpr double kRootX = 24, kRootY = 140;

class Wing {
 public:
  Wing(const Path& outline, const std::function<void(cairo_t*)>& pattern) {
    Canvas shape(kSide, kSide), art(kSide, kSide);
    fill(shape.ctx, outline, kWhite);
    cairo_surface_flush(shape.surface);
    find_distances(shape);
    pattern(art.ctx);
    cairo_surface_flush(art.surface);
    for (int y = 0; y < kSide; y++) {
      const auto* row = reinterpret_cast<const uint32_t*>(
          cairo_image_surface_get_data(art.surface) +
          static_cast<ptrdiff_t>(y) * cairo_image_surface_get_stride(art.surface));
      for (int x = 0; x < kSide; x++)
        colours_.push_back(linear(
            {(row[x] >> 16 & 255) / 255.0, (row[x] >> 8 & 255) / 255.0, (row[x] & 255) / 255.0}));
    }
  }
  // Units from the outline, negative inside.
  float distance(float ahead, float out) const { return sample(distances_, ahead, out); }
  Vec colour(float ahead, float out) const { return sample(colours_, ahead, out); }

 private:
  void find_distances(const Canvas& shape) {
    const unsigned char* bytes = cairo_image_surface_get_data(shape.surface);
    const ptrdiff_t line = cairo_image_surface_get_stride(shape.surface);
    auto inside = [&](int x, int y) { return bytes[y * line + x * 4 + 3] > 127; };
    std::vector<Point> rim;
    for (int y = 1; y < kSide - 1; y++)
      for (int x = 1; x < kSide - 1; x++)
        if (inside(x, y) &&
            !(inside(x - 1, y) && inside(x + 1, y) && inside(x, y - 1) && inside(x, y + 1)))
          rim.push_back({static_cast<double>(x), static_cast<double>(y)});
    for (int y = 0; y < kSide; y++) {
      for (int x = 0; x < kSide; x++) {
        double best = 1e9;
        for (const Point& p : rim)
          best = std::min(best, (p.x - x) * (p.x - x) + (p.y - y) * (p.y - y));
        best = std::sqrt(best) / kPerUnit;
        distances_.push_back(static_cast<float>(inside(x, y) ? -best : best));
      }
    }
  }

  template <class T>
  static T sample(const std::vector<T>& grid, float ahead, float out) {
    constexpr auto most = static_cast<float>(kSide - 2);
    float x = std::clamp(static_cast<float>(kRootX + kPerUnit * out), 0.0f, most);
    float y = std::clamp(static_cast<float>(kRootY - kPerUnit * ahead), 0.0f, most);
    auto column = static_cast<size_t>(x), row = static_cast<size_t>(y);
    float fx = x - static_cast<float>(column), fy = y - static_cast<float>(row);
    const T* a = &grid[row * kSide + column];
    const T *b = a + 1, *c = a + kSide, *d = c + 1;
    return (*a * (1 - fx) + *b * fx) * (1 - fy) + (*c * (1 - fx) + *d * fx) * fy;
  }

  std::vector<float> distances_;
  std::vector<Vec> colours_;
};

constexpr Colour kEdge{0.22, 0.06, 0.20};

// Shared by both wings: sunny at the root, a dark hem with light beads, veins that fan out.
void draw_pattern(cairo_t* c, const Path& outline, Colour root, Colour tip, Point far_end,
                  std::initializer_list<Point> veins, std::initializer_list<Point> beads) {
  fill_linear(c, round_rect(0, 0, kSide, kSide, 0), {kRootX, kRootY}, root, far_end, tip);
  for (const Point& v : veins) {
    set(c, mix(tip, kEdge, 0.75));
    cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(c, 6);
    cairo_move_to(c, kRootX, kRootY);
    cairo_line_to(c, v.x, v.y);
    cairo_stroke(c);
  }
  cairo_set_line_join(c, CAIRO_LINE_JOIN_ROUND);
  stroke(c, outline, kEdge, 46);
  for (const Point& b : beads) fill(c, circle(b.x, b.y, 6.5), kCream);
}

void upper_outline(cairo_t* c) {
  cairo_move_to(c, 14, 150);
  cairo_curve_to(c, 20, 100, 70, 20, 150, 8);
  cairo_curve_to(c, 196, 2, 244, 18, 244, 46);
  cairo_curve_to(c, 244, 66, 226, 74, 226, 92);
  cairo_curve_to(c, 226, 112, 216, 122, 204, 136);
  cairo_curve_to(c, 176, 168, 60, 172, 14, 150);
  cairo_close_path(c);
}
void lower_outline(cairo_t* c) {
  cairo_move_to(c, 14, 120);
  cairo_curve_to(c, 70, 96, 150, 108, 186, 132);
  cairo_curve_to(c, 206, 148, 196, 166, 186, 176);
  cairo_curve_to(c, 190, 196, 172, 208, 158, 210);
  cairo_curve_to(c, 150, 236, 118, 252, 100, 240);
  cairo_curve_to(c, 60, 222, 24, 176, 14, 120);
  cairo_close_path(c);
}

const Wing& upper_wing() {
  static const Wing wing(upper_outline, [](cairo_t* c) {
    draw_pattern(c, upper_outline, {1.0, 0.88, 0.22}, {1.0, 0.38, 0.06}, {216, 50},
                 {{150, 20}, {214, 52}, {206, 110}}, {{150, 20}, {190, 17}, {228, 36}, {213, 92}});
    fill(c, ellipse(152, 66, 27, 21, -0.6), kEdge);
    fill(c, ellipse(152, 66, 20, 14.5, -0.6), {0.30, 0.80, 1.0});
    fill(c, ellipse(148, 62, 8, 6, -0.6), kWhite);
  });
  return wing;
}
const Wing& lower_wing() {
  static const Wing wing(lower_outline, [](cairo_t* c) {
    draw_pattern(c, lower_outline, {1.0, 0.74, 0.16}, {0.98, 0.24, 0.22}, {150, 216},
                 {{180, 140}, {160, 196}, {100, 228}},
                 {{183, 148}, {174, 185}, {146, 211}, {110, 233}});
    fill(c, ellipse(112, 172, 21, 18, 0.7), kEdge);
    fill(c, ellipse(112, 172, 14, 11.5, 0.7), {1.0, 0.86, 0.30});
  });
  return wing;
}

// How far the wings are raised, in degrees; the downstroke is faster.
float raised_deg(float beat) {
  float a = kTurn * beat;
  return 26 + 46 * std::cos(a + 0.35f * std::sin(a));
}

void add_wing(ClayScene& scene, const ClayFrame& body, const Wing& wing, float side, float beat) {
  const float up = raised_deg(beat) * kDeg;
  // The tips follow later: bent up on the way down.
  const float bend = 0.035f - 0.0022f * (raised_deg(beat) - raised_deg(beat - 0.10f));
  ClayFrame own;
  own.x = {1, 0, 0};
  own.y = {0, std::cos(up), -side * std::sin(up)};
  own.z = {0, std::sin(up), side * std::cos(up)};
  own.at = {0, 0.16f, side * 0.10f};
  ClayPart& g = scene.emplace_back();
  g.frame = frame_within(body, own);
  g.gloss = 0.10f;  // a flat wing flashes all at once
  g.soft = 0.7f;
  g.glow = 0.18f;
  g.ball({0.1f, 0, 1.4f}, {2.4f, 2.4f, 2.4f}, {1, 1, 1});
  g.field = [&wing, bend](Vec p) {
    constexpr float kThick = 0.065f;
    float edge = wing.distance(p.x, p.z) + kThick, off = p.y - bend * p.z * p.z;
    // Beyond the drawing the distance is at least this.
    float beyond = std::max({0.0f, p.z - 3.0f, -0.3f - p.z, std::fabs(p.x) - 1.9f});
    return 0.8f * (std::hypot(std::max(edge, 0.0f) + beyond, off) - kThick);
  };
  g.paint = [&wing](Vec p, Vec) { return wing.colour(p.x, p.z); };
}

void add_body(ClayScene& scene, const ClayFrame& body, float beat) {
  const Vec coat = linear({0.56, 0.32, 0.78}), dark = linear({0.24, 0.10, 0.34}),
            gold = linear({1.0, 0.82, 0.25});
  auto part = [&](float blend) -> ClayPart& {
    ClayPart& g = scene.emplace_back();
    g.blend = blend;
    g.gloss = 0.5f;
    g.soft = 0.5f;
    g.frame = body;
    return g;
  };
  const float wag = 0.16f * std::sin(kTurn * (beat - 0.2f));
  ClayPart& tail = part(0.2f);
  tail.limb({-0.2f, 0, 0}, 0.32f, {-1.0f, -0.10f + 0.5f * wag, 0}, 0.30f, coat);
  tail.limb({-1.0f, -0.10f + 0.5f * wag, 0}, 0.30f, {-1.75f, -0.16f + wag, 0}, 0.15f, coat);
  tail.paint = [=](Vec p, Vec c) {
    float ring = std::fmod(p.x + 10.0f, 0.40f);
    return p.x < -0.45f ? lerp(gold, c, step_s(0.15f, 0.19f, ring)) : c;
  };
  ClayPart& chest = part(0.2f);
  chest.ball({0.12f, 0.04f, 0}, {0.58f, 0.44f, 0.42f}, coat);
  const float nod = 0.05f * std::sin(kTurn * (beat - 0.3f));
  const Vec c{0.94f, 0.14f + nod, 0};
  ClayPart& head = part(0.12f);
  head.ball(c, {0.50f, 0.48f, 0.52f}, linear({0.70, 0.44, 0.90}));
  head.paint = [=](Vec p, Vec colour) {
    Vec d = unit(p - c);
    float away = std::fabs(d.z + 0.30f);
    return d.x > 0.2f && std::fabs(d.y + 0.34f - 0.5f * away * away) < 0.09f && away < 0.42f
               ? dark
               : colour;
  };
  for (float side : {1.0f, -1.0f}) {
    scene.push_back(
        clay_big_eye(body, {c.x + 0.20f, c.y + 0.30f, side * 0.30f}, 0.31f, {0.6f, 0.5f, -0.62f}));
    // Feelers curl at the end, and swing after the head.
    ClayPart& feeler = part(0.03f);
    Vec at{c.x + 0.06f, c.y + 0.42f, side * 0.16f + 0.14f};
    for (int i = 0; i < 6; i++) {
      float n = static_cast<float>(i);
      float a = (80 - 17 * n + 5 * n * std::sin(kTurn * (beat - 0.08f * n))) * kDeg;
      Vec next = at + Vec{std::cos(a), std::sin(a), 0.42f + side * 0.34f} * 0.20f;
      feeler.limb(at, 0.060f, next, 0.056f, dark);
      at = next;
    }
    feeler.ball(at, {0.12f, 0.12f, 0.12f}, gold);
    for (int i = 0; i < 2; i++) {
      ClayPart& leg = part(0.03f);
      float x = 0.36f - 0.34f * static_cast<float>(i);
      leg.limb({x, -0.30f, side * 0.24f}, 0.07f, {x - 0.26f + wag, -0.66f, side * 0.30f}, 0.06f,
               dark);
    }
  }
}

const Canvas& butterfly_tile(int beat_frame) {
  static Memo<int> tiles;
  return tiles.get(beat_frame, 256, 256, [=](Canvas& canvas) {
    const float beat = static_cast<float>(beat_frame) / kBeat;
    // The downstroke lifts the body, a little late, and lowers its nose.
    const float lift = std::sin(kTurn * (beat - 0.06f)), nose = (kNoseUp - 5 * lift) * kDeg;
    ClayFrame tilt;
    tilt.x = {std::cos(nose), std::sin(nose), 0};
    tilt.y = {-std::sin(nose), std::cos(nose), 0};
    tilt.at = {0, 0.26f * lift, 0};
    const ClayFrame body = frame_within(frame_yaw(-kYaw), tilt);
    ClayScene scene;
    add_body(scene, body, beat);
    for (float side : {1.0f, -1.0f}) {
      add_wing(scene, body, lower_wing(), side, beat - 0.05f);
      add_wing(scene, body, upper_wing(), side, beat);
    }
    clay_draw_fine(canvas, scene, {kPitch, kScale, {124, 130}}, {0.10, 0.02, 0.10}, 1.8f, 2);
  });
}

void draw_butterfly(const Cell& cell) {
  paint_canvas(cell.ctx, butterfly_tile(cell.frame % kBeat), 0, 0);
}

constexpr CatalogueRow kRows[] = {
    sheet(SHEET_BUTTERFLY, 256, 256, Play::kLoop, draw_butterfly),
};

}  // namespace

const Family kButterflyFamily{"art/butterfly.cpp", kRows};

}  // namespace art
