// The game in play without its threads: ticks by hand, in a real window or without one, with the
// installed pictures.
#pragma once

#include <cstdint>
#include <string>

// Loads fonts and pictures and sets the field up. `drive` stands for d:, `program` for the
// installation. False if the pictures aren't there. Again: only the folders are taken anew.
bool play_open(const std::string& drive, const std::string& program);

// From the same start each time, but for the seed of chance.
void play_begin(std::uint64_t seed = 3);

// One tick of 17 ms with the small workers' step.
void play_step();

// The same, and both sides play one frog after the other.
void play_tick();
