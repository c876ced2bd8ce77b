#include "tests/presentation/stage.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>

#include "gfx/text.h"
#include "gfx/texture.h"
#include "platform/files.h"
#include "platform/headless/display_record.h"
#include "playfield/lanes.h"
#include "playfield/playfield.h"
#include "presentation/scene.h"
#include "tests/fakes/jamma_fake.h"
#include "tests/fakes/jps_fake.h"
#include "tests/gfx/pictures.h"
#include "tests/reset_game.h"

namespace {

constexpr std::uint32_t FIRST_PICTURE = 100000;  // texture names of the pictures; fonts are below
constexpr const char* GLYPHS =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890"
    "!@#$%^&*()`~-_=+[{]}\\|;:'\",<.>/? ";

struct FontFile {
  const char* name;
  int glyph_w, glyph_h, width, height;
};
constexpr FontFile font_files[FONT_COUNT] = {
    {"font8x12.bmp", 8, 12, 128, 128},       {"zoinks11x17.tga", 11, 17, 256, 128},
    {"zoinks14x22.tga", 14, 22, 256, 256},   {"zoinks29x43.tga", 29, 43, 512, 512},
    {"zoinks58x90.tga", 58, 90, 1024, 1024}, {"zoinks78x120.tga", 78, 120, 2048, 1024},
};

std::uint32_t first_font = 0;  // texture name of font 0; the others follow

// White fonts. They are written and read once for all tests: they are 14 MB.
class Fonts {
 public:
  Fonts() {
    const PictureFolder folder;
    const auto white = [](int, int) { return 0xFFFFFFFFU; };
    for (const FontFile& font : font_files) {
      const std::string name = std::string("images/fonts/") + font.name;
      const bool bitmap = name.ends_with("bmp");
      folder.write(name, bitmap ? bmp_bytes(font.width, font.height, white)
                                : tga_bytes(font.width, font.height, white));
    }
    first_font = headless_display.textures + 1;
    text_fonts_load();
  }
  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;
  ~Fonts() { text_fonts_free(); }
};

std::string stem(const char* name) {
  const char* slash = std::strrchr(name, '\\');
  const std::string file = slash != nullptr ? slash + 1 : name;
  return file.substr(0, file.find('.'));
}

bool is_glyph(const DisplayQuad& quad) {
  return quad.texture >= first_font && quad.texture < first_font + FONT_COUNT;
}

char character(const DisplayQuad& quad) {
  const FontFile& font = font_files[quad.texture - first_font];
  const auto column = std::lround(std::min(quad.u[0], quad.u[1]) * font.width) / font.glyph_w;
  const auto row = std::lround(quad.v[0] * font.height) / font.glyph_h;
  return GLYPHS[row * 16 + column];
}

// Which cell of its sheet a picture is; of another picture, where in its file it begins.
int cell(const DisplayQuad& quad) {
  const auto sheet = static_cast<int>(quad.texture - FIRST_PICTURE) - PANEL_FIRST_SHEET;
  const auto x = std::lround(std::min(quad.u[0], quad.u[1]) * 4096.0F);
  const auto y = std::lround(quad.v[0] * 4096.0F);
  if (sheet < 0 || sheet >= SHEET_COUNT) return static_cast<int>(x + y);
  const int columns = sheets[sheet].columns;
  return static_cast<int>(y / (4096 / sheets[sheet].rows) * columns + x / (4096 / columns));
}

// Of a picture. Glyphs are rounded to whole pixels, so a line has none.
float scale(const DisplayQuad& quad) {
  if (quad.texture < FIRST_PICTURE) return 1.0F;
  const auto sheet = static_cast<int>(quad.texture - FIRST_PICTURE) - PANEL_FIRST_SHEET;
  const int columns = sheet < 0 || sheet >= SHEET_COUNT ? 16 : sheets[sheet].columns;
  return (quad.x[1] - quad.x[0]) * static_cast<float>(columns) / 4096.0F;
}

// Does the glyph go on a line that ends with `last`?
bool continues(const DisplayQuad& last, const DisplayQuad& quad) {
  return last.texture == quad.texture && last.y[0] == quad.y[0] && quad.x[0] > last.x[0] &&
         quad.x[0] <= last.x[1] + 1 && last.colour[0] == quad.colour[0];
}

}  // namespace

Stage::Stage() {
  static const Fonts fonts;
  files_use_roots(drive.path(), drive.path());
  panel_table_load();  // finds no files, but gives each its name
  for (int i = 0; i < PANEL_COUNT; ++i) {
    GlTexture& texture = *panels[i].texture;
    texture.id = FIRST_PICTURE + i;
    texture.width = texture.height = 4096;
    panels[i].width = panels[i].height = i < PANEL_FIRST_SHEET ? 256 : 4096;
  }
  jamma_fake_reset();
  jps_fake_reset();
  sheet_table_fill();
  reset_game(100000);
  butterfly.state = BUTTERFLY_PARKED;
}

Stage::~Stage() {
  panel_table_free();
  lanes_free();
}

std::vector<Drawn> Stage::seen(void (*draw)()) {
  headless_display.recorded.clear();
  headless_display.record = true;
  draw();
  headless_display.record = false;
  std::vector<Drawn> drawn;
  const DisplayQuad* last = nullptr;
  for (const DisplayQuad& quad : headless_display.recorded) {
    const bool glyph = is_glyph(quad);
    if (glyph && last != nullptr && continues(*last, quad)) {
      drawn.back().what += character(quad);
    } else {
      const bool picture = quad.texture >= FIRST_PICTURE;
      drawn.push_back({glyph     ? std::string(1, character(quad))
                       : picture ? stem(panels[quad.texture - FIRST_PICTURE].name)
                                 : "rectangle",
                       static_cast<int>(quad.x[0]), static_cast<int>(quad.y[0]), quad.colour[0],
                       static_cast<int>(quad.x[1] - quad.x[0]), quad.u[0] > quad.u[1],
                       picture ? cell(quad) : 0, (quad.x[0] + quad.x[2]) / 2.0F,
                       (quad.y[0] + quad.y[2]) / 2.0F,
                       std::atan2(quad.y[0] - quad.y[1], quad.x[1] - quad.x[0]) * 180.0F /
                           std::numbers::pi_v<float>,
                       static_cast<int>(quad.y[2] - quad.y[0]), quad.colour[2], scale(quad)});
    }
    last = glyph ? &quad : nullptr;
  }
  return drawn;
}

std::string places(const std::vector<Drawn>& drawn, const std::string& what) {
  std::string text;
  for (const Drawn& d : drawn) {
    if (d.what != what) continue;
    if (!text.empty()) text += ' ';
    text += std::to_string(d.x) + "," + std::to_string(d.y);
  }
  return text;
}

Drawn first(const std::vector<Drawn>& drawn, const std::string& what) {
  for (const Drawn& d : drawn) {
    if (d.what == what) return d;
  }
  ADD_FAILURE() << what << " isn't drawn";
  return {};
}

bool has(const std::vector<Drawn>& drawn, const std::string& what) {
  return !places(drawn, what).empty();
}
