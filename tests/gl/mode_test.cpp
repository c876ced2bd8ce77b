// The mode of the display and the window in it, on X servers that have one mode or another.
#include <SDL.h>
#include <SDL_opengl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/display.h"
#include "platform/owned_reply.h"
#include "tests/gl/own_screen.h"
#include "tests/gl/x_server.h"

namespace {

constexpr std::uint32_t CLEARED = 0x004020;  // the clear colour of a frame
constexpr const char* DRIVER = "SDL_VIDEODRIVER";

// A server's one monitor, seen and changed from outside the game.
class Monitor {
 public:
  explicit Monitor(DisplaySize size) : server(size) {
    setenv("DISPLAY", server.name().c_str(), 1);
    x = xcb_connect(server.name().c_str(), nullptr);
    root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    const auto resources = owned(xcb_randr_get_screen_resources_current_reply(
        x, xcb_randr_get_screen_resources_current(x, root), nullptr));
    constexpr std::uint32_t HEARD = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(x, root, XCB_CW_EVENT_MASK, &HEARD);
    crtc = *xcb_randr_get_screen_resources_current_crtcs(resources.get());
    output = *xcb_randr_get_screen_resources_current_outputs(resources.get());
  }
  ~Monitor() { xcb_disconnect(x); }
  Monitor(const Monitor&) = delete;
  Monitor& operator=(const Monitor&) = delete;

  xcb_randr_mode_t add(DisplaySize size) const {
    const std::string name = std::to_string(size.width) + "x" + std::to_string(size.height);
    xcb_randr_mode_info_t info{};
    info.width = static_cast<std::uint16_t>(size.width);
    info.height = static_cast<std::uint16_t>(size.height);
    info.name_len = static_cast<std::uint16_t>(name.size());
    const auto reply = owned(xcb_randr_create_mode_reply(
        x, xcb_randr_create_mode(x, root, info, info.name_len, name.c_str()), nullptr));
    const auto error =
        owned(xcb_request_check(x, xcb_randr_add_output_mode_checked(x, output, reply->mode)));
    EXPECT_EQ(error, nullptr) << name;
    return reply->mode;
  }

  void show(xcb_randr_mode_t mode, int at_x) const {
    const auto reply = owned(xcb_randr_set_crtc_config_reply(
        x,
        xcb_randr_set_crtc_config(x, crtc, 0, 0, static_cast<std::int16_t>(at_x), 0, mode,
                                  XCB_RANDR_ROTATION_ROTATE_0, 1, &output),
        nullptr));
    ASSERT_TRUE(reply);
    ASSERT_EQ(reply->status, 0);
  }

  // Takes the focus, as another program does.
  void take_focus() const {
    xcb_set_input_focus(x, XCB_INPUT_FOCUS_NONE, root, XCB_CURRENT_TIME);
    xcb_flush(x);
  }

  // Leaves the mark of a window manager, without one.
  void mark_managed() const {
    const xcb_atom_t mark = atom("_NET_SUPPORTING_WM_CHECK");
    const xcb_window_t window = xcb_generate_id(x);
    xcb_create_window(x, 0, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0,
                      nullptr);
    for (const xcb_window_t place : {root, window}) {
      xcb_change_property(x, XCB_PROP_MODE_REPLACE, place, mark, XCB_ATOM_WINDOW, 32, 1, &window);
    }
    xcb_flush(x);
  }

  // True if a window has asked a window manager to fill the display since the last call.
  [[nodiscard]] bool fullscreen_asked() const {
    const xcb_atom_t state = atom("_NET_WM_STATE");
    const xcb_atom_t wanted = atom("_NET_WM_STATE_FULLSCREEN");
    bool asked = false;
    while (const auto event = owned(xcb_poll_for_event(x))) {
      if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) continue;
      const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event.get());
      if (message->type == state && message->data.data32[1] == wanted) asked = true;
    }
    return asked;
  }

  [[nodiscard]] std::string mode() const {
    const auto info =
        owned(xcb_randr_get_crtc_info_reply(x, xcb_randr_get_crtc_info(x, crtc, 0), nullptr));
    return std::to_string(info->width) + "x" + std::to_string(info->height);
  }

  [[nodiscard]] std::string screen() const {
    const auto size = owned(xcb_get_geometry_reply(x, xcb_get_geometry(x, root), nullptr));
    return std::to_string(size->width) + "x" + std::to_string(size->height);
  }

  // Waits until the whole screen has that colour. False if it never has.
  [[nodiscard]] bool filled(std::uint32_t colour) const {
    return soon([&] {
      const std::vector<std::uint32_t> seen = pixels();
      return !seen.empty() && std::ranges::all_of(seen, [=](auto p) { return p == colour; });
    });
  }

  // Waits until each of these colours is somewhere on the screen.
  [[nodiscard]] bool shows(const std::vector<std::uint32_t>& colours) const {
    return soon([&] {
      const std::vector<std::uint32_t> seen = pixels();
      return std::ranges::all_of(colours,
                                 [&](auto c) { return std::ranges::find(seen, c) != seen.end(); });
    });
  }

  // The leftmost pixel of that colour.
  [[nodiscard]] int leftmost(std::uint32_t colour) const {
    const std::vector<std::uint32_t> seen = pixels();
    const int width = std::atoi(screen().c_str());
    int found = width;
    for (int i = 0; i < static_cast<int>(seen.size()); ++i) {
      if (seen[i] == colour) found = std::min(found, i % width);
    }
    return found;
  }

  template <typename Condition>
  static bool soon(Condition condition) {
    for (int i = 0; i < 200; ++i) {
      if (condition()) return true;
      usleep(50'000);
    }
    return false;
  }

 private:
  [[nodiscard]] xcb_atom_t atom(const std::string& name) const {
    const auto reply = owned(xcb_intern_atom_reply(
        x, xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.c_str()), nullptr));
    return reply->atom;
  }

  // The whole screen as 0xRRGGBB, empty if it can't be read.
  [[nodiscard]] std::vector<std::uint32_t> pixels() const {
    const auto size = owned(xcb_get_geometry_reply(x, xcb_get_geometry(x, root), nullptr));
    const auto image = owned(xcb_get_image_reply(
        x, xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, root, 0, 0, size->width, size->height, ~0U),
        nullptr));
    if (!image) return {};
    const auto* words = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get()));
    const int count = xcb_get_image_data_length(image.get()) / 4;
    if (count != size->width * size->height) return {};
    std::vector<std::uint32_t> seen(words, words + count);
    for (std::uint32_t& pixel : seen) pixel &= 0xFFFFFF;
    return seen;
  }

  XServer server;
  xcb_connection_t* x = nullptr;
  xcb_window_t root = 0;
  xcb_randr_crtc_t crtc = 0;
  xcb_randr_output_t output = 0;
};

// The game's window in a process of its own, since the mode is restored when the process ends.
class Game {
 public:
  explicit Game(const char* arguments) {
    int to[2];
    int from[2];
    if (pipe(to) != 0 || pipe(from) != 0) return;
    process = fork();
    if (process == 0) {
      dup2(to[0], STDIN_FILENO);
      dup2(from[1], STDOUT_FILENO);
      for (const int end : {to[0], to[1], from[0], from[1]}) close(end);
      setenv("CI", "1", 1);  // nobody answers a question, even on a desk
      execl("/proc/self/exe", "test_gl", OWN_SCREEN, arguments, nullptr);
      _exit(127);
    }
    close(to[0]);
    close(from[1]);
    in = to[1];
    char c = 0;
    while (!shown() && read(from[0], &c, 1) == 1) said += c;
    close(from[0]);
  }
  ~Game() {
    if (process > 0) end();
  }
  Game(const Game&) = delete;
  Game& operator=(const Game&) = delete;

  [[nodiscard]] bool shown() const { return said.ends_with("shown\n"); }

  void end() {
    close(in);
    waitpid(process, nullptr, 0);
    process = -1;
  }

 private:
  pid_t process = -1;
  int in = -1;
  std::string said;
};

class DisplayMode : public testing::Test {
 protected:
  DisplayMode() {
    unsetenv(DRIVER);
    if (const char* name = std::getenv("DISPLAY")) display = name;
  }
  ~DisplayMode() override {
    if (display.empty()) {
      unsetenv("DISPLAY");
    } else {
      setenv("DISPLAY", display.c_str(), 1);
    }
  }

 private:
  std::string display;
};

TEST_F(DisplayMode, RequestedModeIsSetFilledAndRestored) {
  const Monitor monitor({1920, 1080});
  monitor.add({1360, 768});
  Game game("");
  ASSERT_TRUE(game.shown());
  EXPECT_EQ(monitor.mode(), "1360x768");
  EXPECT_EQ(monitor.screen(), "1360x768");
  EXPECT_TRUE(monitor.filled(CLEARED));
  game.end();
  EXPECT_EQ(monitor.mode(), "1920x1080");
  EXPECT_EQ(monitor.screen(), "1920x1080");
}

TEST_F(DisplayMode, LargeModeIsUsedIfRequestedOneIsMissing) {
  const Monitor monitor({1920, 1080});
  for (const char* arguments : {"", "-1024x768 -fs"}) {
    const Game game(arguments);
    ASSERT_TRUE(game.shown());
    EXPECT_EQ(monitor.mode(), "1920x1080");
    EXPECT_TRUE(monitor.filled(CLEARED)) << arguments;
  }
}

TEST_F(DisplayMode, OnlyWindowManagerIsAskedToFillTheDisplay) {
  const Monitor monitor({1360, 768});
  {
    const Game game("");
    ASSERT_TRUE(game.shown());
    EXPECT_FALSE(monitor.fullscreen_asked());
    EXPECT_TRUE(monitor.filled(CLEARED));
  }
  monitor.mark_managed();
  const Game game("");
  ASSERT_TRUE(game.shown());
  EXPECT_TRUE(monitor.fullscreen_asked());
}

// With neither mode, and nobody to be asked, the monitor itself says so.
TEST_F(DisplayMode, NoteIsShownWithoutEitherModeOrAnAnswer) {
  const Monitor monitor({1280, 1024});
  const Game game("");
  ASSERT_TRUE(game.shown());
  EXPECT_EQ(monitor.mode(), "1280x1024");
  ASSERT_TRUE(monitor.shows({CLEARED, 0xFFFFFF, 0xFF0000}));
  EXPECT_NEAR(monitor.leftmost(0xFF0000), 64 * 1280 / 1360, 8) << "from the screen's corner on";
}

// Each in a new process: this one may have a display already.
TEST_F(DisplayMode, OnlyTheOwnerOfADesktopCanBeAsked) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto ask = [](std::vector<const char*> variables) {
    for (const char* name : {"CI", "XDG_CURRENT_DESKTOP", "DESKTOP_SESSION"}) unsetenv(name);
    for (const char* name : variables) setenv(name, name == DRIVER ? "dummy" : "1", 1);
    std::_Exit(display_can_ask() ? 1 : 0);
  };
  const testing::ExitedWithCode yes(1), no(0);
  const Monitor monitor({1360, 768});
  EXPECT_EXIT(ask({}), no, "");
  EXPECT_EXIT(ask({"XDG_CURRENT_DESKTOP"}), yes, "");
  EXPECT_EXIT(ask({"DESKTOP_SESSION"}), yes, "");
  EXPECT_EXIT(ask({"DESKTOP_SESSION", "CI"}), no, "");
  EXPECT_EXIT(ask({"DESKTOP_SESSION", DRIVER}), no, "");
}

TEST_F(DisplayMode, PointerIsHiddenWhileTheGameHasTheFocus) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const Monitor monitor({1360, 768});
  const auto pointer_is = [](int wanted) {
    return Monitor::soon([=] {
      display_poll_events();
      const bool focused = SDL_GetKeyboardFocus() != nullptr;
      return focused == (wanted == SDL_DISABLE) && SDL_ShowCursor(SDL_QUERY) == wanted;
    });
  };
  const auto step_that_fails = [&](bool fullscreen) {
    display_open_window("test", 64, 64, fullscreen);
    if (SDL_ShowCursor(SDL_QUERY) != (fullscreen ? SDL_DISABLE : SDL_ENABLE)) std::_Exit(1);
    if (!pointer_is(SDL_DISABLE)) std::_Exit(2);
    monitor.take_focus();
    if (!pointer_is(SDL_ENABLE)) std::_Exit(3);
    SDL_SetWindowInputFocus(SDL_GetWindowFromID(1));
    std::_Exit(pointer_is(SDL_DISABLE) ? 0 : 4);
  };
  for (const bool fullscreen : {true, false}) {
    EXPECT_EXIT(step_that_fails(fullscreen), testing::ExitedWithCode(0), "");
  }
}

TEST_F(DisplayMode, ContextThatCannotBeHadSaysWhy) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto create = [](bool with_window, int version) {
    std::string error;
    if (with_window) display_open_window("test", 64, 64, false);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, version);
    const bool good = display_create_context(error);
    std::fprintf(stderr, "%s\n", good ? "created" : error.c_str());
    std::_Exit(good ? 0 : 1);
  };
  constexpr bool WITH_WINDOW = true;
  const auto refused = testing::ExitedWithCode(1);
  const Monitor monitor({1360, 768});
  EXPECT_EXIT(create(WITH_WINDOW, 1), testing::ExitedWithCode(0), "created");
  EXPECT_EXIT(create(!WITH_WINDOW, 1), refused, "Can't Create A GL Device Context.");
  EXPECT_EXIT(create(WITH_WINDOW, 9), refused, "Can't Create A GL Rendering Context.");
  const XServer without_gl({1360, 768}, "-extension");
  setenv("DISPLAY", without_gl.name().c_str(), 1);
  EXPECT_EXIT(create(WITH_WINDOW, 1), refused, "Can't Find A Suitable PixelFormat.");
}

// All of it at once: a driver's default, or a call that is missing, is seen before it is drawn
// with.
TEST_F(DisplayMode, FreshContextHasTheStateThatPicturesNeed) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto write_state = [] {
    std::string error;
    display_open_window("test", 64, 64, false);
    if (!display_create_context(error)) std::_Exit(1);
    float cleared[4], colour[4], depth = 0, alpha = 0;
    glGetFloatv(GL_COLOR_CLEAR_VALUE, cleared);
    glGetFloatv(GL_CURRENT_COLOR, colour);
    glGetFloatv(GL_DEPTH_CLEAR_VALUE, &depth);
    glGetFloatv(GL_ALPHA_TEST_REF, &alpha);
    const auto choice = [](GLenum what) {
      GLint value = 0;
      glGetIntegerv(what, &value);
      return static_cast<unsigned>(value);
    };
    const auto on = [](GLenum what) { return glIsEnabled(what) == GL_TRUE ? "on" : "off"; };
    std::fprintf(stderr, "cleared %g %g %g %g, depth %g, colour %g %g %g %g\n",  //
                 cleared[0], cleared[1], cleared[2], cleared[3], depth,          //
                 colour[0], colour[1], colour[2], colour[3]);
    std::fprintf(stderr, "texture %s, blend %s %#x %#x\n", on(GL_TEXTURE_2D), on(GL_BLEND),
                 choice(GL_BLEND_SRC), choice(GL_BLEND_DST));
    std::fprintf(stderr, "depth test %s %#x, alpha test %s %#x %g\n", on(GL_DEPTH_TEST),
                 choice(GL_DEPTH_FUNC), on(GL_ALPHA_TEST), choice(GL_ALPHA_TEST_FUNC), alpha);
    std::fprintf(stderr, "shades %#x, draws into %#x\n", choice(GL_SHADE_MODEL),
                 choice(GL_DRAW_BUFFER));
    std::_Exit(0);
  };
  const Monitor monitor({1360, 768});
  EXPECT_EXIT(write_state(), testing::ExitedWithCode(0),
              "cleared 0 0 0 0.3, depth 1, colour 1 1 1 1\n"
              "texture on, blend on 0x302 0x303\n"
              "depth test off 0x203, alpha test off 0x204 0.1\n"
              "shades 0x1d01, draws into 0x405\n");
}

// The monitor is so far to the right that the screen would have to be wider than it can be.
TEST_F(DisplayMode, RefusedModeIsNotSet) {
  const Monitor monitor({1920, 1080});
  monitor.add({1360, 768});
  monitor.add({800, 600});
  monitor.show(monitor.add({1024, 768}), 800);
  EXPECT_EQ(display_set_mode(1360, 768), DISPLAY_MODE_FAILED);
  EXPECT_EQ(monitor.mode(), "1024x768") << "the old mode is kept";
  EXPECT_EQ(display_set_mode(1280, 720), DISPLAY_MODE_BAD_MODE);
  EXPECT_EQ(display_set_mode(1024, 720), DISPLAY_MODE_BAD_MODE);
  EXPECT_EQ(display_set_mode(0, 720), DISPLAY_MODE_BAD_PARAM);
  EXPECT_EQ(display_set_mode(800, 600), DISPLAY_MODE_OK);
  EXPECT_EQ(monitor.mode(), "800x600");
  display_restore_mode();
  EXPECT_EQ(monitor.mode(), "1024x768");
}

}  // namespace
