// The game's window and one empty frame, in a process of its own.
#pragma once

constexpr const char* OWN_SCREEN = "--own-screen";  // first argument; the game's follow in one

// Opens the window as the game does, or the note of a wrong monitor, says "shown" on standard
// output behind the first frame, and shows more until standard input ends. Returns the process's
// exit code.
int own_screen(const char* arguments);
