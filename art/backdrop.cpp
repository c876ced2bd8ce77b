// The river scene behind everything, in two halves, and the shade at the screen's sides.
#include <cmath>

#include "art/catalogue.h"
#include "art/palette.h"

namespace art {

namespace {

// Where the grounds meet, in lines of the screen.
constexpr double kFarShore = 64, kNearShore = 360, kMeadow = 392, kBank = 690, kHeight = 768;
constexpr double kScreen = 1360;

double ragged(double x, double y, uint32_t seed) {
  return y + 7 * (fbm(x / 60, 0.5, seed, 4) - 0.47) * 2 + 2 * std::sin(x / 17);
}

Colour grass(double x, double y, double light) {
  double broad = fbm(x / 70, y / 46, 9, 3), fine = fbm(x / 5, y / 3, 12, 3);
  Colour k = mix({0.22, 0.54, 0.12}, {0.54, 0.80, 0.24}, light);
  k = mix(k, {0.34, 0.68, 0.14}, broad * 0.8);
  return dim(k, 0.80 + 0.40 * fine);
}

Colour sand(double x, double y) {
  double broad = fbm(x / 40, y / 20, 31, 3), fine = fbm(x / 4, y / 3, 14, 3);
  return dim(mix({0.68, 0.52, 0.30}, {0.90, 0.77, 0.50}, broad), 0.84 + 0.30 * fine);
}

Colour water(double x, double y, double far_y, double near_y) {
  double shallow = std::fmin((y - far_y) / 20, (near_y - y) / 16);
  double t = (y - far_y) / (near_y - far_y);
  double wave = fbm(x / 52 + 1.5 * fbm(x / 90, y / 30, 31, 3), y / 9, 21, 4);
  Colour k =
      mix({0.40, 0.78, 0.78}, mix({0.05, 0.32, 0.58}, {0.11, 0.50, 0.74}, t), clamp01(shallow));
  k = mix(k, {0.02, 0.22, 0.46}, std::fmax(0, 0.48 - wave) * 1.5);
  k = mix(k, {0.72, 0.92, 0.98}, 0.26 * std::fmax(0, 1 - std::fabs(wave - 0.56) / 0.034));
  double edge = std::fmax(0, 1 - std::fmin(y - far_y, near_y - y) / 4.0);
  k = mix(k, kFoam, edge * (0.35 + 0.6 * fbm(x / 6, y / 4, 17, 2)));
  // The far bank's shade on the water.
  return dim(k, 1 - 0.30 * std::fmax(0, 1 - (y - far_y) / 18) * (1 - edge));
}

Colour ground(double x, double y) {
  double far_y = ragged(x, kFarShore - 2, 3), near_y = ragged(x, kNearShore, 4);
  double meadow_y = ragged(x, kMeadow, 5), bank_y = ragged(x, kBank, 6);
  if (y < far_y - 9) return grass(x, y, 0.30);
  if (y < far_y) return dim(sand(x, y), 0.92);
  if (y < near_y) return water(x, y, far_y, near_y);
  if (y < meadow_y) return dim(sand(x, y), 0.80 + 0.20 * clamp01((y - near_y) / 8));
  if (y < bank_y) {
    double depth = (y - meadow_y) / (bank_y - meadow_y);
    Colour k = grass(x, y, 0.15 + 0.75 * depth);
    // Mown in stripes as wide as a lane, that a player may see the five of them.
    int lane = static_cast<int>(depth * 5);
    k = dim(k, lane % 2 ? 0.93 : 1.0);
    return dim(k, 1 - 0.35 * std::fmax(0, 1 - (y - meadow_y) / 9));
  }
  Colour k = mix(grass(x, y, 0.35), sand(x, y), 0.16);
  return dim(k, (1 - 0.35 * std::fmax(0, 1 - (y - bank_y) / 8)) * (1 - 0.25 * (y - kBank) / 78));
}

void paint_ground(cairo_t* c, int width, int height, double shift) {
  Canvas canvas(width, height);
  cairo_surface_flush(canvas.surface);
  unsigned char* data = cairo_image_surface_get_data(canvas.surface);
  int stride = cairo_image_surface_get_stride(canvas.surface);
  for (int y = 0; y < height; y++) {
    auto* row = reinterpret_cast<uint32_t*>(data + static_cast<ptrdiff_t>(y) * stride);
    for (int x = 0; x < width; x++) {
      // Two samples one above the other: all edges here run across.
      Colour k = mix(ground(x + shift, y - 0.25), ground(x + shift, y + 0.25), 0.5);
      auto byte = [](double v) { return static_cast<uint32_t>(std::lround(clamp01(v) * 255)); };
      row[x] = 0xff000000u | byte(k.r) << 16 | byte(k.g) << 8 | byte(k.b);
    }
  }
  cairo_surface_mark_dirty(canvas.surface);
  paint_canvas(c, canvas, 0, 0);
}

void draw_blades(cairo_t* c, Rng& rng) {
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  for (int i = 0; i < 4200; i++) {
    double x = kScreen * rng.unit(), y = kMeadow + 14 + (kHeight - kMeadow) * rng.unit();
    if (i % 8 == 0) y = 8 + 40 * rng.unit();
    double k = 0.6 + 0.7 * y / kHeight, tall = rng.range(5, 12) * k, lean = rng.range(-3, 3);
    Colour blade = mix({0.14, 0.44, 0.08}, {0.72, 0.90, 0.30}, rng.unit());
    set(c, blade, 0.65);
    cairo_set_line_width(c, 1.5 * k);
    cairo_move_to(c, x, y);
    cairo_curve_to(c, x, y - tall * 0.5, x + lean * 0.5, y - tall * 0.8, x + lean, y - tall);
    cairo_stroke(c);
  }
}

void draw_blossoms(cairo_t* c, Rng& rng) {
  const Colour petals[] = {kWhite, {1, 0.86, 0.22}, {0.97, 0.56, 0.78}, {0.78, 0.64, 1}};
  for (int i = 0; i < 120; i++) {
    double x = kScreen * rng.unit(), y = kMeadow + 22 + (kBank - kMeadow - 34) * rng.unit();
    if (i % 6 == 0) y = 10 + 36 * rng.unit();
    double r = rng.range(1.8, 3.6), turn = rng.unit();
    Colour petal = petals[static_cast<int>(4 * rng.unit())];
    for (int k = 0; k < 5; k++) {
      double a = (k + turn) * kTau / 5;
      fill(c, ellipse(x + std::cos(a) * r, y + std::sin(a) * r * 0.8, r * 0.75, r * 0.6, a), petal,
           0.9);
    }
    fill(c, ellipse(x, y, r * 0.6, r * 0.5), {1, 0.74, 0.10});
  }
}

void draw_stones(cairo_t* c, Rng& rng) {
  for (int i = 0; i < 86; i++) {
    double x = kScreen * rng.unit(), where = rng.unit(), r = rng.range(3, 8.5);
    double y = where < 0.5 ? ragged(x, kNearShore, 4) + 4 + 5 * rng.unit()
                           : ragged(x, kFarShore - 2, 3) - 3 - 3 * rng.unit();
    Colour stone = mix({0.48, 0.46, 0.45}, {0.82, 0.79, 0.73}, rng.unit());
    fill(c, ellipse(x + 1, y + r * 0.5, r * 1.4, r * 0.6), kBlack, 0.25);
    puff(c, ellipse(x, y, r * 1.3, r * 0.85), stone, x, y, r * 1.2, 1.1, 0.3);
  }
}

void draw_backdrop(const Cell& cell, bool right) {
  // Both halves draw the whole screen's scene and show their part of it.
  double shift = right ? kScreen / 2 : 0;
  paint_ground(cell.ctx, cell.width, cell.height, shift);
  cairo_translate(cell.ctx, -shift, 0);
  Rng rng{42};
  draw_blades(cell.ctx, rng);
  draw_blossoms(cell.ctx, rng);
  draw_stones(cell.ctx, rng);
}

void draw_shadow(const Cell& cell) {
  cairo_t* c = cell.ctx;
  cairo_rectangle(c, 0, 0, cell.width, kHeight);
  cairo_clip(c);
  cairo_pattern_t* g = cairo_pattern_create_linear(0, 0, cell.width - 4, 0);
  for (int i = 0; i <= 8; i++) {
    double t = i / 8.0;
    cairo_pattern_add_color_stop_rgba(g, t, 0.01, 0.06, 0.05, 0.85 * (1 - t) * (1 - t));
  }
  cairo_set_source(c, g);
  cairo_paint(c);
  cairo_pattern_destroy(g);
}

constexpr CatalogueRow kRows[] = {
    still(
        "bkdrop_lft.bmp", 680, 768, [](const Cell& c) { draw_backdrop(c, false); }, kTouchAll),
    still(
        "bkdrop_rt.bmp", 680, 768, [](const Cell& c) { draw_backdrop(c, true); }, kTouchAll),
    still("shadow.tga", 256, 1024, draw_shadow, kTouchLeft | kTouchTop),
};

}  // namespace

const Family kBackdropFamily{"art/backdrop.cpp", kRows};

}  // namespace art
