// The GL context, the projection, and one frame on demand. Main thread only.
#pragma once

constexpr int LAYOUT_WIDTH = 1360;
constexpr int LAYOUT_HEIGHT = 768;

// Makes the context on the open window and sets the projection. Returns 1, or 0 after a message
// box.
int gfx_context_create(int width, int height);

void gfx_projection_set(int width, int height);

// One frame: sleep 1 ms, clear, draw, show. A GL error shows a box and the frame goes on.
void gfx_frame_run(void (*draw)());
