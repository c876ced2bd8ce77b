// The layers of the scene, back to front as scene_draw calls them. Main thread, inside a frame.
#pragma once

void foam_draw();          // the river's foam; it drifts one step with each frame
void far_bank_draw();      // goals and lily pads
void jackpot_lily_draw();  // what the far bank pays, with a ghost of it rising
void lanes_draw();         // the lanes and all that stands on them; places the gold riders
void hearts_draw();
void butterfly_draw();
void sparks_draw();
void frogs_draw();

// Foam and lily ghost as at process start.
void far_bank_reset();
