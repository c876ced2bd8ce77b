// Pages that need nothing else: no script, no style sheet, no picture beside them. They read the
// settings in memory, which must be those of the results.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lab/results.h"
#include "lab/sweep.h"

std::string run_page(const Results& results, const Sums& sums);
std::string sweep_page(const std::vector<SweepResult>& all);

// What both are made of.
std::string html_page(const std::string& title, const std::string& body);

// As many decimals as two digits of the half width need, and no more than `most`.
int html_decimals(double half_width, int most);
// A number and its interval: "11.96 ± 0.11" with the unit after each.
std::string html_number(const Estimate& e, int most, const char* unit = "");

// A count with commas: "200,000".
std::string html_count(std::int64_t count);

// The settings that menus offer; without those that a sweep sets in each place.
std::string html_settings(bool swept);
// Options of the players that differ from the built-in ones, as a sentence. Mostly empty.
std::string html_player_options(const PlayerSettings& player);
