// Pages with plots that need nothing else: no script, no style sheet, no picture beside them.
#pragma once

#include <string>
#include <vector>

#include "lab/results.h"
#include "lab/sweep.h"

std::string run_page(const Results& results, const Sums& sums);
std::string sweep_page(const std::vector<SweepResult>& all);
