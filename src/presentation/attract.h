// The pictures that an idle cabinet shows in turn: a board of what can be won, a frog that eats
// bugs, and the marks of the makers.
#pragma once

// One step of the sequence. Game thread, every tick, every mode.
void attract_step();
// The sequence's present picture. Main thread.
void attract_draw();

// As at process start: the first picture comes 15 s after it.
void attract_reset();
