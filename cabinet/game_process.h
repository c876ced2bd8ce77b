// The game as a separate process: started with this cabinet's environment, watched, and ended.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <thread>
#include <utility>
#include <vector>

struct GameProcess {
  std::vector<std::string> command;
  std::vector<std::pair<std::string, std::string>> environment;  // an empty value: not set
  std::string log;  // a file that collects its output; empty: the terminal
  pid_t pid = -1;
  bool running = false;
  bool killed = false;       // and has not ended yet
  bool start_waits = false;  // for the end of the killed game
  bool end_ordered = false;  // it was asked to quit, or killed
  bool would_not_quit = false;
  std::int64_t kill_at_ms = 0;  // 0: it was not asked to quit
  int exit_code = 0;            // of the last run; 128 plus the signal if a signal ended it
  std::jthread reaper;          // of the last run
};

// Lets the calling thread run before other programs, and keeps the cabinet in memory, if the user
// may do that: a board answers however busy the PC and its disk are. Once, before the game starts,
// which inherits neither.
void hardware_goes_first();

// Starts the game. While a killed one is still ending, only notes in `start_waits` that it has to
// be started then. Returns an error text, empty on success.
std::string game_start(GameProcess& game);

// Power off: kills the game. Doesn't wait: on a busy machine the game can take seconds to end.
void game_kill(GameProcess& game);

// Kills the game and waits for its end.
void game_end(GameProcess& game);

// Asks the game to quit, with `signal`; kills it after twenty seconds.
void game_ask_to_quit(GameProcess& game, int signal, std::int64_t now_ms);

// Checks whether the game has ended, and kills it if its time to quit is over. Returns true once
// for each end.
bool game_watch(GameProcess& game, std::int64_t now_ms);

// 0 if the game ended properly or was killed on purpose; otherwise its exit code.
int game_verdict(const GameProcess& game);
