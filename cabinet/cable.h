// The serial cable: a pseudo-terminal that the game opens, with the line's faults.
#pragma once

#include <string>

#include "cabinet/line_faults.h"

struct Cable {
  int near = -1;  // the board's end, not blocking
  int far = -1;   // the game's end, held open so that the near end survives when the game closes it
  std::string path;  // what the game opens
  bool plugged = true;
  LineFaults to_host, to_board;
  long lost_bytes = 0;  // unplugged, or not read in time
};

// Makes the pseudo-terminal in raw mode. Returns an error text, empty on success.
std::string cable_open(Cable& cable);
void cable_close(Cable& cable);

// Resets both ends to the state of a port that nobody has open: no bytes wait, and no exclusive
// mode is left from a killed game.
void cable_reset(Cable& cable);

// Sends bytes to the game, and takes bytes that came from it. Neither waits.
void cable_send(Cable& cable, const std::string& bytes);
std::string cable_take(Cable& cable);
