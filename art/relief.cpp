#include "art/relief.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "art/palette.h"

namespace art {

Paint plain(Colour colour) {
  return [=](cairo_t* c) {
    set(c, colour);
    cairo_paint(c);
  };
}

Paint ramp(Point from, Colour a, Point to, Colour b) {
  return [=](cairo_t* c) {
    cairo_pattern_t* g = cairo_pattern_create_linear(from.x, from.y, to.x, to.y);
    cairo_pattern_add_color_stop_rgb(g, 0, a.r, a.g, a.b);
    cairo_pattern_add_color_stop_rgb(g, 1, b.r, b.g, b.b);
    cairo_set_source(c, g);
    cairo_paint(c);
    cairo_pattern_destroy(g);
  };
}

namespace {

uint32_t packed(Colour k, double alpha = 1) {
  auto byte = [](double v) { return static_cast<uint32_t>(std::lround(clamp01(v) * 255)); };
  return byte(alpha) << 24 | byte(k.r * alpha) << 16 | byte(k.g * alpha) << 8 | byte(k.b * alpha);
}

uint32_t* pixel_row(const Canvas& canvas, int y) {
  return reinterpret_cast<uint32_t*>(cairo_image_surface_get_data(canvas.surface) +
                                     static_cast<ptrdiff_t>(y) *
                                         cairo_image_surface_get_stride(canvas.surface));
}

}  // namespace

Paint texture(double left, double top, double width, double height,
              const std::function<Colour(double, double)>& colour_at) {
  const int fine = 2, w = static_cast<int>(width * fine), h = static_cast<int>(height * fine);
  auto canvas = std::make_shared<Canvas>(w, h);
  cairo_surface_flush(canvas->surface);
  for (int y = 0; y < h; y++)
    for (int x = 0; x < w; x++)
      pixel_row(*canvas, y)[x] = packed(colour_at(left + (x + 0.5) / fine, top + (y + 0.5) / fine));
  cairo_surface_mark_dirty(canvas->surface);
  return [=](cairo_t* c) {
    cairo_save(c);
    cairo_translate(c, left, top);
    cairo_scale(c, 1.0 / fine, 1.0 / fine);
    paint_canvas(c, *canvas, 0, 0);
    cairo_restore(c);
  };
}

namespace {

// A field of one number for each fine pixel.
struct Field {
  int width, height;
  std::vector<float> v;
  Field(int w, int h) : width(w), height(h), v(static_cast<size_t>(w) * static_cast<size_t>(h)) {}
  float& at(int x, int y) {
    return v[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
  }
  float near(int x, int y) { return at(std::clamp(x, 0, width - 1), std::clamp(y, 0, height - 1)); }
};

// Squared distances along a line: the lower envelope of parabolas.
void envelope(std::vector<float>& f, int n, std::vector<int>& at, std::vector<float>& from,
              std::vector<float>& out) {
  int k = 0;
  at[0] = 0;
  from[0] = -1e20f;
  from[1] = 1e20f;
  for (int q = 1; q < n; q++) {
    auto meet = [&](int p) {
      const float fq = static_cast<float>(q), fp = static_cast<float>(p);
      return (f[static_cast<size_t>(q)] + fq * fq - f[static_cast<size_t>(p)] - fp * fp) /
             (2 * fq - 2 * fp);
    };
    float s = meet(at[static_cast<size_t>(k)]);
    while (s <= from[static_cast<size_t>(k)]) s = meet(at[static_cast<size_t>(--k)]);
    at[static_cast<size_t>(++k)] = q;
    from[static_cast<size_t>(k)] = s;
    from[static_cast<size_t>(k) + 1] = 1e20f;
  }
  k = 0;
  for (int q = 0; q < n; q++) {
    while (from[static_cast<size_t>(k) + 1] < static_cast<float>(q)) k++;
    const int p = at[static_cast<size_t>(k)];
    out[static_cast<size_t>(q)] = static_cast<float>((q - p) * (q - p)) + f[static_cast<size_t>(p)];
  }
}

// Turns 0 outside and large values inside into the distance to the outside.
void measure_distance(Field& d) {
  const size_t n = static_cast<size_t>(std::max(d.width, d.height)) + 2;
  std::vector<float> line(n), out(n), from(n);
  std::vector<int> at(n);
  for (int x = 0; x < d.width; x++) {
    for (int y = 0; y < d.height; y++) line[static_cast<size_t>(y)] = d.at(x, y);
    envelope(line, d.height, at, from, out);
    for (int y = 0; y < d.height; y++) d.at(x, y) = out[static_cast<size_t>(y)];
  }
  for (int y = 0; y < d.height; y++) {
    for (int x = 0; x < d.width; x++) line[static_cast<size_t>(x)] = d.at(x, y);
    envelope(line, d.width, at, from, out);
    for (int x = 0; x < d.width; x++) d.at(x, y) = std::sqrt(out[static_cast<size_t>(x)]);
  }
}

// A moving average, once along x and once along y.
void blur(Field& f, int reach) {
  if (reach < 1) return;
  std::vector<float> line(static_cast<size_t>(std::max(f.width, f.height)));
  auto pass = [&](int n, auto at) {
    float sum = 0;
    for (int i = -reach; i <= reach; i++) sum += at(std::clamp(i, 0, n - 1));
    for (int i = 0; i < n; i++) {
      line[static_cast<size_t>(i)] = sum / static_cast<float>(2 * reach + 1);
      sum += at(std::min(i + reach + 1, n - 1)) - at(std::max(i - reach, 0));
    }
    for (int i = 0; i < n; i++) at(i) = line[static_cast<size_t>(i)];
  };
  for (int y = 0; y < f.height; y++) pass(f.width, [&](int x) -> float& { return f.at(x, y); });
  for (int x = 0; x < f.width; x++) pass(f.height, [&](int y) -> float& { return f.at(x, y); });
}

// Heights of the fine pixels: a round rim of the given width with softened ridges.
Field heights(const Canvas& mask, double bevel) {
  Field f(mask.width, mask.height);
  for (int y = 0; y < mask.height; y++)
    for (int x = 0; x < mask.width; x++)
      f.at(x, y) = (pixel_row(mask, y)[x] >> 24) > 127 ? 1e12f : 0.0f;
  measure_distance(f);
  for (float& d : f.v) {
    const double t = 1 - std::min(1.0, d / bevel);
    d = static_cast<float>(bevel * std::sqrt(std::max(0.0, 1 - t * t)));
  }
  for (int i = 0; i < 2; i++) blur(f, static_cast<int>(bevel * 0.16));
  return f;
}

// What a curved polished surface reflects of sky, horizon and ground, by how much it faces up.
double mirror(double up) {
  struct Stop {
    double up, light;
  };
  constexpr Stop kStops[] = {{-1.0, 0.62}, {-0.60, 1.12}, {-0.30, 0.50}, {-0.06, 0.86}, {0.0, 1.0},
                             {0.25, 1.22}, {0.50, 0.92},  {0.72, 1.75},  {1.0, 1.40}};
  for (size_t i = 1; i < std::size(kStops); i++) {
    const Stop &a = kStops[i - 1], &b = kStops[i];
    if (up <= b.up) return a.light + (b.light - a.light) * smooth(a.up, b.up, up);
  }
  return std::end(kStops)[-1].light;
}

// A surface's colour in the light; (x, y) is how far it leans right and down.
Colour lit(Colour own, double x, double y, const Relief& r) {
  const double k = 1 / std::sqrt(x * x + y * y + 1);
  const double nx = x * k, ny = y * k, nz = k;
  // The key light's direction, and the one halfway between it and the eye.
  const double lacquer = 0.42 + 1.0 * std::max(0.0, -0.46 * nx - 0.67 * ny + 0.58 * nz);
  const double polish = mirror(-0.50 * nx - 0.86 * ny);
  const double light = lacquer + (polish - lacquer) * r.metal;
  // Shade keeps the colour rich: its weak components go first.
  const double deep = 1 + 1.3 * std::max(0.0, 1 - light);
  const Colour shade{std::pow(own.r, deep), std::pow(own.g, deep), std::pow(own.b, deep)};
  Colour out = light < 1 ? dim(shade, 0.25 + 0.75 * light)
                         : mix(own, kSunlight, std::min(0.92, (light - 1) * 1.1));
  const double bounce = std::max(0.0, 0.52 * nx + 0.72 * ny + 0.10 * nz);
  out = mix(out, mix(own, kWhite, 0.35), 0.42 * bounce * bounce * bounce);
  const double sparkle = std::pow(std::max(0.0, -0.26 * nx - 0.38 * ny + 0.89 * nz), 60.0);
  // Flat parts have no highlight of their own.
  const double lean = smooth(0.02, 0.25, nx * nx + ny * ny);
  return mix(out, kWhite, r.gloss * sparkle * lean);
}

}  // namespace

void raise(cairo_t* c, const Path& shape, const Paint& paint, const Relief& r) {
  const int fine = 3;
  cairo_save(c);
  cairo_matrix_t matrix;
  cairo_get_matrix(c, &matrix);
  shape(c);
  cairo_identity_matrix(c);
  double x0, y0, x1, y1;
  cairo_path_extents(c, &x0, &y0, &x1, &y1);
  cairo_new_path(c);
  const int left = static_cast<int>(std::floor(x0)) - 2, top = static_cast<int>(std::floor(y0)) - 2;
  const int w = static_cast<int>(std::ceil(x1)) + 2 - left;
  const int h = static_cast<int>(std::ceil(y1)) + 2 - top;
  if (w < 5 || h < 5) {
    cairo_restore(c);
    return;
  }
  Canvas body(w * fine, h * fine), mask(w * fine, h * fine);
  for (Canvas* k : {&body, &mask}) {
    cairo_scale(k->ctx, fine, fine);
    cairo_translate(k->ctx, -left, -top);
    cairo_transform(k->ctx, &matrix);
  }
  fill(mask.ctx, shape, kWhite);
  paint(body.ctx);
  cairo_surface_flush(mask.surface);
  cairo_surface_flush(body.surface);

  const double scale = std::sqrt(std::fabs(matrix.xx * matrix.yy - matrix.xy * matrix.yx)) * fine;
  Field height = heights(mask, std::max(1.0, r.bevel * scale));
  Canvas out(w, h);
  for (int y = 0; y < h; y++) {
    for (int x = 0; x < w; x++) {
      double sum[4] = {0, 0, 0, 0};
      for (int j = y * fine; j < (y + 1) * fine; j++) {
        for (int i = x * fine; i < (x + 1) * fine; i++) {
          const double a = (pixel_row(mask, j)[i] >> 24) / 255.0;
          if (a <= 0) continue;
          const uint32_t q = pixel_row(body, j)[i];
          const Colour own{(q >> 16 & 255) / 255.0, (q >> 8 & 255) / 255.0, (q & 255) / 255.0};
          const double lean = -0.5 * r.lift;
          const Colour k = lit(own, lean * (height.near(i + 1, j) - height.near(i - 1, j)),
                               lean * (height.near(i, j + 1) - height.near(i, j - 1)), r);
          sum[0] += k.r * a;
          sum[1] += k.g * a;
          sum[2] += k.b * a;
          sum[3] += a;
        }
      }
      if (sum[3] <= 0) continue;
      pixel_row(out, y)[x] =
          packed({sum[0] / sum[3], sum[1] / sum[3], sum[2] / sum[3]}, sum[3] / (fine * fine));
    }
  }
  cairo_surface_mark_dirty(out.surface);
  paint_canvas(c, out, left, top);
  cairo_restore(c);
}

Path moved(const Path& shape, double x, double y) {
  return [=](cairo_t* c) {
    cairo_save(c);
    cairo_translate(c, x, y);
    shape(c);
    cairo_restore(c);
  };
}

Path joined(std::vector<Path> parts) {
  return [parts = std::move(parts)](cairo_t* c) {
    std::vector<cairo_path_t*> laid;
    for (const Path& part : parts) {
      part(c);
      laid.push_back(cairo_copy_path(c));
    }
    cairo_new_path(c);
    for (cairo_path_t* path : laid) {
      cairo_append_path(c, path);
      cairo_path_destroy(path);
    }
  };
}

Path word_shape(const char* text, double size, double x, double y, double max_width) {
  return [=, line = std::string(text)](cairo_t* c) {
    cairo_save(c);
    const Ink ink = words_path(c, line.c_str(), Face::kChunky, size);
    const double k = max_width > 0 ? std::min(1.0, max_width / ink.width) : 1;
    cairo_translate(c, x, y);
    cairo_scale(c, k, k);
    cairo_translate(c, -ink.x - ink.width / 2, -ink.y - ink.height / 2);
    words_path(c, line.c_str(), Face::kChunky, size);
    cairo_restore(c);
  };
}

const Block kGoldLetters{
    {1.0, 0.90, 0.30},   {1.0, 0.60, 0.05}, {0.80, 0.34, 0.02}, {0.28, 0.08, 0.02}, 7, 6,
    {12, 0.9, 0.7, 0.55}};
const Block kGreenLetters{
    {0.80, 1.0, 0.36}, {0.30, 0.80, 0.08}, {0.10, 0.50, 0.06}, {0.02, 0.18, 0.06}, 5, 4,
    {7, 0.8, 0.7, 0}};
const Block kYellowLetters{
    {1.0, 0.96, 0.40}, {1.0, 0.68, 0.06}, {0.78, 0.38, 0.02}, {0.32, 0.12, 0.01}, 5, 4,
    {7, 0.8, 0.7, 0}};
const Block kCreamLetters{
    {1.0, 1.0, 0.96}, {1.0, 0.90, 0.62}, {0.80, 0.46, 0.14}, {0.26, 0.09, 0.03}, 5, 4,
    {7, 0.8, 0.7, 0}};

void block(cairo_t* c, const Path& shape, const Block& s, double top, double foot) {
  // From the foot of the side up to the face, by half pixels.
  const int steps = static_cast<int>(s.depth * 2);
  for (int i = steps; i >= 0; i--) stroke(c, moved(shape, 0, i * 0.5), s.ink, 2 * s.rim);
  for (int i = steps; i > 0; i--)
    fill(c, moved(shape, 0, i * 0.5),
         mix(s.side, dim(s.side, 0.55), static_cast<double>(i) / steps));
  stroke(c, shape, s.ink, s.depth > 0 ? s.rim * 0.7 : s.rim);
  raise(c, shape, ramp({0, top}, s.top, {0, foot}, s.bottom), s.relief);
}

void block_words(cairo_t* c, const char* text, double size, const Block& s, double x, double y,
                 double max_width) {
  Path shape = word_shape(text, size, x, y, max_width > 0 ? max_width - 2 * s.rim : 0);
  cairo_save(c);
  shape(c);
  double x0, y0, x1, y1;
  cairo_path_extents(c, &x0, &y0, &x1, &y1);
  cairo_new_path(c);
  cairo_restore(c);
  // Face, side and rim together are centred.
  block(c, moved(shape, 0, -s.depth / 2), s, y0 - s.depth / 2, y1 - s.depth / 2);
}

void draw_glint(cairo_t* c, double x, double y, double size) {
  soft_spot(c, x, y, size * 0.8, size * 0.8, {1, 0.98, 0.80}, 0.55);
  fill(c, star(x, y, size, size * 0.13, 4), kWhite);
  fill(c, star(x, y, size * 0.45, size * 0.13, 4, kTau / 8), kWhite);
}

}  // namespace art
