// The whole virtual cabinet: the board on its cable, the hands at its switches, the game, and the
// one loop that moves them. One thread.
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
  std::map<std::string, double> names;  // what scripts noted with "let"
  int signals = -1;                     // file descriptor that SIGINT, SIGTERM, SIGCHLD come by
  bool commands_open = false;           // standard input is read
  bool finishing = false;               // no game is waited for but to end
  std::string typed;                    // a line of standard input that isn't whole yet
  std::string said;                     // what a command has to say to whoever gave it
};

// Milliseconds of a steady clock.
std::int64_t cabinet_now_ms();

// Makes the board, the cable and the key socket, and says what the game's environment will be.
// Returns an error text, empty if all went well.
std::string cabinet_open(Cabinet& cabinet);
void cabinet_close(Cabinet& cabinet);

// Starts the game on a clean port.
std::string cabinet_start_game(Cabinet& cabinet);

// One turn of the loop: lets time pass for everything, then waits for something to happen, at most
// `wait_ms`. Returns true if the game ended in this turn.
bool cabinet_turn(Cabinet& cabinet, int wait_ms);

// Begins the end: the game is asked to quit, with `signal`. The loop goes on until it has.
void cabinet_finish(Cabinet& cabinet, int signal);
