// The window and what can be drawn in it. All calls belong to the main thread.
#pragma once

#include <cstdint>
#include <string>

// --- window ---------------------------------------------------------------------------------

struct DisplaySize {
  int width;
  int height;
};

enum DisplayModeResult {  // the outcomes of a change of the display mode
  DISPLAY_MODE_OK = 0,
  DISPLAY_MODE_FAILED = -1,
  DISPLAY_MODE_BAD_MODE = -2,
  DISPLAY_MODE_BAD_FLAGS = -4,
  DISPLAY_MODE_BAD_PARAM = -5,
};

// Asks the display for a mode of this size and answers what it did: DISPLAY_MODE_BAD_MODE if it has
// no such mode, DISPLAY_MODE_FAILED if it has one and refuses it; the old mode then stays in force.
// Before the window is opened. A display that can't change its mode has the one it shows.
DisplayModeResult display_set_mode(int width, int height);

// Puts back the mode that the first change found. The end of the process does it too, but for
// std::_Exit and signals.
void display_restore_mode();

// Makes the one window. `fullscreen`: it has no frame and fills the display, whatever the size of
// that. False if there can be none.
bool display_open_window(const char* title, int width, int height, bool fullscreen);

DisplaySize display_window_size();
// Not with `fullscreen`: the window keeps its size then.
void display_resize_window(int width, int height);

struct DisplayEvents {
  bool quit;   // the window was closed, or Esc typed
  bool moved;  // moved or resized since the last look
};

// Takes all waiting events. Keys apart from Esc go to the socket of LILYHOP_KEYS, a line each:
// "press NAME" and "release NAME", with the key's SDL name.
DisplayEvents display_poll_events();

// Shows a box and waits for the answer; without a display it is a line on standard error and the
// answer is No. `yes_no`: true for Yes.
bool display_message_box(const char* title, const char* text, bool yes_no);

// --- context and frame ----------------------------------------------------------------------

// Makes a GL 1.1 context on the window, current on the calling thread. False with the reason in
// `error`.
bool display_create_context(std::string& error);

// Maps layout coordinates, `left`, `top` to `width`, `height`, y downward, onto the whole window.
void display_set_projection(int left, int top, int width, int height);

// Opens a frame: viewport over the window, cleared with `colour` (0xAARRGGBB). Returns how many
// GL errors it met.
int display_begin_frame(std::uint32_t colour);

// Shows the frame.
void display_end_frame();

// Waits until all that was drawn is on the screen, for measurements.
void display_wait_drawn();

// --- textures -------------------------------------------------------------------------------

enum PixelFormat { PIXELS_RGB, PIXELS_RGBA, PIXELS_BGRA };

// Makes a texture of `width` by `height` pixels, first row on top, nearest filtering. Returns its
// name, or 0.
std::uint32_t display_texture_create(int width, int height, PixelFormat format, const void* pixels);

// Loads a PNG file by its host path as a compressed texture. Returns its name, or 0.
std::uint32_t display_texture_load_png(const char* path, int* width, int* height);

// Reads the alpha of a texture back, a byte for each pixel, first row on top. 0 and 255 are exact;
// of a compressed texture any other value says no more than that it is neither. False if it can't
// be done.
bool display_texture_read_alpha(std::uint32_t texture, std::uint8_t* alpha);

// --- drawing --------------------------------------------------------------------------------

struct DisplayBox {  // layout pixels; no width: nothing
  int x, y, width, height;
};

// One textured or plain quad. Corners in the order top left, top right, bottom right, bottom left,
// in layout pixels, y downward.
struct DisplayQuad {
  std::uint32_t texture;  // 0: plain
  float x[4], y[4];
  float u[4], v[4];         // texture coordinates, not used when plain
  std::uint32_t colour[4];  // 0xAARRGGBB at each corner
  bool opaque;              // every pixel has alpha 255: it is drawn without blending
  bool clipped;             // only window pixels that `clip` touches are drawn
  DisplayBox clip;
};

// True if a layout pixel is a window pixel.
bool display_is_unscaled();

void display_draw_quad(const DisplayQuad& quad);

// Reads the finished frame back, before `display_end_frame`, as RGB rows from the top, window size.
bool display_read_frame(std::uint8_t* rgb);
