// What a frog carries. Game thread.
#pragma once

#include "playfield/playfield.h"

// Adds base and butterfly up and cuts the total at "Maximum Tickets". The pieces aren't cut, so on
// a frog over the limit each call books the whole excess as capped again, a demo frog's too.
void purse_add_up(int side, Frog& frog);
