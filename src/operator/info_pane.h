// The text pane to the right of the operator's menus: one page of help or figures at a time. The
// game thread and start-up write pages; the main thread draws them without a lock.
#pragma once

constexpr int PANE_LINES = 43;

// Empties all lines and writes the heading.
[[gnu::format(printf, 1, 2)]] void pane_page(const char* heading, ...);
// Writes a line, at most 119 characters. Line 0 is the heading, 42 the last; other numbers are
// ignored. "%%" in the formatted line shows as "%".
[[gnu::format(printf, 2, 3)]] void pane_set_line(int line_number, const char* format, ...);

void pane_show(bool visible);

// Main thread.
void pane_draw_all();

// Hides and empties the pane.
void pane_reset();
