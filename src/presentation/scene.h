// The scene of the game, and the one line of a machine that goes down.
#pragma once

// Draws the frame of play and attract. Main thread, inside gfx_frame_run.
void scene_draw();
