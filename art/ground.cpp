#include "art/ground.h"

#include <cmath>

#include "art/palette.h"

namespace art {

namespace {

double ragged(double x, double y, double high, uint32_t seed) {
  return y + high * (fbm(x / 74, 0.5, seed, 4) - 0.47) * 2 + high * 0.14 * std::sin(x / 19);
}

// 1 on a thin crest of the noise, 0 elsewhere.
double crest(double value, double at, double width) {
  return 1 - smooth(0, width, std::fabs(value - at));
}

Colour far_bank(double x, double y) {
  // Haze at the very top, then a sunlit lawn that gets darker towards the water.
  double t = clamp01(y / 58), broad = fbm(x / 60, y / 18, 9, 3);
  Colour k = mix({0.76, 0.88, 0.56}, {0.40, 0.66, 0.22}, smooth(0.05, 0.85, t));
  k = mix(k, {0.24, 0.50, 0.16}, (0.2 + 0.6 * t) * broad);
  double sun = smooth(520, 0, x) * smooth(1, 0.2, t);
  return mix(k, {1.0, 0.97, 0.70}, 0.35 * sun);
}

Colour earth(double x, double y) {
  double broad = fbm(x / 34, y / 10, 31, 3), fine = fbm(x / 4, y / 3, 14, 2);
  return dim(mix({0.34, 0.22, 0.11}, {0.62, 0.45, 0.24}, broad), 0.80 + 0.36 * fine);
}

Colour sand(double x, double y) {
  double broad = fbm(x / 40, y / 16, 33, 3), fine = fbm(x / 3, y / 2.4, 15, 2);
  return dim(mix({0.70, 0.55, 0.32}, {0.92, 0.80, 0.54}, broad), 0.88 + 0.22 * fine);
}

Colour moss(double x, double y) {
  double broad = fbm(x / 30, y / 12, 35, 3), fine = fbm(x / 4, y / 3, 16, 3);
  return dim(mix({0.20, 0.38, 0.10}, {0.50, 0.66, 0.20}, broad), 0.76 + 0.46 * fine);
}

// The far bank's reflection: upside down in the water and stretched by the waves.
Colour reflection(double x, double depth, double wave) {
  double at = x + 9 * (wave - 0.5);
  double tall = fbm(at / 27, 3.5, 51, 3), tint = noise(at / 13, depth / 60, 52);
  Colour bush = mix({0.03, 0.20, 0.15}, {0.17, 0.40, 0.18}, tint);
  return mix(bush, {0.24, 0.56, 0.60}, smooth(0.30, 0.62, depth / 90 + 0.34 - tall * 0.5));
}

Colour water(double x, double y, double far_y, double near_y) {
  const double t = (y - far_y) / (near_y - far_y), depth = y - far_y;
  const double warp = fbm(x / 150, y / 46, 41, 3);
  const double wave = fbm(x / (46 + 60 * t) + 2.2 * warp, y / (4.5 + 6 * t), 21, 4);
  const double pool = fbm(x / 210 + warp, y / 58, 22, 3);
  // Deep at the far bank, light over the shallows at the near one.
  Colour k = mix({0.03, 0.28, 0.46}, {0.05, 0.44, 0.68}, smooth(0, 0.42, t));
  k = mix(k, {0.16, 0.68, 0.84}, smooth(0.34, 0.92, t));
  k = mix(k, {0.02, 0.24, 0.44}, 0.75 * smooth(0.56, 0.26, pool) * (1 - 0.5 * t));
  k = mix(k, {0.20, 0.72, 0.84}, 0.55 * smooth(0.44, 0.74, pool) * (0.35 + 0.65 * t));
  k = mix(k, {0.02, 0.20, 0.38}, 0.55 * smooth(0.47, 0.30, wave));
  k = mix(k, {0.36, 0.78, 0.88}, 0.32 * smooth(0.52, 0.68, wave));
  // The web of light on the shallow bottom.
  double web = fbm(x / 46 + 1.6 * fbm(x / 30, y / 15, 45, 2), y / 17, 46, 2);
  k = mix(k, {0.72, 0.96, 0.94}, 0.26 * crest(web, 0.38, 0.035) * smooth(0.35, 1, t));
  // The far bank's reflection, in strips cut by the waves.
  double mirrored = smooth(86, 8, depth + 60 * (wave - 0.5));
  k = mix(k, reflection(x, depth, wave), 0.86 * mirrored);
  k = mix(k, {0.01, 0.10, 0.14}, 0.66 * smooth(14, 0, depth));
  // The near bank's moss darkens the water in front of it; the bottom shines through.
  double lip = near_y - y;
  k = mix(k, mix({0.10, 0.42, 0.40}, {0.46, 0.66, 0.46}, fbm(x / 24, y / 8, 48, 3)),
          0.66 * smooth(26, 2, lip));
  k = mix(k, {0.02, 0.15, 0.17}, 0.62 * smooth(8, 0, lip));
  // The sky's light from the upper left.
  double sky = smooth(900, 0, std::hypot((x - 330) * 0.8, (y - 40) * 2.6));
  k = mix(k, {0.66, 0.90, 0.92}, 0.10 * sky);
  // Both sides of the river are in the shade of the leaves there.
  double side = std::fmin(x, kScreenWidth - x);
  return mix(k, {0.01, 0.14, 0.24}, 0.40 * smooth(210, 0, side));
}

Colour middle_bank(double x, double y, double near_y, double meadow_y) {
  double t = (y - near_y) / (meadow_y - near_y);
  double bare = smooth(0.40, 0.56, fbm(x / 64, y / 30, 61, 3) + 0.16 * crest(t, 0.56, 0.5));
  Colour k = mix(moss(x, y), sand(x, y), bare * smooth(0.12, 0.34, t) * smooth(1.0, 0.74, t));
  k = mix(k, earth(x, y), 0.85 * smooth(0.16, 0.02, t));
  return mix(k, {0.04, 0.14, 0.05}, 0.45 * smooth(0.82, 1, t));
}

}  // namespace

double far_shore(double x) {
  return ragged(x, 63, 5, 3);
}
double near_shore(double x) {
  return ragged(x, 358, 13, 4);
}
double meadow_edge(double x) {
  return ragged(x, 394, 10, 5);
}
double bank_edge(double x) {
  return ragged(x, 690, 6, 6);
}

Colour meadow_green(double x, double y) {
  const double first = kLaneFoot - kLaneStep / 2;
  double at = (y + 5 * (fbm(x / 80, y / 30, 71, 2) - 0.4) - first) / kLaneStep;
  // A soft wave from one lane to the next, flat in the lanes' middles.
  double mown = smooth(-0.35, 0.35, std::cos(kTau / 2 * (at - 0.5)));
  double depth = clamp01((y - 392) / 300);
  Colour k = mix({0.19, 0.50, 0.14}, {0.36, 0.64, 0.15}, mown);
  k = mix(k, {0.42, 0.62, 0.16}, 0.28 * depth);
  double warm = fbm(x / 130, y / 60, 72, 3), cool = fbm(x / 90, y / 40, 73, 3);
  k = mix(k, {0.52, 0.66, 0.14}, 0.50 * smooth(0.46, 0.70, warm));
  k = mix(k, {0.08, 0.38, 0.20}, 0.50 * smooth(0.46, 0.70, cool));
  // Shade of the leaves at the sides and of the tall grass below, sun in the middle of the meadow.
  double side = std::fmin(x, kScreenWidth - x);
  k = mix(k, {0.03, 0.22, 0.14}, 0.46 * smooth(190, 10, side + 70 * (cool - 0.5)));
  double sun = smooth(640, 0, std::hypot((x - 560) * 0.8, (y - 470) * 2.2));
  return mix(k, {0.62, 0.76, 0.22}, 0.20 * sun);
}

Colour ground(double x, double y) {
  const double far_y = far_shore(x), near_y = near_shore(x);
  const double meadow_y = meadow_edge(x), bank_y = bank_edge(x);
  if (y < far_y - 8) return far_bank(x, y);
  if (y < far_y)
    return mix(dim(earth(x, y), 0.78), {0.02, 0.10, 0.08}, 0.5 * smooth(4, 0, far_y - y));
  if (y < near_y) return water(x, y, far_y, near_y);
  if (y < meadow_y) return middle_bank(x, y, near_y, meadow_y);
  Colour k = dim(meadow_green(x, y), 0.86 + 0.28 * fbm(x / 6, y / 4, 74, 2));
  k = mix(k, {0.03, 0.20, 0.08}, 0.42 * smooth(16, 0, y - meadow_y));
  return mix(k, mix({0.04, 0.20, 0.06}, {0.13, 0.34, 0.09}, fbm(x / 20, y / 14, 75, 3)),
             smooth(bank_y - 10, bank_y + 45, y));
}

}  // namespace art
