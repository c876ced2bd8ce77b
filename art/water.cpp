// Water thrown up: the crown round a frog that fell in.
#include <cmath>
#include <vector>

#include "art/catalogue.h"
#include "art/clay.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr float kPi = static_cast<float>(kTau / 2);
constexpr double kPitch_deg = 23;
constexpr double kPeak = 0.36;  // as a fraction of the run: when the crown is highest
constexpr float kWet = 0.26f, kLight = 0.30f;  // lacquered, and lit from within
constexpr Colour kDeep{0.02, 0.38, 0.86}, kBody{0.10, 0.66, 1.0}, kThin{0.66, 0.93, 1.0};
constexpr Colour kOutline{0.02, 0.16, 0.42};

// A throw against gravity: 0 at the start and at the end, 1 at its peak.
float thrown(float t, float peak, float end) {
  float u = t < peak ? (t - peak) / peak : (t - peak) / (end - peak);
  return std::fmax(0.0f, 1 - u * u);
}

Vec round_at(float turn, float r, float high) {
  return {r * std::sin(turn), high, -r * std::cos(turn)};
}

// Thick at the foot and blue, thin and bright where it tears.
Vec water_colour(float high) {
  Vec c = lerp(linear(kDeep), linear(kBody), step_s(0.0f, 0.7f, high));
  return lerp(c, linear(kThin), step_s(0.7f, 2.4f, high));
}

struct Splash {
  int points;    // of the crown
  float tall;    // of its highest point, units
  float radius;  // of its foot at the start, units
  int drops;
  uint32_t seed;
};

void add_crown(ClayScene& scene, const Splash& s, float t) {
  const float rise = thrown(t, static_cast<float>(kPeak), 0.80f);
  const float foot = s.radius * (0.72f + 0.62f * std::sqrt(t));
  const float thick = 1 - 0.45f * t;
  const float open = 0.20f + 0.50f * t;  // it opens as it grows
  ClayPart wall;
  wall.blend = 0.24f;
  wall.gloss = 1.5f;
  wall.metal = kWet;
  wall.glow = kLight;
  Rng rng{s.seed};
  struct Point3 {
    float turn, tall;
  };
  std::vector<Point3> points;
  for (int i = 0; i < s.points; i++) {
    float turn = (static_cast<float>(i) + 0.3f * static_cast<float>(rng.unit())) * 2 * kPi /
                 static_cast<float>(s.points);
    float tall = s.tall * static_cast<float>((i % 2 ? 0.66 : 0.92) + 0.16 * rng.unit());
    points.push_back({turn, tall * rise});
  }
  auto on_wall = [&](float turn, float high) {
    // The wall curls outward towards its lip.
    float curl = open * high * (0.55f + 0.18f * high);
    return round_at(turn, foot + curl, high);
  };
  for (size_t i = 0; i < points.size(); i++) {
    const Point3 &p = points[i], &q = points[(i + 1) % points.size()];
    float next = q.turn + (q.turn < p.turn ? 2 * kPi : 0), between = (p.turn + next) / 2;
    float low = 0.45f * std::fmin(p.tall, q.tall);
    wall.limb(on_wall(p.turn, 0), 0.26f * thick, on_wall(p.turn, 0.55f * p.tall), 0.22f * thick,
              linear(kBody));
    wall.limb(on_wall(p.turn, 0.55f * p.tall), 0.22f * thick, on_wall(p.turn, p.tall),
              0.10f * thick, linear(kBody));
    // Two layers of links form a sheet, torn down between the points.
    for (float k : {0.12f, 0.52f, 0.95f}) {
      wall.limb(on_wall(p.turn, k * low), 0.22f * thick, on_wall(between, k * low * 0.94f),
                0.20f * thick, linear(kBody));
      wall.limb(on_wall(between, k * low * 0.94f), 0.20f * thick, on_wall(next, k * low),
                0.22f * thick, linear(kBody));
    }
    // A bead gathers at each tip before it tears off.
    float bead = 0.19f * thick * step_s(0.06f, 0.3f, t) * (1 - step_s(0.60f, 0.80f, t));
    if (bead > 0.04f) wall.ball(on_wall(p.turn, p.tall + 0.04f), {bead, bead, bead}, linear(kThin));
  }
  wall.paint = [=](Vec p, Vec) {
    Vec c = water_colour(p.y * 2.4f / s.tall);
    const float r = std::hypot(p.x, p.z);
    const float inner = foot + open * p.y * (0.55f + 0.18f * p.y) - r;
    // Light falls through the far wall.
    return lerp(c, linear({0.42, 0.84, 1.0}), 0.8f * step_s(0.0f, 0.12f, inner));
  };
  scene.push_back(wall);
}

// After the crown the hole closes, and a column shoots up from its middle.
void add_column(ClayScene& scene, const Splash& s, float t) {
  const float rise = thrown(t - 0.34f, 0.28f, 0.62f);
  if (t < 0.36f || rise <= 0.02f) return;
  const float tall = s.tall * 0.80f * rise;
  ClayPart column;
  column.blend = 0.30f;
  column.gloss = 1.5f;
  column.metal = kWet;
  column.glow = kLight;
  float r = s.radius;
  column.ball({0, 0.02f, 0}, {0.75f * r, 0.26f * rise + 0.05f, 0.75f * r}, linear(kBody));
  column.limb({0, 0, 0}, 0.40f * r, {0, tall * 0.62f, 0}, 0.20f * r, linear(kBody));
  column.limb({0, tall * 0.62f, 0}, 0.20f * r, {0, tall, 0}, 0.15f * r, linear(kThin));
  float head = 0.25f * r;
  column.ball({0, tall + 0.12f, 0}, {head, head, head}, linear(kThin));
  column.paint = [=](Vec p, Vec) { return water_colour(0.35f + p.y * 2.8f / s.tall); };
  scene.push_back(column);
}

// A drop that flies from `from` to `to`.
void draw_drop(cairo_t* c, Point from, Point to, double r) {
  const double rim = std::fmax(1.0, 0.28 * r);
  Path tear = [=](cairo_t* k) { capsule(from, r * 0.25, to, r)(k); };
  stroke(c, tear, {0.04, 0.32, 0.68}, 2 * rim);
  fill_linear(c, tear, {to.x - r, to.y - r}, {0.80, 0.97, 1.0}, {to.x + r * 0.6, to.y + r},
              {0.12, 0.60, 0.98});
  fill(c, ellipse(to.x - r * 0.30, to.y - r * 0.34, r * 0.36, r * 0.28, -0.6), kWhite);
}

void draw_drops(cairo_t* c, Point middle, double unit, const Splash& s, double t, bool behind) {
  Rng rng{s.seed * 7 + 1};
  const double gravity = 2 * static_cast<double>(s.tall) / (kPeak * kPeak);
  const double radius = static_cast<double>(s.radius);
  const double k = std::cos(kTau * kPitch_deg / 360), flat = std::sin(kTau * kPitch_deg / 360);
  for (int i = 0; i < s.drops; i++) {
    double turn = rng.range(0, kTau), size = rng.range(0.09, 0.17), up = rng.range(0.80, 1.10);
    // Drops that fly towards the viewer go less far; otherwise they would leave the picture at its
    // foot.
    double out = rng.range(1.2, 2.6) * (1 - 0.4 * std::cos(turn)), u = t - rng.range(0, 0.10);
    if (u <= 0.03 || behind != (std::cos(turn) < 0)) continue;
    auto high = [&](double w) { return up * gravity * kPeak * w - gravity * w * w / 2; };
    auto at = [&](double w) {
      double r = radius * (1 + out * w), z = -r * std::cos(turn);
      return Point{middle.x + unit * r * std::sin(turn),
                   middle.y - unit * (high(w) * k + z * flat)};
    };
    if (high(u) < 0.15) continue;
    // In front of the crown it would hide it, so it is shown once it is above it.
    double crown = 0.72 * static_cast<double>(s.tall * thrown(static_cast<float>(t),
                                                              static_cast<float>(kPeak), 0.80f));
    if (!behind && u < kPeak && high(u) < crown) continue;
    draw_drop(c, at(u - 0.03), at(u), size * radius * unit * (1 - 0.35 * u));
  }
}

// Foam on the water round the foot, and rings that spread from there.
void draw_rings(cairo_t* c, Point at, double unit, const Splash& s, double t) {
  const double flat = std::sin(kTau * kPitch_deg / 360), r0 = static_cast<double>(s.radius) * unit;
  for (int i = 2; i >= 0; i--) {
    double k = (t - 0.13 * i) / 0.80;
    if (k <= 0 || k >= 1) continue;
    double out = 1 - (1 - k) * (1 - k), r = r0 * (0.95 + 1.10 * out),
           wide = 0.16 * unit * (1 - k) + 1.2;
    double alpha = 1 - smooth(0.45, 1.0, k);
    stroke(c, ellipse(at.x, at.y + wide * 0.7, r, r * flat), kOutline, wide, 0.35 * alpha);
    stroke(c, ellipse(at.x, at.y, r, r * flat), kFoam, wide, 0.95 * alpha);
  }
}

void add_foam(ClayScene& scene, const Splash& s, float t) {
  const float ring = s.radius * (0.82f + 0.80f * std::sqrt(t));
  ClayPart foam;
  foam.blend = 0.16f;
  foam.gloss = 0.5f;
  Rng rng{s.seed * 3 + 5};
  const int lumps = s.points * 2;
  for (int i = 0; i < lumps; i++) {
    float turn = (static_cast<float>(i) + 0.8f * static_cast<float>(rng.unit())) * 2 * kPi /
                 static_cast<float>(lumps);
    float big = static_cast<float>(rng.range(0.10, 0.24)),
          away = static_cast<float>(rng.range(-0.08, 0.10)),
          gone = static_cast<float>(rng.range(0.55, 1.15));
    // The rafts dissolve one by one.
    float r = s.radius * big * (1 - step_s(gone - 0.35f, gone, t));
    if (r < 0.05f) continue;
    foam.ball(round_at(turn, ring + s.radius * away, 0), {r * 1.5f, r * 0.6f, r * 1.3f},
              linear({0.93, 0.98, 1.0}));
  }
  if (!foam.shapes.empty()) scene.push_back(foam);
}

void draw_splash(const Cell& cell, const Splash& s, Point at, double unit, double outline) {
  // The first frame is just after the fall, the last one just before the water is flat.
  const double t = (cell.frame + 1.0) / (cell.frames + 1.0);
  const float u = static_cast<float>(t);
  draw_rings(cell.ctx, at, unit, s, t);
  draw_drops(cell.ctx, at, unit, s, t, true);
  ClayScene scene;
  if (thrown(u, static_cast<float>(kPeak), 0.80f) > 0.02f) add_crown(scene, s, u);
  add_column(scene, s, u);
  add_foam(scene, s, u);
  Canvas canvas(cell.width, cell.height);
  clay_draw(canvas, scene, {static_cast<float>(kPitch_deg), static_cast<float>(unit), at}, kOutline,
            static_cast<float>(outline));
  paint_canvas(cell.ctx, canvas, 0, 0, 1 - 0.75 * smooth(0.80, 1.0, t));
  draw_drops(cell.ctx, at, unit, s, t, false);
}

constexpr Splash kCrown{13, 2.9f, 1.25f, 30, 5};

constexpr CatalogueRow kRows[] = {
    sheet(SHEET_GFROG_SPLASH, 512, 256, Play::kOnce,
          [](const Cell& c) { draw_splash(c, kCrown, {256, 204}, 44, 2.2); }),
};

}  // namespace

const Family kWaterFamily{"art/water.cpp", kRows};

}  // namespace art
