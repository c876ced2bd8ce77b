// Three counts of the same frogs: the books, the frogs' own purses, the board.
#pragma once

#include <string>

#include "lab/sums.h"

// Compares them to the ticket, under the settings of the moment. Empty if all agree, else one line
// for each that doesn't.
std::string audit_check(const Sums& sums);
