// How the rows of lists and the lines of the pane are drawn.
#pragma once

#include <cstdint>

// Draws a text in which "%%" stands for a percent sign. Any other one shows as it stands, since a
// text may hold words of a file. Main thread.
void row_text_draw(std::uint32_t colour, int x, int y, const char* text);
