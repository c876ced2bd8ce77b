// The three signs along the foot of the screen. Main thread, inside a frame.
#pragma once

// The signs and their words: each side's credits, and between them the price.
void signs_draw();
