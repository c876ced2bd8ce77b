// The game as a process of its own: started against this cabinet, watched, and ended.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

struct GameProcess {
  std::vector<std::string> command;
  std::vector<std::pair<std::string, std::string>> environment;  // an empty value: not set
  std::string log;  // a file that what it prints is added to; empty: the terminal gets it
  pid_t pid = -1;
  bool running = false;
  bool end_ordered = false;  // it was asked to quit, or killed
  bool would_not_quit = false;
  std::int64_t kill_at_ms = 0;  // 0: nobody asked it to quit
  int exit_code = 0;            // of the last run; 128 and the signal if one ended it
};

// Has the calling thread run before other programs, where the user may do that: a board answers
// however busy the PC is. Once, before the game starts, which doesn't inherit it.
void hardware_goes_first();

// Starts the game. Returns an error text, empty if all went well.
std::string game_start(GameProcess& game);

// Power off: ends it in the middle of whatever it does, and waits for its end.
void game_kill(GameProcess& game);

// Asks it to quit, with `signal`; after five seconds it is killed.
void game_ask_to_quit(GameProcess& game, int signal, std::int64_t now_ms);

// Looks whether it has ended, and kills it if its time to quit is over. Returns true once for each
// end.
bool game_watch(GameProcess& game, std::int64_t now_ms);

// The exit code that tells how the game behaved: 0 if it ended well or the way it was told to.
int game_verdict(const GameProcess& game);
