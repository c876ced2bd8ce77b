// What a monitor that can't show the game shows instead. Nobody at a cabinet can answer a question,
// and a program that only ended would be started again and again, with nothing to be seen.
// Main thread.
#pragma once

// Opens a window as large as the monitor is. False if somebody was asked and said No, or if nothing
// can be seen.
bool monitor_note_open();

// Draws the note: what was asked of the monitor, what it has, and what to do.
void monitor_note_draw();
