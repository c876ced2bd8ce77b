// The GL context, the projection, and one frame on demand. Main thread only.
#pragma once

#include "gfx/picture_list.h"  // LAYOUT_WIDTH, LAYOUT_HEIGHT

// Makes the context on the open window and sets the projection. Returns 1, or 0 after a message
// box.
int gfx_context_create(int width, int height);

void gfx_projection_set(int width, int height);

// One frame: sleep 1 ms, clear, draw, show. A GL error shows a box and the frame goes on.
void gfx_frame_run(void (*draw)());
