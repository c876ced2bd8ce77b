// Drawing of menu rows and pane lines.
#pragma once

#include <cstdint>

// Draws a text in which "%%" means a percent sign. A single "%" shows as it is, because the text
// may come from a file. Main thread.
void row_text_draw(std::uint32_t colour, int x, int y, const char* text);
