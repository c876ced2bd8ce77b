// The window and what can be drawn in it. All calls belong to the main thread.
#pragma once

#include <cstdint>
#include <string>

// --- window ---------------------------------------------------------------------------------

struct DisplaySize {
  int width;
  int height;
};

enum DisplayModeResult {  // results of a change of the display mode
  DISPLAY_MODE_OK = 0,
  DISPLAY_MODE_FAILED = -1,
  DISPLAY_MODE_BAD_MODE = -2,
  DISPLAY_MODE_BAD_FLAGS = -4,
  DISPLAY_MODE_BAD_PARAM = -5,
};

// Asks the display for a mode of this size and returns the result: DISPLAY_MODE_BAD_MODE if it has
// no such mode, DISPLAY_MODE_FAILED if it has one but refuses it; then the old mode stays. Call
// before the window is opened. The only mode of a display that can't change modes is the current
// one.
DisplayModeResult display_set_mode(int width, int height);

// Restores the mode that the first change found. The end of the process does it too, except after
// std::_Exit and signals.
void display_restore_mode();

// Makes the one window. `fullscreen`: it has no frame and fills the display, whatever its size.
// False if there can be no window.
bool display_open_window(const char* title, int width, int height, bool fullscreen);

DisplaySize display_window_size();
// Not for `fullscreen`: that window keeps its size.
void display_resize_window(int width, int height);

struct DisplayEvents {
  bool quit;   // the window was closed, or Esc typed
  bool moved;  // moved or resized since the last call
};

// Takes all waiting events. Keys except Esc go to the socket of LILYHOP_KEYS, one line each: "press
// NAME" and "release NAME", with the key's SDL name.
DisplayEvents display_poll_events();

// When the display is lost, `end` is called in the middle of a call to the display, and must make
// none itself; then the process ends with code 1. Only for X: where another display is lost, the
// window is closed.
void display_when_lost(void (*end)());

// True if what is drawn can be seen somewhere: there is a display, and it isn't one in memory
// alone.
bool display_is_seen();

// True if somebody may be there to answer a box: on a desk, not at a cabinet's bare screen.
bool display_can_ask();

// Shows a box and waits for the answer. Without a display it prints a line on standard error, and
// the answer is No. `yes_no`: true for Yes.
bool display_message_box(const char* title, const char* text, bool yes_no);

// --- context and frame ----------------------------------------------------------------------

// Makes a GL 1.1 context on the window, current on the calling thread. False on failure, with the
// reason in `error`.
bool display_create_context(std::string& error);

// Maps layout coordinates, `left`, `top` to `width`, `height`, y downward, to the whole window.
void display_set_projection(int left, int top, int width, int height);

// Begins a frame: sets the viewport to the window and clears it with `colour` (0xAARRGGBB). Returns
// the number of GL errors found.
int display_begin_frame(std::uint32_t colour);

// Shows the frame.
void display_end_frame();

// Waits until everything is drawn on the screen; for measurements.
void display_wait_drawn();

// --- textures -------------------------------------------------------------------------------

enum PixelFormat { PIXELS_RGB, PIXELS_RGBA, PIXELS_BGRA };

// Makes a texture of `width` by `height` pixels, top row first, with nearest filtering. Returns its
// name, or 0.
std::uint32_t display_texture_create(int width, int height, PixelFormat format, const void* pixels);

// Loads a PNG file by its host path as a compressed texture. Returns its name, or 0.
std::uint32_t display_texture_load_png(const char* path, int* width, int* height);

// Reads the alpha of a texture back, one byte for each pixel, top row first. 0 and 255 are exact;
// for a compressed texture, any other value only means that it is neither. False if that can't be
// done.
bool display_texture_read_alpha(std::uint32_t texture, std::uint8_t* alpha);

// --- drawing --------------------------------------------------------------------------------

struct DisplayBox {  // layout pixels; width 0: nothing
  int x, y, width, height;
};

// One textured or plain quad. Corners in the order top left, top right, bottom right, bottom left,
// in layout pixels, y downward.
struct DisplayQuad {
  std::uint32_t texture;  // 0: plain
  float x[4], y[4];
  float u[4], v[4];         // texture coordinates, not used when plain
  std::uint32_t colour[4];  // 0xAARRGGBB at each corner
  bool opaque;              // every pixel has alpha 255, so it is drawn without blending
  bool clipped;             // only window pixels that `clip` touches are drawn
  DisplayBox clip;
};

// True if layout pixels and window pixels are the same size.
bool display_is_unscaled();

void display_draw_quad(const DisplayQuad& quad);

// Reads the finished frame back, before `display_end_frame`, as RGB rows from the top, in window
// size.
bool display_read_frame(std::uint8_t* rgb);
