// All rows of the paytable, with and without "Boost Bonus" and "Two Point Tickets", for each
// player.
#pragma once

#include <string>
#include <vector>

#include "lab/options.h"
#include "lab/results.h"
#include "playfield/paytable.h"  // PAYTABLE_ROWS

struct SweepPlace {  // one of them
  int player;        // index of player_kinds
  int row;
  bool boost, points;
};

int sweep_places();  // how many there are
SweepPlace sweep_place(int number);
int sweep_number(const SweepPlace& place);

struct SweepResult {
  SweepPlace place;
  Results results;
};

// Plays what the state folder doesn't hold yet and returns all places in order. The settings in
// memory apply to all of them, apart from those that a place sets itself. False with a line in
// `error` if it failed.
bool sweep_play(const LabOptions& options, std::vector<SweepResult>& all, std::string& error);

// The farthest from its table among places of a player, by the part of the average; -1 for none.
int sweep_farthest(const std::vector<SweepResult>& all, int player);

std::string sweep_table(const std::vector<SweepResult>& all);
std::string sweep_json(const std::vector<SweepResult>& all);
