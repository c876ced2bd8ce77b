#include "operator/boot_check.h"

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "books/prefs.h"
#include "frame/game_mode.h"
#include "gfx/frame.h"  // gfx_frame_run
#include "gfx/text.h"
#include "io/watchdog_link.h"  // watchdog_boot
#include "operator/file_sums.h"
#include "operator/text_lines.h"
#include "platform/display.h"  // display_restore_mode
#include "platform/ending.h"
#include "platform/files.h"

namespace {

constexpr std::uint32_t RED = 0xFFFF0000;
constexpr std::size_t VERSION_MOST = 18;  // characters of a version line
constexpr int X = 16;
constexpr int LINE_HEIGHT_PX = 16;

struct BootCheckFlags {  // the errors that the screen shows
  bool list_missing, file_missing, file_damaged;
};

struct BootCheck {  // main thread
  BootCheckFlags flags;
  std::string current_file;  // as the list names it
  void (*draw)();            // a frame of the check's screen
};
BootCheck check{};

void read_version_line(ReadFile* file, char (&line)[20]) {
  std::strcpy(line, text_line(file, VERSION_MOST).c_str());
}

void read_version() {
  version_record = {};
  ReadFile* file = read_open(R"(d:\version.txt)");
  if (file == nullptr) {
    std::strcpy(version_record.version, "VERSION.TXT MISSING");
    std::strcpy(version_record.os_version, "VERSION.TXT MISSING");
    return;
  }
  read_version_line(file, version_record.version);
  read_version_line(file, version_record.os_version);
  read_close(file);
}

// Stores the stamp in a setting. True if the stored one was different.
bool note(PrefIndex row, const char* stamp) {
  char(&text)[80] = prefs[row].text_value;
  if (std::strncmp(text, stamp, sizeof text) == 0) return false;
  std::memset(text, 0, sizeof text);
  std::strncpy(text, stamp, sizeof text - 1);
  return true;
}

void note_build() {
  const bool new_date = note(PREF_BUILD_DATE, build_stamp.date);
  const bool new_time = note(PREF_BUILD_TIME, build_stamp.time);
  if (!new_date && !new_time) return;
  prefs[PREF_CHECK_CRC].int_value = 1;
  prefs_save();
}

void draw_frame() {
  gfx_frame_run(check.draw);
}

// There is no way past a bad installation: Esc and the window's close button are ignored. A signal
// still ends the process after the next frame, and a desktop gets its display mode back. The books
// are already on disk.
[[noreturn]] void halt() {
  ending_watch();
  while (ending_requested() == 0) draw_frame();
  display_restore_mode();
  std::signal(ending_requested(), SIG_DFL);
  std::raise(ending_requested());
  std::abort();
}

void crc_file_check() {
  game_mode = MODE_BOOT_CHECK;
  const FileCheck result = file_list_check(check.current_file, draw_frame);
  check.flags = {result == LIST_MISSING, result == FILE_MISSING, result == FILE_DAMAGED};
  if (result != FILES_GOOD) {
    std::fprintf(stderr, "The check of the files ends at %s: install the game again.\n",
                 result == LIST_MISSING ? "its own list" : check.current_file.c_str());
    halt();
  }
  game_mode = MODE_PLAY;
}

// A box of six lines of text.
void red_box(int y, const char* message) {
  const char* lines[] = {
      "*************************", "*                       *", message,
      "*  Reinstall Software!  *", "*                       *", "*************************"};
  for (const char* line : lines) {
    text_draw(FONT_8X12, RED, X, y, "%s", line);
    y += LINE_HEIGHT_PX;
  }
}

}  // namespace

BuildStamp build_stamp{"", ""};
VersionRecord version_record{};

void boot_check_and_version(void (*draw)()) {
  check = {};
  check.draw = draw;
  watchdog_boot();
  read_version();
  note_build();
  if (pref_int(PREF_CHECK_CRC) == 0) return;
  crc_file_check();
  prefs[PREF_CHECK_CRC].int_value = 0;
  prefs_save();
}

void crc_check_draw() {
  int pen = 16;
  text_draw(FONT_8X12, COLOUR_WHITE, X, pen, "Running CRC Check...");
  if (check.flags.list_missing) {
    red_box(80, "*   CRC FILE MISSING!   *");
    pen = 160;
  }
  const int c = pen + 64;
  text_draw(FONT_8X12, COLOUR_WHITE, X, c, "Checking files...");
  text_draw(FONT_8X12, COLOUR_WHITE, X, c + 32, "%s", check.current_file.c_str());
  pen = c + 32;
  if (check.flags.file_missing) {
    red_box(c + 96, "*     FILE MISSING!     *");
    pen = c + 176;
  }
  if (check.flags.file_damaged) red_box(pen + 64, "*     FILE DAMAGED!     *");
}
