#include "art/clay.h"

#include <algorithm>
#include <cmath>

namespace art {

float length(Vec a) {
  return std::sqrt(dot(a, a));
}
Vec unit(Vec a) {
  return a * (1 / std::max(1e-9f, length(a)));
}
Vec cross(Vec a, Vec b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
Vec lerp(Vec a, Vec b, float t) {
  return a + (b - a) * t;
}
static float clamp(float v, float lo = 0, float hi = 1) {
  return v < lo ? lo : v > hi ? hi : v;
}
float step_s(float a, float b, float v) {
  v = clamp((v - a) / (b - a));
  return v * v * (3 - 2 * v);
}
Vec linear(Colour c) {
  auto up = [](double v) { return static_cast<float>(std::pow(v, 2.2)); };
  return {up(c.r), up(c.g), up(c.b)};
}

ClayFrame frame_yaw(float degrees) {
  float a = degrees * static_cast<float>(kTau) / 360, s = std::sin(a), k = std::cos(a);
  return {{k, 0, -s}, {0, 1, 0}, {s, 0, k}, {0, 0, 0}};
}

ClayFrame frame_within(const ClayFrame& o, const ClayFrame& i) {
  ClayFrame f;
  auto turn = [&](Vec v) { return o.x * v.x + o.y * v.y + o.z * v.z; };
  f.x = turn(i.x);
  f.y = turn(i.y);
  f.z = turn(i.z);
  f.at = o.out(i.at);
  return f;
}

void ClayPart::ball(Vec c, Vec radii, Vec colour) {
  shapes.push_back({true, c, radii, 0, 0, colour});
}
void ClayPart::limb(Vec a, float ra, Vec b, float rb, Vec colour) {
  shapes.push_back({false, a, b, ra, rb, colour});
}

namespace {

float shape_distance(const ClayShape& q, Vec p) {
  if (q.ball) {
    Vec d = p - q.a, e{d.x / q.b.x, d.y / q.b.y, d.z / q.b.z};
    Vec f{e.x / q.b.x, e.y / q.b.y, e.z / q.b.z};
    float k0 = length(e), k1 = length(f);
    return k1 > 1e-6f ? k0 * (k0 - 1) / k1 : -std::min({q.b.x, q.b.y, q.b.z});
  }
  Vec ab = q.b - q.a, ap = p - q.a;
  float h = clamp(dot(ap, ab) / std::max(1e-9f, dot(ab, ab)));
  return length(ap - ab * h) - (q.ra + (q.rb - q.ra) * h);
}

constexpr float kCutEdge = 0.06f;  // how far the edge of a cut is rounded

// The distance from a point, in the part's own axes, to the part; and its blended colour there on
// request.
float part_distance(const ClayPart& g, Vec p, Vec* colour) {
  float d = 1e9f;
  Vec c{0, 0, 0};
  if (g.field) {
    if (colour) *colour = g.shapes[0].colour;
    return g.field(p);
  }
  for (const ClayShape& q : g.shapes) {
    // A shape too far away to blend with nearer ones changes nothing.
    Vec off = p - q.middle;
    float far = d + g.blend + q.reach;
    if (far < 1e8f && far > 0 && dot(off, off) > far * far) continue;
    float e = shape_distance(q, p);
    if (d > 1e8f) {
      d = e;
      c = q.colour;
      continue;
    }
    float h = clamp(0.5f + 0.5f * (d - e) / g.blend);
    if (colour) c = lerp(c, q.colour, h);
    d = d + (e - d) * h - g.blend * h * (1 - h);
  }
  if (colour) *colour = c;
  if (g.cut && d < 0.5f) {
    float e = -g.cut(p), h = clamp(0.5f - 0.5f * (d - e) / kCutEdge);
    d = d + (e - d) * h + kCutEdge * h * (1 - h);
  }
  return d;
}

void find_bounds(ClayPart& g) {
  Vec c{0, 0, 0};
  for (ClayShape& q : g.shapes) {
    q.middle = q.ball ? q.a : (q.a + q.b) * 0.5f;
    q.reach =
        q.ball ? std::max({q.b.x, q.b.y, q.b.z}) : length(q.b - q.a) * 0.5f + std::max(q.ra, q.rb);
    c = c + q.middle;
  }
  c = c * (1.0f / static_cast<float>(g.shapes.size()));
  float r = 0;
  for (const ClayShape& q : g.shapes) r = std::max(r, length(q.middle - c) + q.reach);
  g.centre = g.frame.out(c);
  g.radius = r + g.blend * 0.3f;
}

struct Hit {
  float r, g, b, a;
  int part;
};

constexpr int kMostParts = 64;

struct Tracer {
  const ClayScene& scene;
  Vec right, up, dir;
  int count;

  // The nearest of some parts; for distant ones only the bounding sphere counts.
  int nearest(const int* parts, int n, Vec p, float& best) const {
    best = 1e9f;
    int id = -1;
    for (int i = 0; i < n; i++) {
      const ClayPart& g = scene[static_cast<size_t>(parts[i])];
      float bound = length(p - g.centre) - g.radius;
      if (bound > best) continue;
      float d = bound > 0.6f ? bound : part_distance(g, g.frame.in(p), nullptr);
      if (d < best) {
        best = d;
        id = parts[i];
      }
    }
    return id;
  }

  Hit trace(float u, float v) const;
  Vec shade(int part, Vec p) const;
};

const Vec kKey = unit({-0.55f, 0.86f, 0.05f});
const Vec kFill = unit({0.6f, 0.45f, -0.6f});
const Vec kRim = unit({0.1f, 0.35f, 1.0f});

// What a mirror reflects in a direction: grass below, a bright horizon and sky.
Vec sky_along(Vec r) {
  Vec sky = lerp({1.15f, 1.15f, 1.05f}, {0.34f, 0.50f, 0.80f}, step_s(0.05f, 0.85f, r.y));
  return lerp({0.10f, 0.12f, 0.05f}, sky, step_s(-0.22f, 0.10f, r.y));
}

Vec Tracer::shade(int part, Vec p) const {
  const ClayPart& g = scene[static_cast<size_t>(part)];
  // Its own part first: near the surface the bounds then exclude the others.
  int order[kMostParts], n_parts = 0;
  order[n_parts++] = part;
  for (int i = 0; i < count; i++)
    if (i != part) order[n_parts++] = i;
  const float e = 0.006f;
  auto at = [&](Vec d) { return part_distance(g, g.frame.in(p + d), nullptr); };
  Vec n = unit(Vec{1, -1, -1} * at({e, -e, -e}) + Vec{-1, -1, 1} * at({-e, -e, e}) +
               Vec{-1, 1, -1} * at({-e, e, -e}) + Vec{1, 1, 1} * at({e, e, e}));
  Vec colour;
  Vec own = g.frame.in(p);
  part_distance(g, own, &colour);
  if (g.paint) colour = g.paint(own, colour);

  float lit = 1, t = 0.06f, d;
  if (dot(n, kKey) > -0.2f) {
    for (int i = 0; i < 14 && t < 3.5f && lit > 0; i++) {
      nearest(order, n_parts, p + n * 0.02f + kKey * t, d);
      lit = std::min(lit, 0.5f + 0.5f * d / (0.16f * t));
      t += clamp(d, 0.05f, 0.5f);
    }
  }
  lit = step_s(0, 1, lit);
  float ao = 0, w = 1;
  for (int i = 1; i <= 4; i++) {
    float h = 0.10f * static_cast<float>(i);
    nearest(order, n_parts, p + n * h, d);
    ao += (h - d) * w;
    w *= 0.62f;
  }
  ao = clamp(1 - 1.15f * ao, 0.25f, 1);

  Vec view = dir * -1;
  float facing = clamp(dot(n, view));
  float wrap = clamp((dot(n, kKey) + 0.25f) / 1.25f) * (0.30f + 0.70f * lit);
  Vec light = Vec{1.0f, 0.96f, 0.86f} * (0.92f * wrap) +
              Vec{0.45f, 0.60f, 0.90f} * (0.30f * clamp(dot(n, kFill))) * ao +
              lerp({0.24f, 0.26f, 0.20f}, {0.40f, 0.46f, 0.52f}, n.y * 0.5f + 0.5f) * (0.85f * ao);
  if (g.soft > 0) {
    // Light that entered elsewhere: it fills the terminator and shows where the body is thin.
    float seep = clamp((dot(n, kKey) + 0.9f) / 1.9f) * 0.34f + 0.30f * (1 - facing) * (1 - facing);
    light = light + Vec{1.0f, 0.82f, 0.62f} * (g.soft * seep * (0.5f + 0.5f * ao));
  }
  Vec out = colour * light;
  if (g.metal > 0) {
    // Lacquer reflects little but the white light of the sun; metal reflects everything, in its own
    // colour.
    Vec r = dir - n * (2 * dot(dir, n)), tint = lerp({1, 1, 1}, colour, g.metal);
    float glancing = std::pow(1 - facing, 4.0f);
    float sky = (g.metal + (1 - g.metal) * (0.12f + 0.88f * glancing)) * (0.45f + 0.55f * ao);
    float window = 3.2f * step_s(0.84f, 0.93f, dot(r, kKey)) * (0.2f + 0.8f * lit);
    out = out * (1 - 0.55f * g.metal) +
          (sky_along(r) * sky + Vec{1, 1, 0.95f} * window) * tint * (g.metal * (0.5f + 0.5f * lit));
  }
  if (g.glow > 0) out = lerp(out, colour, g.glow);
  float sparkle = std::pow(clamp(dot(n, unit(kKey + view))), 48.0f);
  out = out + Vec{1, 1, 0.95f} * (sparkle * g.gloss * (0.35f + 0.65f * lit));
  float rim = std::pow(1 - facing, 3.0f) * clamp(dot(n, kRim) * 0.7f + 0.3f);
  out = out + lerp(colour, {1, 1, 0.8f}, 0.5f) * (rim * 0.55f);
  if (g.inked) out = lerp(colour * 0.16f, out, 0.35f + 0.65f * step_s(0.10f, 0.34f, facing));
  return out;
}

Hit Tracer::trace(float u, float v) const {
  Hit miss{0, 0, 0, 0, -1};
  Vec o = right * u + up * v - dir * 20;
  int near[kMostParts], n = 0;
  float t = 1e9f;
  for (int i = 0; i < count; i++) {
    const ClayPart& g = scene[static_cast<size_t>(i)];
    Vec d = g.centre - o;
    float along = dot(d, dir), off = dot(d, d) - along * along;
    if (off >= g.radius * g.radius) continue;
    near[n++] = i;
    t = std::min(t, along - std::sqrt(g.radius * g.radius - off));
  }
  if (n == 0) return miss;
  int id = -1;
  Vec p{};
  for (int i = 0; i < 64; i++) {
    p = o + dir * t;
    float d;
    id = nearest(near, n, p, d);
    if (d < 0.004f) break;
    if (i == 63 && d > 0.03f) return miss;
    t += d * 0.92f;
    if (t > 30) return miss;
  }
  if (id < 0) return miss;
  Vec c = shade(id, p);
  auto screen = [](float x) { return clamp(std::pow(std::max(0.0f, x), 1 / 2.2f)); };
  return {screen(c.x), screen(c.y), screen(c.z), 1, id};
}

size_t pixel(int width, int x, int y) {
  return static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x);
}

// How many rays a pixel needs in each direction: more beside another part or a strong step, most at
// the rim.
int rays_across(const std::vector<Hit>& hits, int w, int h, int x, int y) {
  const Hit& q = hits[pixel(w, x, y)];
  int rays = 1;
  const int dx[4] = {1, -1, 0, 0}, dy[4] = {0, 0, 1, -1};
  for (int k = 0; k < 4; k++) {
    int nx = x + dx[k], ny = y + dy[k];
    if (nx < 0 || ny < 0 || nx >= w || ny >= h) continue;
    const Hit& r = hits[pixel(w, nx, ny)];
    if (r.a != q.a) return 3;
    if (r.part != q.part) rays = 2;
    if (q.a > 0 && std::fabs(r.r - q.r) + std::fabs(r.g - q.g) + std::fabs(r.b - q.b) > 0.18f)
      rays = 2;
  }
  return rays;
}

// Lays the outline's colour round the alpha of premultiplied pixels.
void add_outline(std::vector<Hit>& px, int w, int h, Colour colour, float width) {
  int reach = static_cast<int>(std::ceil(width)) + 1;
  std::vector<float> rim(px.size(), 0.0f);
  for (int y = 0; y < h; y++) {
    for (int x = 0; x < w; x++) {
      float a = px[pixel(w, x, y)].a;
      if (a <= 0) continue;
      // Only a pixel at the shape's edge can extend the outline.
      bool inside = x > 0 && y > 0 && x + 1 < w && y + 1 < h && px[pixel(w, x - 1, y)].a >= 1 &&
                    px[pixel(w, x + 1, y)].a >= 1 && px[pixel(w, x, y - 1)].a >= 1 &&
                    px[pixel(w, x, y + 1)].a >= 1;
      if (inside && a >= 1) continue;
      for (int j = std::max(0, y - reach); j <= std::min(h - 1, y + reach); j++) {
        for (int i = std::max(0, x - reach); i <= std::min(w - 1, x + reach); i++) {
          float far = std::sqrt(static_cast<float>((i - x) * (i - x) + (j - y) * (j - y)));
          float& r = rim[pixel(w, i, j)];
          r = std::max(r, clamp(width + 0.5f - far) * a);
        }
      }
    }
  }
  for (size_t i = 0; i < px.size(); i++) {
    float k = rim[i] * (1 - px[i].a);
    px[i].r += static_cast<float>(colour.r) * k;
    px[i].g += static_cast<float>(colour.g) * k;
    px[i].b += static_cast<float>(colour.b) * k;
    px[i].a += k;
  }
}

}  // namespace

void clay_draw(Canvas& canvas, ClayScene& scene, const ClayCamera& camera, Colour outline,
               float outline_px) {
  const int w = canvas.width, h = canvas.height;
  for (ClayPart& g : scene) find_bounds(g);
  float a = camera.pitch_deg * static_cast<float>(kTau) / 360;
  Vec dir{0, -std::sin(a), std::cos(a)}, right{1, 0, 0};
  const int count = static_cast<int>(std::min<size_t>(scene.size(), kMostParts));
  const Tracer tracer{scene, right, cross(dir, right), dir, count};

  auto ray = [&](float x, float y) {
    return tracer.trace((x - static_cast<float>(camera.origin.x)) / camera.px_per_unit,
                        (static_cast<float>(camera.origin.y) - y) / camera.px_per_unit);
  };
  std::vector<Hit> hits(pixel(w, 0, h));
  for (int y = 0; y < h; y++)
    for (int x = 0; x < w; x++)
      hits[pixel(w, x, y)] = ray(static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
  std::vector<Hit> px = hits;
  for (int y = 0; y < h; y++) {
    for (int x = 0; x < w; x++) {
      const int rays = rays_across(hits, w, h, x, y);
      if (rays == 1) continue;
      Hit sum{0, 0, 0, 0, 0};
      for (int j = 0; j < rays; j++) {
        for (int i = 0; i < rays; i++) {
          Hit r = ray(
              static_cast<float>(x) + (static_cast<float>(i) + 0.5f) / static_cast<float>(rays),
              static_cast<float>(y) + (static_cast<float>(j) + 0.5f) / static_cast<float>(rays));
          sum.r += r.r;
          sum.g += r.g;
          sum.b += r.b;
          sum.a += r.a;
        }
      }
      const float k = 1.0f / static_cast<float>(rays * rays);
      px[pixel(w, x, y)] = {sum.r * k, sum.g * k, sum.b * k, sum.a * k, 0};
    }
  }
  if (outline_px > 0) add_outline(px, w, h, outline, outline_px);

  Canvas image(w, h);
  cairo_surface_flush(image.surface);
  unsigned char* bytes = cairo_image_surface_get_data(image.surface);
  int stride = cairo_image_surface_get_stride(image.surface);
  for (int y = 0; y < h; y++) {
    auto* row = reinterpret_cast<uint32_t*>(bytes + static_cast<ptrdiff_t>(y) * stride);
    for (int x = 0; x < w; x++) {
      const Hit& q = px[pixel(w, x, y)];
      auto byte = [](float v) { return static_cast<uint32_t>(std::lround(clamp(v) * 255)); };
      row[x] = byte(q.a) << 24 | byte(q.r) << 16 | byte(q.g) << 8 | byte(q.b);
    }
  }
  cairo_surface_mark_dirty(image.surface);
  paint_canvas(canvas.ctx, image, 0, 0);
}

void clay_draw_fine(Canvas& canvas, ClayScene& scene, const ClayCamera& camera, Colour outline,
                    float outline_px, int times) {
  Canvas large(canvas.width * times, canvas.height * times), small(canvas.width, canvas.height);
  const double k = times;
  clay_draw(large, scene,
            {camera.pitch_deg,
             camera.px_per_unit * static_cast<float>(times),
             {camera.origin.x * k, camera.origin.y * k}},
            outline, outline_px * static_cast<float>(times));
  cairo_surface_flush(large.surface);
  const unsigned char* from = cairo_image_surface_get_data(large.surface);
  unsigned char* to = cairo_image_surface_get_data(small.surface);
  const ptrdiff_t from_line = cairo_image_surface_get_stride(large.surface),
                  to_line = cairo_image_surface_get_stride(small.surface);
  for (int y = 0; y < small.height; y++) {
    for (int x = 0; x < small.width * 4; x++) {
      int sum = 0;
      for (int j = 0; j < times; j++)
        for (int i = 0; i < times; i++)
          sum += from[(y * times + j) * from_line + (x / 4 * times + i) * 4 + x % 4];
      to[y * to_line + x] = static_cast<unsigned char>((sum + times * times / 2) / (times * times));
    }
  }
  cairo_surface_mark_dirty(small.surface);
  paint_canvas(canvas.ctx, small, 0, 0);
}

ClayPart clay_eye(const ClayFrame& frame, Vec c, float r, Vec look, float pupil, Vec skin,
                  float lid, Vec lid_from) {
  ClayPart g;
  g.blend = 0.01f;
  g.gloss = 0.6f;
  g.inked = false;
  g.frame = frame;
  g.ball(c, {r, r, r}, {1, 1, 0.94f});
  look = unit(look);
  lid_from = unit(lid_from);
  Vec glint = unit(look + Vec{-0.30f, 0.15f, 0.10f});
  g.paint = [=](Vec p, Vec colour) {
    Vec n = unit(p - c);
    float closed = dot(n, lid_from) - (1 - 2 * lid);
    if (lid > 0 && closed > 0) return closed < 0.10f && lid > 0.4f ? skin * 0.25f : skin;
    if (dot(n, glint) > 0.962f) return Vec{1.1f, 1.1f, 1.1f};
    if (dot(n, look) > pupil) return Vec{0.008f, 0.010f, 0.02f};
    return colour;
  };
  return g;
}

ClayPart clay_big_eye(const ClayFrame& f, Vec c, float r, Vec look) {
  ClayPart g;
  g.blend = 0.01f;
  g.gloss = 0.5f;
  g.glow = 0.35f;
  g.frame = f;
  g.ball(c, {r, r, r}, {1.05f, 1.05f, 1.0f});
  look = unit(look);
  Vec world = unit(f.x * look.x + f.y * look.y + f.z * look.z + Vec{-0.34f, 0.26f, 0});
  const Vec glint{dot(world, f.x), dot(world, f.y), dot(world, f.z)};
  g.paint = [=](Vec p, Vec white) {
    Vec n = unit(p - c);
    if (dot(n, glint) > 0.955f) return Vec{1.5f, 1.5f, 1.5f};
    if (dot(n, look) > 0.66f) return Vec{0.006f, 0.008f, 0.02f};
    return white;
  };
  return g;
}

}  // namespace art
