// The whole virtual cabinet: the board on its cable, the hands on its switches, the game, and the
// one loop that runs them. One thread.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "cabinet/board.h"
#include "cabinet/cable.h"
#include "cabinet/game_process.h"
#include "cabinet/hands.h"
#include "cabinet/keys.h"
#include "cabinet/led_display.h"
#include "cabinet/options.h"
#include "cabinet/page.h"
#include "cabinet/recording.h"
#include "cabinet/sound_port.h"
#include "cabinet/usb_port.h"

struct Cabinet {
  Options options;
  Board board;
  Hands hands;
  Cable cable;
  LedDisplay led;
  Cable led_cable;
  UsbPort usb;
  Keys keys;
  SoundPort* sound = nullptr;  // null: the sound goes elsewhere
  Recording* recording = nullptr;
  Page page;
  GameProcess game;
  std::map<std::string, double> names;  // from "let" in scripts
  int signals = -1;                     // file descriptor that reports SIGINT, SIGTERM, SIGCHLD
  bool commands_open = false;           // standard input is read
  bool finishing = false;               // waits only for the game to end
  std::string typed;                    // read from standard input, not obeyed yet
  std::string said;                     // output of the last command
};

// Milliseconds of a steady clock.
std::int64_t cabinet_now_ms();

// Makes the board, the cable and the key socket, and sets the game's environment. Returns an error
// text, empty on success.
std::string cabinet_open(Cabinet& cabinet);
void cabinet_close(Cabinet& cabinet);

// Starts the game on a clean port, once a killed one has ended. Returns an error text, empty on
// success.
std::string cabinet_start_game(Cabinet& cabinet);

// One turn of the loop: advances everything, then waits for an event, at most `wait_ms`. Returns
// true if the game ended in this turn.
bool cabinet_turn(Cabinet& cabinet, int wait_ms);

// Begins the end: asks the game to quit, with `signal`. The loop continues until it has.
void cabinet_finish(Cabinet& cabinet, int signal);
