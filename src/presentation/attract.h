// What the idle cabinet shows and says to draw a crowd.
#pragma once

// One step of the picture sequence. Game thread, every tick, every mode.
void attract_step();
// One step of the spoken lines. Game thread, in play.
void voices_step();
// The sequence's present picture. Main thread.
void attract_draw();
