// What the lamps show: a waiting credit, a frog on its way, an idle cabinet, a jackpot.
#pragma once

// Gives each lamp its present effect. Game thread, each tick.
void lamps_update();

// As at start-up: nothing has been shown yet.
void lamps_reset();
