// Three counts of the same frogs: the books, the frogs' own purses, the board.
#pragma once

#include <string>

#include "lab/sums.h"

// Compares them under the present settings. Empty if all agree, else one line for each difference.
std::string audit_check(const Sums& sums);
