#pragma once

// Draws one frame: the screen of the present mode, then panes and the open menu. Main thread,
// called by gfx_frame_run.
void render_frame();
