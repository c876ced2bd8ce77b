// The game in play without its threads: ticks by hand, in a real window or without one, with the
// installed pictures.
#pragma once

#include <string>

// Loads fonts and pictures and sets the field up. `drive` stands for d:, `program` for the
// installation. False if the pictures aren't there. Once.
bool play_open(const std::string& drive, const std::string& program);

// From the same start each time: both sides play one frog after the other.
void play_begin();

// One tick of 17 ms with the small workers' step.
void play_tick();
