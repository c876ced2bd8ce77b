#include <SDL2/SDL.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "platform/display.h"
#include "platform/display_sdl.h"
#include "platform/key_lines.h"

namespace {

struct Window {
  SDL_Window* window = nullptr;
  bool has_gl = false;
  SDL_Cursor* cursor = nullptr;
};

constinit Window state;

void window_event(const SDL_WindowEvent& event, DisplayEvents& seen) {
  switch (event.event) {
    case SDL_WINDOWEVENT_MOVED:
    case SDL_WINDOWEVENT_RESIZED:
    case SDL_WINDOWEVENT_SIZE_CHANGED:
      seen.moved = true;
      break;
    case SDL_WINDOWEVENT_FOCUS_GAINED:
      SDL_SetCursor(state.cursor);
      SDL_ShowCursor(SDL_DISABLE);
      break;
    case SDL_WINDOWEVENT_FOCUS_LOST:
      SDL_ShowCursor(SDL_ENABLE);
      break;
    case SDL_WINDOWEVENT_CLOSE:
      seen.quit = true;
      break;
    default:
      break;
  }
}

void key_event(const SDL_KeyboardEvent& event, DisplayEvents& seen) {
  if (event.keysym.sym == SDLK_ESCAPE) {
    if (event.type == SDL_KEYDOWN) seen.quit = true;
  } else if (event.repeat == 0) {
    key_line_send(event.type == SDL_KEYDOWN, SDL_GetKeyName(event.keysym.sym));
  }
}

// SDL waits a tenth of a second for a window manager to make the window fill the display. Without
// one nobody does, and the window has the display's size already.
std::uint32_t fullscreen_flags() {
  return display_sdl_has_window_manager() ? SDL_WINDOW_FULLSCREEN_DESKTOP : SDL_WINDOW_BORDERLESS;
}

}  // namespace

SDL_Window* display_sdl_window() {
  return state.window;
}

bool display_sdl_window_has_gl() {
  return state.has_gl;
}

bool display_sdl_video() {
  if (SDL_WasInit(SDL_INIT_VIDEO) != 0 || SDL_InitSubSystem(SDL_INIT_VIDEO) == 0) return true;
  static bool told = false;
  if (!told) {
    std::fprintf(stderr, "There is no display (%s). Start the program on one, or set DISPLAY.\n",
                 SDL_GetError());
  }
  told = true;
  return false;
}

bool display_open_window(const char* title, int width, int height, bool fullscreen) {
  if (!display_sdl_video()) return false;
  // Two buffers and 16 bits of depth are the defaults.
  for (const SDL_GLattr size : {SDL_GL_RED_SIZE, SDL_GL_GREEN_SIZE, SDL_GL_BLUE_SIZE}) {
    SDL_GL_SetAttribute(size, 8);
  }
  std::uint32_t flags = SDL_WINDOW_SHOWN;
  // The primary monitor has its mode by now, and the window fills it, also where no window manager
  // would see to that.
  SDL_DisplayMode mode{};
  if (fullscreen && SDL_GetDesktopDisplayMode(0, &mode) == 0) {
    width = mode.w;
    height = mode.h;
  }
  const int corner = fullscreen ? static_cast<int>(SDL_WINDOWPOS_CENTERED_DISPLAY(0)) : 0;
  flags |= fullscreen ? fullscreen_flags() : std::uint32_t{SDL_WINDOW_RESIZABLE};
  state.window = SDL_CreateWindow(title, corner, corner, width, height, flags | SDL_WINDOW_OPENGL);
  state.has_gl = state.window != nullptr;
  // Without a pixel format there is still a window; creating the context reports the error.
  if (!state.has_gl) state.window = SDL_CreateWindow(title, corner, corner, width, height, flags);
  if (state.window == nullptr) return false;
  SDL_RaiseWindow(state.window);
  state.cursor = SDL_CreateSystemCursor(SDL_SYSTEM_CURSOR_HAND);
  SDL_SetCursor(state.cursor);
  if (fullscreen) SDL_ShowCursor(SDL_DISABLE);
  return true;
}

DisplaySize display_window_size() {
  DisplaySize size{};
  if (state.window != nullptr) SDL_GetWindowSize(state.window, &size.width, &size.height);
  return size;
}

void display_resize_window(int width, int height) {
  if (state.window != nullptr) SDL_SetWindowSize(state.window, width, height);
}

DisplayEvents display_poll_events() {
  DisplayEvents seen{};
  SDL_Event event;
  while (SDL_WasInit(SDL_INIT_VIDEO) != 0 && SDL_PollEvent(&event) != 0) {
    switch (event.type) {
      case SDL_QUIT:
        seen.quit = true;
        break;
      case SDL_WINDOWEVENT:
        window_event(event.window, seen);
        break;
      case SDL_KEYDOWN:
      case SDL_KEYUP:
        key_event(event.key, seen);
        break;
      default:
        break;
    }
  }
  return seen;
}

bool display_is_seen() {
  const char* driver = display_sdl_video() ? SDL_GetCurrentVideoDriver() : nullptr;
  if (driver == nullptr) return false;
  return SDL_strcmp(driver, "dummy") != 0 && SDL_strcmp(driver, "offscreen") != 0;
}

// A box needs somebody who can answer it. On a desk that is the owner of the session. A virtual
// screen or a cabinet's bare one has nobody, and the program would wait for ever.
bool display_can_ask() {
  if (std::getenv("CI") != nullptr || !display_is_seen()) return false;
  return std::getenv("XDG_CURRENT_DESKTOP") != nullptr || std::getenv("DESKTOP_SESSION") != nullptr;
}

bool display_message_box(const char* title, const char* text, bool yes_no) {
  std::fprintf(stderr, "%s: %s\n", title, text);
  if (!display_can_ask()) return false;
  if (!yes_no) {
    SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_WARNING, title, text, state.window);
    return false;
  }
  const SDL_MessageBoxButtonData buttons[] = {
      {SDL_MESSAGEBOX_BUTTON_RETURNKEY_DEFAULT, 1, "Yes"},
      {SDL_MESSAGEBOX_BUTTON_ESCAPEKEY_DEFAULT, 0, "No"},
  };
  const SDL_MessageBoxData box = {
      SDL_MESSAGEBOX_WARNING, state.window, title, text, 2, buttons, nullptr};
  int answer = 0;
  return SDL_ShowMessageBox(&box, &answer) == 0 && answer == 1;
}
