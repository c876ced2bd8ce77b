#include <SDL2/SDL_opengl.h>
#include <SOIL/SOIL.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>

#include "platform/display.h"
#include "platform/display_sdl.h"
#include "platform/dxt_alpha.h"
#include "platform/thread.h"

namespace {

struct Pixels {  // window pixels, x and y from the bottom left, far ends excluded
  int left, bottom, right, top;
};

struct Gl {
  SDL_GLContext context;
  int left, top, right, bottom;  // visible layout, y downward
  DisplaySize window;
  GLuint texture;                     // bound
  bool textured, blended, scissored;  // GL_TEXTURE_2D, GL_BLEND and GL_SCISSOR_TEST are on
};

constinit Gl gl{};

constexpr float BYTE = 255.0F;

float byte_of(std::uint32_t colour, int shift) {
  return static_cast<float>(colour >> shift & 0xFF) / BYTE;
}

// Removes errors of earlier calls, which say nothing about the next one.
void errors_forget() {
  constexpr int MOST = 16;  // a lost context reports errors without end
  for (int i = 0; i < MOST && glGetError() != GL_NO_ERROR; ++i) {
  }
}

void switch_to(bool& is_on, bool on, GLenum capability) {
  if (is_on == on) return;
  is_on = on;
  if (on) {
    glEnable(capability);
  } else {
    glDisable(capability);
  }
}

void state_set() {
  switch_to(gl.textured, true, GL_TEXTURE_2D);
  glShadeModel(GL_SMOOTH);
  glClearColor(0.0F, 0.0F, 0.0F, 0.3F);
  glClearDepth(1.0);
  glDepthFunc(GL_LEQUAL);
  glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_FASTEST);
  glColor4f(1.0F, 1.0F, 1.0F, 1.0F);
  switch_to(gl.blended, true, GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glAlphaFunc(GL_GREATER, 0.1F);
  glDrawBuffer(GL_BACK);
}

int floor_div(std::int64_t a, std::int64_t b) {
  return static_cast<int>(a >= 0 ? a / b : -((-a + b - 1) / b));
}
int ceil_div(std::int64_t a, std::int64_t b) {
  return -floor_div(-a, b);
}

// All window pixels that a box of the layout touches.
Pixels box_pixels(const DisplayBox& box) {
  const std::int64_t w = gl.window.width;
  const std::int64_t h = gl.window.height;
  const std::int64_t layout_w = gl.right - gl.left;
  const std::int64_t layout_h = gl.bottom - gl.top;
  const std::int64_t x = box.x - gl.left;
  const std::int64_t y = gl.bottom - box.y - box.height;
  const int across = gl.window.width;
  const int up = gl.window.height;
  return {std::clamp(floor_div(x * w, layout_w), 0, across),
          std::clamp(floor_div(y * h, layout_h), 0, up),
          std::clamp(ceil_div((x + box.width) * w, layout_w), 0, across),
          std::clamp(ceil_div((y + box.height) * h, layout_h), 0, up)};
}

// Drawn as two triangles. How GL splits a quad may depend on what else is drawn, and where a pixel
// is exactly between two texels, the seam decides. A picture would change by a texel here and
// there.
void quad_emit(const DisplayQuad& quad) {
  constexpr int CORNERS[] = {0, 1, 2, 0, 2, 3};
  const bool one_colour = quad.colour[0] == quad.colour[1] && quad.colour[0] == quad.colour[2] &&
                          quad.colour[0] == quad.colour[3];
  bool coloured = false;
  glBegin(GL_TRIANGLES);
  for (const int i : CORNERS) {
    if (!coloured) {
      const std::uint32_t c = quad.colour[i];
      glColor4f(byte_of(c, 16), byte_of(c, 8), byte_of(c, 0), byte_of(c, 24));
      coloured = one_colour;
    }
    if (quad.texture != 0) glTexCoord2f(quad.u[i], quad.v[i]);
    glVertex2f(quad.x[i], -quad.y[i]);
  }
  glEnd();
}

void texture_bind(GLuint texture) {
  if (gl.texture == texture) return;
  gl.texture = texture;
  glBindTexture(GL_TEXTURE_2D, texture);
}

void filters_set() {
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
}

GLint level_value(GLenum what) {
  GLint value = 0;
  glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, what, &value);
  return value;
}

// Takes the bound texture's blocks undecoded: decoding all of it takes GL ten times as long.
bool dxt5_read(std::uint8_t* alpha) {
  const int width = level_value(GL_TEXTURE_WIDTH);
  const int height = level_value(GL_TEXTURE_HEIGHT);
  if (level_value(GL_TEXTURE_INTERNAL_FORMAT) != GL_COMPRESSED_RGBA_S3TC_DXT5_EXT) return false;
  if (width % 4 != 0 || height % 4 != 0) return false;
  const auto read = reinterpret_cast<PFNGLGETCOMPRESSEDTEXIMAGEPROC>(
      SDL_GL_GetProcAddress("glGetCompressedTexImage"));
  const std::size_t size = static_cast<std::size_t>(width) * height;
  const std::unique_ptr<std::uint8_t[]> blocks(new (std::nothrow) std::uint8_t[size]);
  if (read == nullptr || blocks == nullptr) return false;
  errors_forget();
  read(GL_TEXTURE_2D, 0, blocks.get());
  if (glGetError() != GL_NO_ERROR) return false;
  dxt5_alpha(width, height, blocks.get(), alpha);
  return true;
}

}  // namespace

bool display_create_context(std::string& error) {
  SDL_Window* window = display_sdl_window();
  if (window == nullptr) {
    error = "Can't Create A GL Device Context.";
    return false;
  }
  if (!display_sdl_window_has_gl()) {
    error = "Can't Find A Suitable PixelFormat.";
    return false;
  }
  // A software renderer starts its workers here; they inherit this thread's processors.
  thread_unpin();
  gl = Gl{};
  gl.context = SDL_GL_CreateContext(window);
  const bool current = gl.context != nullptr && SDL_GL_MakeCurrent(window, gl.context) == 0;
  thread_pin_to_one_processor();
  if (!current) {
    error = gl.context == nullptr ? "Can't Create A GL Rendering Context."
                                  : "Can't Activate The GL Rendering Context.";
    gl.context = nullptr;
    return false;
  }
  SDL_GL_SetSwapInterval(0);
  SDL_ShowWindow(window);
  SDL_RaiseWindow(window);
  state_set();
  return true;
}

void display_set_projection(int left, int top, int width, int height) {
  if (gl.context == nullptr) return;
  gl.left = left;
  gl.top = top;
  gl.right = width;
  gl.bottom = height;
  gl.window = display_window_size();
  glViewport(0, 0, gl.window.width, gl.window.height);
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  glOrtho(left, width, -height, -top, -1.0, 1.0);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
}

int display_begin_frame(std::uint32_t colour) {
  if (gl.context == nullptr) return 0;
  int errors = 0;
  const auto look = [&errors] {
    if (glGetError() != GL_NO_ERROR) ++errors;
  };
  glDrawBuffer(GL_BACK);
  look();
  gl.window = display_window_size();
  glViewport(0, 0, gl.window.width, gl.window.height);
  look();
  switch_to(gl.scissored, false, GL_SCISSOR_TEST);
  glClearColor(byte_of(colour, 16), byte_of(colour, 8), byte_of(colour, 0), byte_of(colour, 24));
  look();
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  look();
  glLoadIdentity();
  look();
  return errors;
}

void display_end_frame() {
  if (gl.context != nullptr) SDL_GL_SwapWindow(display_sdl_window());
}

void display_wait_drawn() {
  if (gl.context != nullptr) glFinish();
}

std::uint32_t display_texture_create(int width, int height, PixelFormat format,
                                     const void* pixels) {
  if (gl.context == nullptr) return 0;
  GLuint name = 0;
  glGenTextures(1, &name);
  texture_bind(name);
  const GLint components = format == PIXELS_RGB ? 3 : 4;
  const GLenum order = format == PIXELS_RGB ? GL_RGB : format == PIXELS_RGBA ? GL_RGBA : GL_BGRA;
  glTexImage2D(GL_TEXTURE_2D, 0, components, width, height, 0, order, GL_UNSIGNED_BYTE, pixels);
  filters_set();
  return name;
}

std::uint32_t display_texture_load_png(const char* path, int* width, int* height) {
  *width = *height = 0;
  if (gl.context == nullptr) return 0;
  const GLuint name =
      SOIL_load_OGL_texture(path, SOIL_LOAD_RGBA, SOIL_CREATE_NEW_ID, SOIL_FLAG_COMPRESS_TO_DXT);
  gl.texture = 0;  // SOIL may have bound a texture
  glBindTexture(GL_TEXTURE_2D, name);
  gl.texture = name;
  if (name == 0) return 0;
  glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, width);
  glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, height);
  filters_set();
  return name;
}

bool display_texture_read_alpha(std::uint32_t texture, std::uint8_t* alpha) {
  if (gl.context == nullptr) return false;
  texture_bind(texture);
  if (dxt5_read(alpha)) return true;
  errors_forget();
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glGetTexImage(GL_TEXTURE_2D, 0, GL_ALPHA, GL_UNSIGNED_BYTE, alpha);
  return glGetError() == GL_NO_ERROR;
}

void display_draw_quad(const DisplayQuad& quad) {
  if (gl.context == nullptr) return;
  switch_to(gl.textured, quad.texture != 0, GL_TEXTURE_2D);
  if (quad.texture != 0) texture_bind(quad.texture);
  switch_to(gl.blended, !quad.opaque, GL_BLEND);
  switch_to(gl.scissored, quad.clipped, GL_SCISSOR_TEST);
  if (quad.clipped) {
    const Pixels clip = box_pixels(quad.clip);
    glScissor(clip.left, clip.bottom, clip.right - clip.left, clip.top - clip.bottom);
  }
  quad_emit(quad);
}

bool display_is_unscaled() {
  return gl.window.width == gl.right - gl.left && gl.window.height == gl.bottom - gl.top;
}

bool display_read_frame(std::uint8_t* rgb) {
  if (gl.context == nullptr) return false;
  const int width = gl.window.width;
  const int height = gl.window.height;
  const std::size_t row = static_cast<std::size_t>(width) * 3;
  errors_forget();
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadBuffer(GL_BACK);
  glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, rgb);
  for (int y = 0; y < height / 2; ++y) {  // GL's first row is the lowest
    std::swap_ranges(rgb + y * row, rgb + (y + 1) * row, rgb + (height - 1 - y) * row);
  }
  return glGetError() == GL_NO_ERROR;
}
