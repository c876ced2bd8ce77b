#include "art/canvas.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>
#include <vector>

#include "art/palette.h"

namespace art {

Colour mix(Colour a, Colour b, double t) {
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}
Colour dim(Colour a, double k) {
  return {a.r * k, a.g * k, a.b * k};
}
Point mix(Point a, Point b, double t) {
  return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}
double clamp01(double v) {
  return v < 0 ? 0 : v > 1 ? 1 : v;
}
double smooth(double a, double b, double v) {
  v = clamp01((v - a) / (b - a));
  return v * v * (3 - 2 * v);
}

Canvas::Canvas(int w, int h)
    : width(w),
      height(h),
      surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h)),
      ctx(cairo_create(surface)) {}

Canvas::~Canvas() {
  cairo_destroy(ctx);
  cairo_surface_destroy(surface);
}

void Canvas::clear() {
  cairo_save(ctx);
  cairo_set_operator(ctx, CAIRO_OPERATOR_CLEAR);
  cairo_paint(ctx);
  cairo_restore(ctx);
}

void paint_canvas(cairo_t* c, const Canvas& canvas, double x, double y, double alpha) {
  // Another thread may paint the same canvas, and a Cairo surface has state, so each thread has its
  // own view of the bytes.
  cairo_surface_t* view = cairo_image_surface_create_for_data(
      cairo_image_surface_get_data(canvas.surface), CAIRO_FORMAT_ARGB32, canvas.width,
      canvas.height, cairo_image_surface_get_stride(canvas.surface));
  cairo_set_source_surface(c, view, x, y);
  cairo_paint_with_alpha(c, alpha);
  cairo_set_source_rgb(c, 0, 0, 0);
  cairo_surface_destroy(view);
}

Path ellipse(double x, double y, double rx, double ry, double angle) {
  return [=](cairo_t* c) {
    cairo_new_path(c);
    cairo_save(c);
    cairo_translate(c, x, y);
    cairo_rotate(c, angle);
    cairo_scale(c, std::max(rx, 0.01), std::max(ry, 0.01));
    cairo_arc(c, 0, 0, 1, 0, kTau);
    cairo_close_path(c);
    cairo_restore(c);
  };
}

Path circle(double x, double y, double r) {
  return ellipse(x, y, r, r);
}

Path capsule(Point a, double ra, Point b, double rb) {
  return [=](cairo_t* c) {
    cairo_new_path(c);
    double t = std::atan2(b.y - a.y, b.x - a.x), length = std::hypot(b.x - a.x, b.y - a.y);
    double k = std::acos(length > 1e-6 ? std::clamp((ra - rb) / length, -1.0, 1.0) : 0.0);
    cairo_arc(c, a.x, a.y, ra, t + k, t - k + kTau);
    cairo_arc(c, b.x, b.y, rb, t - k, t + k);
    cairo_close_path(c);
  };
}

Path round_rect(double x, double y, double w, double h, double r) {
  return [=](cairo_t* c) {
    cairo_new_path(c);
    cairo_arc(c, x + w - r, y + r, r, -kTau / 4, 0);
    cairo_arc(c, x + w - r, y + h - r, r, 0, kTau / 4);
    cairo_arc(c, x + r, y + h - r, r, kTau / 4, kTau / 2);
    cairo_arc(c, x + r, y + r, r, kTau / 2, kTau * 3 / 4);
    cairo_close_path(c);
  };
}

Path polygon(std::initializer_list<Point> list) {
  std::vector<Point> points(list);
  return [points](cairo_t* c) {
    cairo_new_path(c);
    for (const Point& p : points) cairo_line_to(c, p.x, p.y);
    cairo_close_path(c);
  };
}

Path leaf(Point foot, Point tip, double width, double bend) {
  return [=](cairo_t* c) {
    double dx = tip.x - foot.x, dy = tip.y - foot.y, length = std::hypot(dx, dy) + 1e-6;
    double nx = -dy / length, ny = dx / length;
    auto at = [&](double along, double side) {
      return Point{foot.x + dx * along + nx * side, foot.y + dy * along + ny * side};
    };
    Point a = at(0.30, width + bend * 0.5), b = at(0.75, width * 0.5 + bend);
    Point d = at(0.75, -width * 0.5 + bend), e = at(0.30, -width + bend * 0.5);
    cairo_new_path(c);
    cairo_move_to(c, foot.x, foot.y);
    cairo_curve_to(c, a.x, a.y, b.x, b.y, tip.x, tip.y);
    cairo_curve_to(c, d.x, d.y, e.x, e.y, foot.x, foot.y);
    cairo_close_path(c);
  };
}

Path heart(double x, double y, double s) {
  return [=](cairo_t* c) {
    cairo_new_path(c);
    cairo_move_to(c, x, y + s);
    cairo_curve_to(c, x - s * 0.5, y + s * 0.5, x - s * 1.1, y + s * 0.1, x - s, y - s * 0.4);
    cairo_curve_to(c, x - s * 0.9, y - s, x - s * 0.2, y - s, x, y - s * 0.4);
    cairo_curve_to(c, x + s * 0.2, y - s, x + s * 0.9, y - s, x + s, y - s * 0.4);
    cairo_curve_to(c, x + s * 1.1, y + s * 0.1, x + s * 0.5, y + s * 0.5, x, y + s);
    cairo_close_path(c);
  };
}

Path star(double x, double y, double outer, double inner, int points, double angle) {
  return [=](cairo_t* c) {
    cairo_new_path(c);
    for (int i = 0; i < points * 2; i++) {
      double a = angle - kTau / 4 + i * kTau / (points * 2), r = i % 2 ? inner : outer;
      cairo_line_to(c, x + std::cos(a) * r, y + std::sin(a) * r);
    }
    cairo_close_path(c);
  };
}

void set(cairo_t* c, Colour colour, double alpha) {
  cairo_set_source_rgba(c, colour.r, colour.g, colour.b, alpha);
}

void fill(cairo_t* c, const Path& p, Colour colour, double alpha) {
  p(c);
  set(c, colour, alpha);
  cairo_fill(c);
}

void stroke(cairo_t* c, const Path& p, Colour colour, double width, double alpha) {
  p(c);
  set(c, colour, alpha);
  cairo_set_line_width(c, width);
  cairo_set_line_join(c, CAIRO_LINE_JOIN_ROUND);
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  cairo_stroke(c);
}

namespace {

void add_stop(cairo_pattern_t* g, double at, Colour k, double alpha = 1) {
  cairo_pattern_add_color_stop_rgba(g, at, k.r, k.g, k.b, alpha);
}

void fill_pattern(cairo_t* c, const Path& p, cairo_pattern_t* g) {
  p(c);
  cairo_set_source(c, g);
  cairo_fill(c);
  cairo_pattern_destroy(g);
}

}  // namespace

void fill_linear(cairo_t* c, const Path& p, Point from, Colour a, Point to, Colour b) {
  cairo_pattern_t* g = cairo_pattern_create_linear(from.x, from.y, to.x, to.y);
  add_stop(g, 0, a);
  add_stop(g, 1, b);
  fill_pattern(c, p, g);
}

void soft_spot(cairo_t* c, double x, double y, double rx, double ry, Colour colour, double alpha) {
  cairo_save(c);
  cairo_translate(c, x, y);
  cairo_scale(c, rx, ry);
  cairo_pattern_t* g = cairo_pattern_create_radial(0, 0, 0, 0, 0, 1);
  add_stop(g, 0, colour, alpha);
  add_stop(g, 0.55, colour, alpha * 0.62);
  add_stop(g, 1, colour, 0);
  fill_pattern(c, circle(0, 0, 1), g);
  cairo_restore(c);
}

void puff(cairo_t* c, const Path& p, Colour base, double x, double y, double r, double outline,
          double gloss) {
  Colour dark = dim(base, 0.40);
  if (outline > 0) stroke(c, p, dark, outline * 2);
  cairo_save(c);
  p(c);
  cairo_clip(c);
  cairo_pattern_t* g =
      cairo_pattern_create_radial(x - r * 0.35, y - r * 0.40, r * 0.05, x, y, r * 1.15);
  add_stop(g, 0, mix(base, kSunlight, 0.45));
  add_stop(g, 0.45, base);
  add_stop(g, 1, mix(base, kShade, 0.42));
  cairo_set_source(c, g);
  cairo_paint(c);
  cairo_pattern_destroy(g);
  cairo_translate(c, r * 0.06, r * 0.08);
  for (int i = 4; i >= 1; i--) stroke(c, p, dark, r * 0.13 * i, 0.075);
  cairo_restore(c);
  if (gloss <= 0) return;
  cairo_save(c);
  p(c);
  cairo_clip(c);
  soft_spot(c, x - r * 0.38, y - r * 0.45, r * 0.45, r * 0.45, kWhite, gloss);
  cairo_restore(c);
}

void eye(cairo_t* c, double x, double y, double r, Point look) {
  puff(c, circle(x, y, r), {0.98, 0.99, 0.96}, x, y, r * 1.3, r * 0.14, 0);
  double px = x + look.x * r * 0.36, py = y + look.y * r * 0.36;
  fill(c, ellipse(px, py, r * 0.58, r * 0.62), kInk);
  fill(c, circle(px - r * 0.2, py - r * 0.22, r * 0.2), kWhite);
}

namespace {

struct Layout {
  PangoLayout* layout;
  double baseline;
};

Layout lay_out(cairo_t* c, const char* text, Face face, double size) {
  PangoLayout* l = pango_cairo_create_layout(c);
  PangoFontDescription* d = pango_font_description_from_string(
      face == Face::kChunky ? "Cherry Bomb, DejaVu Sans Bold" : "DejaVu Sans Mono Bold");
  pango_font_description_set_absolute_size(d, size * PANGO_SCALE);
  pango_layout_set_font_description(l, d);
  pango_font_description_free(d);
  cairo_font_options_t* o = cairo_font_options_create();
  cairo_font_options_set_hint_style(o, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(o, CAIRO_HINT_METRICS_OFF);
  pango_cairo_context_set_font_options(pango_layout_get_context(l), o);
  cairo_font_options_destroy(o);
  pango_layout_set_text(l, text, -1);
  return {l, pango_layout_get_baseline(l) / static_cast<double>(PANGO_SCALE)};
}

}  // namespace

Ink words_path(cairo_t* c, const char* text, Face face, double size) {
  Layout l = lay_out(c, text, face, size);
  cairo_new_path(c);
  cairo_move_to(c, 0, -l.baseline);
  pango_cairo_layout_path(c, l.layout);
  g_object_unref(l.layout);
  double x0, y0, x1, y1;
  cairo_path_extents(c, &x0, &y0, &x1, &y1);
  return {x0, y0, x1 - x0, y1 - y0};
}

namespace {

// Fills the current path with a gradient from top to foot.
void paint_words(cairo_t* c, const WordStyle& s, double top, double foot) {
  cairo_set_line_join(c, CAIRO_LINE_JOIN_ROUND);
  if (s.rim_width > 0) {
    set(c, s.rim);
    cairo_set_line_width(c, s.rim_width * 2);
    cairo_stroke_preserve(c);
  }
  cairo_pattern_t* g = cairo_pattern_create_linear(0, top, 0, foot);
  add_stop(g, 0.10, s.top);
  add_stop(g, 0.90, s.bottom);
  cairo_set_source(c, g);
  cairo_fill(c);
  cairo_pattern_destroy(g);
}

}  // namespace

void words(cairo_t* c, const char* text, const WordStyle& s, double x, double y, double max_width) {
  cairo_save(c);
  Ink ink = words_path(c, text, s.face, s.size);
  double k = 1;
  if (max_width > 0 && ink.width + 2 * s.rim_width > max_width)
    k = max_width / (ink.width + 2 * s.rim_width);
  cairo_translate(c, x, y);
  cairo_scale(c, k, k);
  cairo_translate(c, -ink.x - ink.width / 2, -ink.y - ink.height / 2);
  words_path(c, text, s.face, s.size);
  paint_words(c, s, ink.y, ink.y + ink.height);
  cairo_restore(c);
}

void words_arc(cairo_t* c, const char* text, const WordStyle& s, double x, double y,
               double radius) {
  // Letter by letter, because each has its own angle. Advances come from the width of the text
  // before it.
  std::string all = text;
  auto advance = [&](size_t n) {
    Layout l = lay_out(c, all.substr(0, n).c_str(), s.face, s.size);
    int w, h;
    pango_layout_get_size(l.layout, &w, &h);
    g_object_unref(l.layout);
    return w / static_cast<double>(PANGO_SCALE);
  };
  double total = advance(all.size());
  for (int pass = s.rim_width > 0 ? 0 : 1; pass < 2; pass++) {
    for (size_t i = 0; i < all.size(); i++) {
      double from = advance(i), to = advance(i + 1);
      cairo_save(c);
      cairo_translate(c, x, y + radius);
      cairo_rotate(c, ((from + to) / 2 - total / 2) / radius);
      cairo_translate(c, -(to - from) / 2, -radius + s.size * 0.30);
      words_path(c, all.substr(i, 1).c_str(), s.face, s.size);
      // All rims first, so that no rim covers its neighbour's face.
      if (pass == 0) {
        set(c, s.rim);
        cairo_set_line_join(c, CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_width(c, s.rim_width * 2);
        cairo_stroke(c);
      } else {
        WordStyle face = s;
        face.rim_width = 0;
        paint_words(c, face, -s.size * 0.62, 0);
      }
      cairo_restore(c);
    }
  }
}

double Rng::unit() {
  state = state * 1664525u + 1013904223u;
  return (state >> 8) / 16777216.0;
}

double noise(double x, double y, uint32_t seed) {
  double fx = std::floor(x), fy = std::floor(y);
  auto hash = [&](double a, double b) {
    uint32_t n = static_cast<uint32_t>(static_cast<int>(a)) * 374761393u +
                 static_cast<uint32_t>(static_cast<int>(b)) * 668265263u + seed * 2246822519u;
    n = (n ^ (n >> 13)) * 1274126177u;
    return ((n ^ (n >> 16)) & 0xffff) / 65535.0;
  };
  double u = x - fx, v = y - fy;
  u = u * u * (3 - 2 * u);
  v = v * v * (3 - 2 * v);
  return (hash(fx, fy) * (1 - u) + hash(fx + 1, fy) * u) * (1 - v) +
         (hash(fx, fy + 1) * (1 - u) + hash(fx + 1, fy + 1) * u) * v;
}

double fbm(double x, double y, uint32_t seed, int octaves) {
  double weight = 0.5, sum = 0;
  for (int i = 0; i < octaves; i++) {
    sum += weight * noise(x, y, seed + static_cast<uint32_t>(i));
    x *= 2.03;
    y *= 2.03;
    weight *= 0.5;
  }
  return sum;
}

void paint_pixels(Canvas& canvas, const std::function<Colour(double, double)>& at) {
  cairo_surface_flush(canvas.surface);
  unsigned char* data = cairo_image_surface_get_data(canvas.surface);
  int stride = cairo_image_surface_get_stride(canvas.surface);
  for (int y = 0; y < canvas.height; y++) {
    auto* row = reinterpret_cast<uint32_t*>(data + static_cast<ptrdiff_t>(y) * stride);
    for (int x = 0; x < canvas.width; x++) {
      Colour sum{0, 0, 0};
      for (int i = 0; i < 4; i++) {
        Colour k = at(x + (i % 2 ? 0.75 : 0.25), y + (i < 2 ? 0.25 : 0.75));
        sum = {sum.r + clamp01(k.r), sum.g + clamp01(k.g), sum.b + clamp01(k.b)};
      }
      auto byte = [](double v) { return static_cast<uint32_t>(std::lround(v / 4 * 255)); };
      row[x] = 0xff000000u | byte(sum.r) << 16 | byte(sum.g) << 8 | byte(sum.b);
    }
  }
  cairo_surface_mark_dirty(canvas.surface);
}

}  // namespace art
