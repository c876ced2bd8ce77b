// The version record and the check of the installed files at start-up. All of it runs on the main
// thread, before the game thread starts.
#pragma once

struct BuildStamp {
  const char* date;  // as "May 17 2012"
  const char* time;  // as "10:20:53"
  const char* version = "";
};

// The program's version, and when it was built; main() sets it before Game_Init.
extern BuildStamp build_stamp;

struct VersionRecord {  // the first two lines of d:\version.txt, at most 18 characters each
  char version[20];
  char os_version[20];
};
extern VersionRecord version_record;

// Reads the version record. Then, if "Check CRC" is set or the build is new, checks every file in
// lhpcrc.txt and clears "Check CRC". `draw` draws one frame of the check's screen. If a file is
// wrong, this doesn't return: the screen shows the error until a signal ends the process.
void boot_check_and_version(void (*draw)());

// Draws the check's screen. Main thread, in MODE_BOOT_CHECK.
void crc_check_draw();
