// The text pane at the right of the operator's lists: help and figures, a page at a time. Pages are
// written by the game thread and start-up, drawn by the main thread without a lock.
#pragma once

constexpr int PANE_LINES = 43;

// Empties all lines and writes the heading.
[[gnu::format(printf, 1, 2)]] void pane_page(const char* heading, ...);
// Writes line 0, the heading, to 42; other numbers change nothing. At most 119 characters.
// "%%" in what stands there then shows as "%".
[[gnu::format(printf, 2, 3)]] void pane_set_line(int line_number, const char* format, ...);

void pane_show(bool visible);

// Main thread.
void pane_draw_all();

// Hidden and empty.
void pane_reset();
