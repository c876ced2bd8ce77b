// Changes the mode of an X display through its RANDR extension. SDL can change modes too, but it
// switches off the old mode before it asks for the new one. If that is refused, it can't get the
// screen back.
#include <SDL2/SDL.h>
#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/display.h"
#include "platform/display_sdl.h"
#include "platform/owned_reply.h"

namespace {

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

struct Display {
  std::unique_ptr<xcb_connection_t, Disconnect> x;  // null: no X display, or one without modes
  xcb_screen_t* screen = nullptr;                   // valid as long as the connection
  xcb_randr_crtc_t crtc = XCB_NONE;                 // drives the monitor that shows the game
  std::vector<xcb_randr_mode_t> modes;              // of the monitor, the best first
};

struct Mode {
  xcb_randr_mode_t id = XCB_NONE;
  int width = 0, height = 0;
};

struct Found {  // the display before its first change
  xcb_randr_crtc_t crtc;
  Mode mode;
  DisplaySize screen;  // all monitors together
};

constinit Found found{};

// The window's library uses an X display unless it is told otherwise.
bool display_is_x() {
  const char* driver = std::getenv("SDL_VIDEODRIVER");
  return driver == nullptr || *driver == '\0' || SDL_strcmp(driver, "x11") == 0;
}

auto resources_of(const Display& display) {
  xcb_connection_t* x = display.x.get();
  return owned(xcb_randr_get_screen_resources_current_reply(
      x, xcb_randr_get_screen_resources_current(x, display.screen->root), nullptr));
}

auto crtc_info(const Display& display, xcb_randr_crtc_t crtc) {
  xcb_connection_t* x = display.x.get();
  return owned(xcb_randr_get_crtc_info_reply(x, xcb_randr_get_crtc_info(x, crtc, XCB_CURRENT_TIME),
                                             nullptr));
}

// Uses the monitor at `output` for the game. False if there is none, or it is off.
bool take_output(Display& display, xcb_randr_output_t output) {
  if (output == XCB_NONE) return false;
  xcb_connection_t* x = display.x.get();
  const auto info = owned(xcb_randr_get_output_info_reply(
      x, xcb_randr_get_output_info(x, output, XCB_CURRENT_TIME), nullptr));
  if (!info || info->crtc == XCB_NONE || info->connection == XCB_RANDR_CONNECTION_DISCONNECTED) {
    return false;
  }
  const auto crtc = crtc_info(display, info->crtc);
  if (!crtc || crtc->mode == XCB_NONE) return false;
  display.crtc = info->crtc;
  const xcb_randr_mode_t* modes = xcb_randr_get_output_info_modes(info.get());
  display.modes.assign(modes, modes + info->num_modes);
  return true;
}

// The window opens on the primary monitor; without a primary one, on the first that is on.
bool take_monitor(Display& display) {
  xcb_connection_t* x = display.x.get();
  const auto primary = owned(xcb_randr_get_output_primary_reply(
      x, xcb_randr_get_output_primary(x, display.screen->root), nullptr));
  if (primary && take_output(display, primary->output)) return true;
  const auto resources = resources_of(display);
  if (!resources) return false;
  const xcb_randr_output_t* outputs =
      xcb_randr_get_screen_resources_current_outputs(resources.get());
  return std::any_of(outputs, outputs + resources->num_outputs,
                     [&display](auto output) { return take_output(display, output); });
}

Display open_display() {
  Display display;
  if (!display_is_x()) return display;
  int number = 0;
  display.x.reset(xcb_connect(nullptr, &number));
  xcb_connection_t* x = display.x.get();
  bool usable = xcb_connection_has_error(x) == 0;
  if (usable) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(x));
    while (number-- > 0 && screens.rem > 1) xcb_screen_next(&screens);
    display.screen = screens.data;
    const auto* extension = xcb_get_extension_data(x, &xcb_randr_id);
    usable = extension != nullptr && extension->present != 0;
  }
  if (usable) {
    const auto version = owned(xcb_randr_query_version_reply(
        x, xcb_randr_query_version(x, 1, 3), nullptr));  // since 1.3 there is a primary monitor
    usable = version && (version->major_version > 1 || version->minor_version >= 3) &&
             take_monitor(display);
  }
  if (!usable) display.x.reset();
  return display;
}

Mode mode_now(const Display& display) {
  const auto crtc = crtc_info(display, display.crtc);
  return crtc ? Mode{crtc->mode, crtc->width, crtc->height} : Mode{};
}

DisplaySize screen_size(const Display& display) {
  xcb_connection_t* x = display.x.get();
  const auto root =
      owned(xcb_get_geometry_reply(x, xcb_get_geometry(x, display.screen->root), nullptr));
  return root ? DisplaySize{root->width, root->height} : DisplaySize{};
}

// The bottom right corner of the area that monitors show.
DisplaySize monitors_end(const Display& display) {
  DisplaySize end{1, 1};
  const auto resources = resources_of(display);
  if (!resources) return end;
  const xcb_randr_crtc_t* crtcs = xcb_randr_get_screen_resources_current_crtcs(resources.get());
  for (int i = 0; i < resources->num_crtcs; ++i) {
    const auto crtc = crtc_info(display, crtcs[i]);
    if (!crtc || crtc->mode == XCB_NONE) continue;
    end.width = std::max(end.width, crtc->x + crtc->width);
    end.height = std::max(end.height, crtc->y + crtc->height);
  }
  return end;
}

// The reply is no proof, because some displays refuse and work all the same. What the display then
// accepts shows whether it is done.
void screen_resize(const Display& display, DisplaySize size) {
  const DisplaySize old = screen_size(display);
  if ((old.width == size.width && old.height == size.height) || old.width == 0) return;
  const xcb_screen_t& screen = *display.screen;  // with the size at the start
  const int width_mm = size.width * screen.width_in_millimeters / screen.width_in_pixels;
  const int height_mm = size.height * screen.height_in_millimeters / screen.height_in_pixels;
  xcb_connection_t* x = display.x.get();
  owned(xcb_request_check(
      x, xcb_randr_set_screen_size_checked(x, screen.root, static_cast<std::uint16_t>(size.width),
                                           static_cast<std::uint16_t>(size.height),
                                           static_cast<std::uint32_t>(width_mm),
                                           static_cast<std::uint32_t>(height_mm))));
}

// The screen first grows to hold both old and new mode, and shrinks when the monitor shows the new
// one. So the monitor has a mode at each step, and after a refusal it still has the old one.
bool mode_set(const Display& display, const Mode& mode) {
  const auto crtc = crtc_info(display, display.crtc);
  const auto resources = resources_of(display);
  if (!crtc || !resources) return false;
  const DisplaySize old = screen_size(display);
  screen_resize(display, {std::max(old.width, crtc->x + mode.width),
                          std::max(old.height, crtc->y + mode.height)});
  xcb_connection_t* x = display.x.get();
  const auto reply = owned(xcb_randr_set_crtc_config_reply(
      x,
      xcb_randr_set_crtc_config(x, display.crtc, XCB_CURRENT_TIME, resources->config_timestamp,
                                crtc->x, crtc->y, mode.id, crtc->rotation, crtc->num_outputs,
                                xcb_randr_get_crtc_info_outputs(crtc.get())),
      nullptr));
  const bool taken =
      reply && reply->status == XCB_RANDR_SET_CONFIG_SUCCESS && mode_now(display).id == mode.id;
  screen_resize(display, taken ? monitors_end(display) : old);
  return taken;
}

// The display's modes of this size, the best first.
std::vector<Mode> modes_of(const Display& display, int width, int height) {
  std::vector<Mode> fitting;
  const auto resources = resources_of(display);
  if (!resources) return fitting;
  const xcb_randr_mode_info_t* infos =
      xcb_randr_get_screen_resources_current_modes(resources.get());
  for (const xcb_randr_mode_t id : display.modes) {
    const auto* end = infos + resources->num_modes;
    const auto* info = std::find_if(infos, end, [id](const auto& i) { return i.id == id; });
    if (info == end || info->width != width || info->height != height) continue;
    fitting.push_back({id, width, height});
  }
  return fitting;
}

DisplayModeResult mode_change(const Display& display, int width, int height) {
  const Mode now = mode_now(display);
  if (now.width == width && now.height == height) return DISPLAY_MODE_OK;
  const std::vector<Mode> modes = modes_of(display, width, height);
  const DisplaySize screen = screen_size(display);
  for (const Mode& mode : modes) {
    if (!mode_set(display, mode)) continue;
    if (found.mode.id == XCB_NONE) {
      found = {display.crtc, now, screen};
      std::atexit(display_restore_mode);
    }
    return DISPLAY_MODE_OK;
  }
  std::fprintf(stderr, "A screen of %d x %d was asked for; the display %s and stays at %d x %d.\n",
               width, height, modes.empty() ? "has no such mode" : "refused it", now.width,
               now.height);
  return modes.empty() ? DISPLAY_MODE_BAD_MODE : DISPLAY_MODE_FAILED;
}

}  // namespace

DisplayModeResult display_set_mode(int width, int height) {
  if (width <= 0 || height <= 0) return DISPLAY_MODE_BAD_PARAM;
  if (const Display display = open_display(); display.x) return mode_change(display, width, height);
  SDL_DisplayMode only{};
  if (!display_sdl_video() || SDL_GetDesktopDisplayMode(0, &only) != 0) return DISPLAY_MODE_FAILED;
  if (only.w == width && only.h == height) return DISPLAY_MODE_OK;
  std::fprintf(stderr, "A screen of %d x %d was asked for; the display (%s) only has %d x %d.\n",
               width, height, SDL_GetCurrentVideoDriver(), only.w, only.h);
  return DISPLAY_MODE_BAD_MODE;
}

// A window manager puts the number of a window of its own on the root.
bool display_sdl_has_window_manager() {
  constexpr std::string_view MARK = "_NET_SUPPORTING_WM_CHECK";
  const Display display = open_display();
  if (!display.x) return true;
  xcb_connection_t* x = display.x.get();
  const auto mark = owned(xcb_intern_atom_reply(
      x, xcb_intern_atom(x, 1, std::uint16_t{MARK.size()}, MARK.data()), nullptr));
  if (!mark || mark->atom == XCB_NONE) return false;
  const auto window = owned(xcb_get_property_reply(
      x, xcb_get_property(x, 0, display.screen->root, mark->atom, XCB_ATOM_WINDOW, 0, 1), nullptr));
  return window && xcb_get_property_value_length(window.get()) > 0;
}

void display_restore_mode() {
  if (found.mode.id == XCB_NONE) return;
  Display display = open_display();
  display.crtc = found.crtc;  // another monitor may be primary by now
  if (display.x && mode_set(display, found.mode)) screen_resize(display, found.screen);
  found.mode = {};
}
