// The serial cable: a pseudo-terminal whose far end the game opens, with the line's faults.
#pragma once

#include <string>

#include "cabinet/line_faults.h"

struct Cable {
  int near = -1;     // the board's end, not blocking
  int far = -1;      // the game's end, held open so that the near one survives every close there
  std::string path;  // what the game opens
  bool plugged = true;
  LineFaults to_host, to_board;
  long lost_bytes = 0;  // unplugged, or nobody read
};

// Makes the pseudo-terminal, raw. Returns an error text, empty if all went well.
std::string cable_open(Cable& cable);
void cable_close(Cable& cable);

// Puts both ends into the state of a port that nobody has open: nothing waits, no exclusive use is
// left of a game that was killed.
void cable_reset(Cable& cable);

// Sends bytes to the game, and takes what has come from it. Neither waits.
void cable_send(Cable& cable, const std::string& bytes);
std::string cable_take(Cable& cable);
