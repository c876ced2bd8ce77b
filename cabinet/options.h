// The command line of the virtual cabinet.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum SoundWay {
  SOUND_AUTO,  // to the page, if there is one and this machine has no sound card
  SOUND_PAGE,
  SOUND_CARD,  // where LILYHOP_SOUND says
};

struct Options {
  std::string drive;  // the folder that is the game's drive d:
  bool drive_is_temporary = false;
  int com = 1;      // the game's port that the board is on
  int led_com = 2;  // and the LED board's
  bool no_board = false;
  bool no_led = false;
  bool no_usb = false;
  bool no_game = false;
  bool page = false;   // serve the cabinet's page to browsers
  int page_port = -1;  // -1: the usual port if it is free; 0: any
  SoundWay sound = SOUND_AUTO;
  bool quiet = false;
  bool verbose = false;
  bool help = false;
  double for_seconds = 0;  // 0: no limit
  std::string script;
  std::string record;  // file that records sound, and the picture; empty: none
  std::string log;     // file for the game's output; empty: the terminal
  std::uint32_t seed = 1;
  std::uint8_t firmware = 0x51;
  std::vector<std::string> game;  // the program and its arguments
};

// Reads the command line. Returns an error text, empty if all went well.
std::string options_read(int argc, char** argv, Options& options);

// The list of options for --help.
std::string options_help();
