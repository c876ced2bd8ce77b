// Who plays. A player sees what a screen shows and has two fingers, one for Start and one for
// coins. Its random numbers are its own and never change the game's.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "frame/sides.h"

// A tick comes with the first whole millisecond that is 1/60 s after the last one. The lab's
// cabinet is never late.
constexpr int TICK_STEP_MS = 17;

// A hop and a rest take 0.35 s each, and end with the first tick after that.
constexpr int HOP_TICKS = 350 / TICK_STEP_MS + 1;

struct PlayerSettings {
  int kind = 0;                // index of player_kinds
  float wait_s = 1.0F;         // random: mean wait, from nothing to twice that
  float reaction_ms = 250.0F;  // watcher: mean delay from seeing to the press
  float error_ms = 60.0F;      // and its standard deviation
  float patience_s = 10.0F;    // watcher, expert: longest wait for a good moment
};

// A setting on the command line.
struct PlayerOption {
  const char* name;
  const char* unit;
  float PlayerSettings::* value;
  float most;  // from 0 to this
  const char* help;
};
extern const std::span<const PlayerOption> player_options;

struct Player;  // one side's, in lab/players.cpp

struct PlayerKind {
  const char* name;
  const char* help;    // goes on after "a player who"
  const char* colour;  // in plots
  // It watches the lanes all the time and remembers them. It plays so well that plots show the
  // others without it too.
  bool remembers;
  void (*begin_to_wait)(Player& player);     // its frog is ready
  void (*decide)(int side, Player& player);  // each tick from then on: sets the tick of the press
};
extern const std::span<const PlayerKind> player_kinds;

// The index of a kind, -1 if there is none of this name.
int player_find(const std::string& name);

// Both players sit down at a cabinet that has just booted.
void players_reset(const PlayerSettings& settings, std::uint64_t seed);

// Before each tick: coins where they are due and a press of Start where the player wants it.
// `may_launch` is cleared for a side that has had all its frogs.
void players_step(const bool (&may_launch)[SIDE_COUNT]);
