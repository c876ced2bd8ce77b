// The line of frogs on the near bank and the launch. Game thread.
#pragma once

// Moves the side's first free frog to the end of the line. Nothing happens with five in line or
// none free.
void frog_enqueue(int side);

// May a frog be launched on this side now? Not in operator mode, during the side's win show, with
// no free record, or with a frog of the side in play.
bool frog_ready(int side);

// Takes the head of the line into the game. A demo frog is no game: it is silent and not counted.
void frog_launch(int side, bool demo);
