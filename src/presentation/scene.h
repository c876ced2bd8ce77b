// The scene of the game, back to front, and the one line of a machine that goes down. Main thread,
// inside a frame.
#pragma once

void scene_draw();  // all of it: calls those below in this order

void foam_draw();          // the river's foam; it drifts one step with each frame
void far_bank_draw();      // goals and lily pads
void jackpot_lily_draw();  // what the far bank pays, with a ghost of it rising
void lanes_draw();         // the lanes and all that stands on them; places the gold riders
void hearts_draw();
void butterfly_draw();
void sparks_draw();
void frogs_draw();
void signs_draw();         // the three signs: each side's credits, and between them the price
void prompt_start_draw();  // a credit waits: "press to start", with the seconds left
void prompt_coin_draw();   // a try without credit: "insert coin", breathing
void bubbles_draw();       // what the frog in the launch place says

// Foam and lily ghost as at process start.
void far_bank_reset();
