// What start-up reads from outside: the command line and the environment.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "frame/app_window.h"
#include "frame/monitor_note.h"
#include "gfx/frame.h"
#include "platform/display.h"
#include "platform/environment.h"
#include "platform/headless/display_record.h"
#include "platform/tokens.h"

namespace {

TEST(CommandLine, SplitsLineIntoUpperCaseTokens) {
  const auto tokens = [](const std::string& line) {
    std::string text;
    for (int i = 0, count = app_tokenize_line(line.c_str()); i < count; ++i) {
      text += token_table[i] + std::string("|");
    }
    return text;
  };
  EXPECT_EQ(tokens("") + tokens("  \t "), "");
  EXPECT_EQ(tokens("one,two(three)\tfour"), "ONE|TWO|THREE|FOUR|");
  EXPECT_EQ(tokens("images\\a.tga 12 -34 ; remark"), "IMAGES\\A.TGA|12|-34|");
  EXPECT_EQ(tokens("a;b c"), "A;B|C|") << "a remark begins only where a token would";
  EXPECT_EQ(tokens("a\nb"), "A|B|");
  EXPECT_EQ(tokens("a \nb"), "A|");
  EXPECT_EQ(tokens(std::string(255, 'x')), std::string(127, 'X') + "|");
  EXPECT_EQ(tokens(std::string(256, 'x')), "");
  std::string many;
  for (int i = 0; i < 100; ++i) many += "a ";
  EXPECT_EQ(app_tokenize_line(many.c_str()), 64);
}

TEST(CommandLine, LastDisplayModeIsUsed) {
  const auto parse = [](const char* line) {
    app_window = {1360, 768, 1};
    app_parse_command_line(line);
    return std::pair{app_window.screen_width, app_window.screen_height};
  };
  EXPECT_EQ(parse(""), std::pair(1360, 768));
  EXPECT_EQ(parse("-1024x768 -fs"), std::pair(1024, 768));
  EXPECT_EQ(parse("-640x480 -1920X1080 -unknown"), std::pair(1920, 1080));
  EXPECT_EQ(parse(("-640x480 " + std::string(260, 'y')).c_str()), std::pair(1360, 768));
}

// Modes asked for as "WxH", then "full" or "window" with its size, or "none".
constexpr bool NOBODY_TO_ASK = false;
std::string opened(std::vector<DisplayModeResult> results, bool answer_yes, const char* line = "",
                   bool can_ask = true) {
  headless_display = {};
  headless_display.can_ask = can_ask;
  headless_display.mode_results = std::move(results);
  headless_display.answer_yes = answer_yes;
  app_window = {1360, 768, 1};
  app_parse_command_line(line);
  const bool open = app_create_window();
  if (open) app_resize_window();
  const auto text = [](DisplaySize size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height) + " ";
  };
  std::string told;
  for (const DisplaySize& asked : headless_display.modes_asked) told += text(asked);
  if (!open) return told + "none";
  return told + text(headless_display.window) + (headless_display.fullscreen ? "full" : "window");
}

TEST(AppWindow, TriesFullscreenModesThenAsksOperator) {
  constexpr auto OK = DISPLAY_MODE_OK;
  constexpr auto REFUSED = DISPLAY_MODE_FAILED;
  EXPECT_EQ(opened({OK}, false), "1360x768 1360x768 full");
  EXPECT_EQ(opened({OK}, false, "-1024x768 -fs"), "1024x768 1024x768 full");
  EXPECT_EQ(opened({REFUSED, OK}, false), "1360x768 1920x1080 1920x1080 full");
  EXPECT_TRUE(headless_display.boxes.empty());
  EXPECT_EQ(opened({REFUSED, REFUSED}, true), "1360x768 1920x1080 1920x1080 window");
  EXPECT_EQ(opened({REFUSED, REFUSED}, false), "1360x768 1920x1080 none");
  EXPECT_EQ(headless_display.boxes.back(), "ERROR: Program Will Now Close.");
  EXPECT_FALSE(monitor_note_open()) << "the operator knows";
  EXPECT_EQ(opened({REFUSED, REFUSED}, false, "-1024x768", NOBODY_TO_ASK),
            "1024x768 1920x1080 none");
  EXPECT_EQ(headless_display.boxes.size(), 1U) << "the question, which is also a line in the log";
  EXPECT_TRUE(monitor_note_open());
  EXPECT_TRUE(headless_display.fullscreen);
  EXPECT_EQ(std::pair(app_window.asked_width, app_window.asked_height), std::pair(1024, 768));

  for (const auto& [result, why] :
       {std::pair{DISPLAY_MODE_BAD_PARAM, "Mode Contained An Invalid Param."},
        {DISPLAY_MODE_BAD_FLAGS, "Mode Contained Invalid Flags."},
        {DISPLAY_MODE_BAD_MODE, "Mode Is Not Supported."},
        {DISPLAY_MODE_FAILED, "Mode Failed."}}) {
    opened({DISPLAY_MODE_BAD_MODE, result}, true);
    ASSERT_EQ(headless_display.boxes.size(), 1U);
    EXPECT_EQ(headless_display.boxes[0], std::string("ERROR: The Requested Fullscreen ") + why +
                                             "\nUse Windowed Mode Instead?");
  }
}

TEST(AppWindow, OnlyAWindowHasSidesOf80PixelsAtLeast) {
  for (const auto& [asked, seen] : {std::pair{AppWindow{60, 500, 0}, std::pair{80, 500}},
                                    {AppWindow{500, 60, 0}, {500, 80}},
                                    {AppWindow{60, 60, 1}, {60, 60}}}) {
    headless_display = {};
    app_window = asked;
    ASSERT_TRUE(app_open_window());
    app_resize_window();
    EXPECT_EQ(std::pair(headless_display.window.width, headless_display.window.height), seen);
  }
}

TEST(AppWindow, ShowsTheLayoutFromItsCornerAgainAfterEachMove) {
  const auto projection = [] { return std::to_array(headless_display.projection); };
  headless_display = {};
  EXPECT_EQ(gfx_context_create(640, 480), 1);
  EXPECT_EQ(projection(), (std::array{0, 0, 640, 480}));
  app_window_proc({});
  EXPECT_EQ(projection(), (std::array{0, 0, 640, 480}));
  DisplayEvents moved{};
  moved.moved = true;
  app_window_proc(moved);
  EXPECT_EQ(projection(), (std::array{0, 0, 1360, 768}));

  headless_display = {};
  headless_display.context_error = "no driver";
  EXPECT_EQ(gfx_context_create(640, 480), 0);
  EXPECT_EQ(headless_display.boxes, std::vector<std::string>{"ERROR: no driver"});
  EXPECT_EQ(projection(), (std::array{0, 0, 0, 0}));
}

class EnvironmentTest : public testing::Test {
 protected:
  EnvironmentTest() { clear(); }
  ~EnvironmentTest() override { clear(); }
  static void clear() {
    for (const char* name : {"LILYHOP_DRIVE_D", "LILYHOP_COM3", "LILYHOP_USBIO", "LILYHOP_SOUND",
                             "LILYHOP_POWER", "LILYHOP_KEYS"}) {
      unsetenv(name);
    }
  }
  static std::string read() {
    std::string error;
    return environment_read(error) ? "" : error;
  }
};

TEST_F(EnvironmentTest, DefaultsUseNoHardware) {
  setenv("XDG_DATA_HOME", "/tmp/x", 1);
  EXPECT_EQ(read(), "");
  EXPECT_EQ(environment.drive_d, "/tmp/x/lilyhop");
  for (const auto& port : environment.com) EXPECT_EQ(port, "");
  EXPECT_EQ(environment.usbio, USBIO_NONE);
  EXPECT_EQ(environment.sound, SOUND_SDL);
  EXPECT_FALSE(environment.power_reboot);
}

TEST_F(EnvironmentTest, ReadsValuesAndNamesWrongOnes) {
  setenv("LILYHOP_DRIVE_D", "/tmp/d", 1);
  for (const auto& [name, good, wrong, allowed] :
       {std::tuple{"LILYHOP_COM3", "/dev/pts/7", "COM3", "the full path of a device"},
        {"LILYHOP_USBIO", "unix:/tmp/s", "usb", "libusb, none or unix:PATH"},
        {"LILYHOP_SOUND", "unix:/tmp/b", "alsa", "sdl, none or unix:PATH"},
        {"LILYHOP_POWER", "reboot", "on", "off or reboot"},
        {"LILYHOP_KEYS", "unix:/tmp/k", "/tmp/k", "unix:PATH"}}) {
    setenv(name, wrong, 1);
    EXPECT_EQ(read(), std::string(name) + "=\"" + wrong + "\": must be " + allowed);
    setenv(name, good, 1);
    EXPECT_EQ(read(), "");
  }
  EXPECT_EQ(environment.drive_d, "/tmp/d");
  EXPECT_EQ(environment.com[2], "/dev/pts/7");
  EXPECT_EQ(environment.usbio_socket, "/tmp/s");
  EXPECT_EQ(environment.sound, SOUND_SOCKET);
  EXPECT_EQ(environment.sound_socket, "/tmp/b");
  EXPECT_TRUE(environment.power_reboot);
  EXPECT_EQ(environment.keys_socket, "/tmp/k");
}

}  // namespace
